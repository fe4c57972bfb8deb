// The reader of rows, texts and values of Access files.
#include "store/access/data_page.h"
#include "store/access/row.h"
#include "store/access/stored_text.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

using namespace tarvello;
using namespace tarvello::store;
using namespace tarvello::store::access;

namespace {

TableDefinition table_of_all_types() {
    TableDefinition table;
    std::uint32_t fixed = 0;
    std::uint32_t variable = 0;
    const auto add = [&](StoredType type, std::uint32_t length, bool is_fixed) {
        ColumnDefinition column;
        column.type = type;
        column.number = static_cast<std::uint32_t>(table.columns.size());
        column.length = length;
        if (is_fixed) column.flags |= format::column::fixed_flag;
        column.scale = 4;
        if (is_fixed) {
            column.fixed_place = fixed;
            fixed += length;
        } else {
            column.variable_place = variable++;
        }
        table.columns.push_back(column);
    };
    for (const bool is_fixed : {true, false}) {
        add(StoredType::integer32, 4, is_fixed);
        add(StoredType::byte, 1, is_fixed);
        add(StoredType::integer16, 2, is_fixed);
        add(StoredType::currency, 8, is_fixed);
        add(StoredType::single_float, 4, is_fixed);
        add(StoredType::double_float, 8, is_fixed);
        add(StoredType::date, 8, is_fixed);
        add(StoredType::numeric, 17, is_fixed);
        add(StoredType::text, 20, is_fixed);
    }
    add(StoredType::yes_no, 0, true);
    table.row_columns = static_cast<std::uint32_t>(table.columns.size());
    table.variable_columns = variable;
    table.fixed_size = fixed;
    return table;
}

void read_row(Bytes bytes, const TableDefinition& table) {
    const RowView row(bytes, table);
    StoredValues values(table.columns.size());
    std::string text;
    for (std::size_t i = 0; i < table.columns.size(); ++i) {
        const auto stored = row.stored(table.columns[i]);
        if (!stored) continue;
        if (table.columns[i].type == StoredType::text) {
            decode_text(*stored, text);
            encode_text(text, true);
        } else {
            fixed_value(*stored, table.columns[i]);
        }
        values[i].emplace(stored->begin(), stored->end());
    }
    const auto built = build_row(values, table);
    const RowView again(built, table);
    for (std::size_t i = 0; i < table.columns.size(); ++i) {
        const auto stored = again.stored(table.columns[i]);
        if (stored.has_value() != values[i].has_value()) std::abort();
        if (stored && !std::equal(stored->begin(), stored->end(), values[i]->begin(), values[i]->end()))
            std::abort();
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const TableDefinition table = table_of_all_types();
    if (size > page_size) return 0;
    try {
        read_row(Bytes(data, size), table);
    } catch (const Failure& failure) {
        if (failure.description().empty()) std::abort();
    }
    // The same bytes as a page: the head and slots from the front, the rows at the end.
    Page page{};
    std::copy_n(data, size / 2, page.begin());
    std::copy_n(data + size / 2, size - size / 2, page.end() - static_cast<std::ptrdiff_t>(size - size / 2));
    page[0] = 1;
    try {
        for (std::uint32_t row = 0; row < data_page::row_count(page); ++row) {
            data_page::flags(page, row);
            const Bytes bytes = data_page::row(page, row);
            if (!bytes.empty() && bytes[0] == 0xE1)
                data_page::erase(page, row);
            else if (!bytes.empty() && bytes[0] == 0xE2)
                data_page::resize(page, row, bytes.size() + 3);
        }
        if (data_page::has_room(page, size)) data_page::add(page, Bytes(data, size));
        data_page::all_deleted(page);
    } catch (const Failure& failure) {
        if (failure.description().empty()) std::abort();
    }
    return 0;
}
