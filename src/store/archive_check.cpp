#include "store/archive_check.h"

#include "failure.h"
#include "store/engine.h"

namespace tarvello::store {
namespace {

void read_all(Engine& engine, const std::string& table) {
    Statement everything;
    everything.table = table;
    const auto rows = engine.run(everything);
    while (rows->next()) {
        for (std::size_t column = 0; column < rows->columns().size(); ++column) rows->value(column);
    }
}

} // namespace

std::string why_not_open(const std::string& path, const RegionalSettings& regional, std::string* notice) {
    try {
        const auto engine = open_engine(path, regional);
        if (notice && !engine->notice().empty())
            *notice += (notice->empty() ? "" : "\n\n") + engine->notice();
        return {};
    } catch (const Failure& failure) {
        if (failure.number() == failure_number::in_use) throw;
        return failure.description();
    }
}

std::string why_unsound(const std::string& path, const RegionalSettings& regional) {
    try {
        const auto engine = open_engine(path, regional);
        engine->check();
        for (const StoredTable& table : engine->tables()) read_all(*engine, table.declaration.name);
        return {};
    } catch (const Failure& failure) {
        return failure.description();
    }
}

} // namespace tarvello::store
