#include "fiscal_code/municipalities.h"

namespace tarvello {

Municipalities::Municipalities(const std::string& path)
    : table_(store::open_ordered_table(path, "Comuni", "COMUNI2L", "COMU_DESCR")) {}

std::optional<Municipality> Municipalities::seek(std::string_view text) {
    if (!table_->seek(text)) return std::nullopt;
    return Municipality{std::string(table_->text("COMU_DESCR")), std::string(table_->text("COMU_PROV")),
                        std::string(table_->text("COMU_COD"))};
}

} // namespace tarvello
