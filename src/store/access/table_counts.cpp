#include "store/access/table_counts.h"

#include "store/access/bytes.h"

#include <algorithm>

namespace tarvello::store::access {

std::uint32_t TableCounts::get(std::size_t at) const { return load32(store_.read(page_)->data() + at); }

void TableCounts::set_last_autonumber(std::uint32_t number) {
    store32(store_.edit(page_).data() + format::definition::last_autonumber_at, number);
}

void TableCounts::set_distinct(std::size_t index, std::size_t number) {
    using namespace format::definition;
    store32(store_.edit(page_).data() + counts_at + count_size * index + count_distinct_at,
            static_cast<std::uint32_t>(number));
}

void TableCounts::change(std::size_t at, int difference) {
    if (difference == 0) return;
    std::uint8_t* place = store_.edit(page_).data() + at;
    const std::int64_t count = std::int64_t{load32(place)} + difference;
    store32(place, static_cast<std::uint32_t>(std::max<std::int64_t>(count, 0)));
}

} // namespace tarvello::store::access
