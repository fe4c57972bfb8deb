#include "store/access/definition_parts.h"

#include "store/access/stored_text.h"
#include "text/letter_case.h"

#include <algorithm>
#include <limits>

namespace tarvello::store::access {
namespace {

using namespace format::definition;
using Piece = DefinitionParts::Piece;

/// Walks through the text.
class Reader {
public:
    explicit Reader(Bytes bytes) : bytes_(bytes) {}

    Piece take(std::size_t size) {
        const Bytes taken = part(bytes_, at_, size);
        at_ += size;
        return {taken.begin(), taken.end()};
    }
    Piece name() { return take(load16(take(name_length_size).data())); }
    bool at_end() const { return bytes_.size() - at_ < sizeof(std::uint16_t); }

private:
    Bytes bytes_;
    std::size_t at_ = 0;
};

void put_word(Piece& into, std::uint32_t word) {
    into.push_back(static_cast<std::uint8_t>(word));
    into.push_back(static_cast<std::uint8_t>(word >> 8));
}

void put(Piece& into, const Piece& piece) { into.insert(into.end(), piece.begin(), piece.end()); }

} // namespace

DefinitionParts::DefinitionParts(const TableDefinition& table) : head(counts_at, 0) {
    store32(head.data() + constant_at, constant);
    store32(head.data() + autonumber_step_at, 1);
    head[kind_at] = table.system ? system_kind : user_kind;
    set_row(table);
    store32(head.data() + owned_pages_at, table.owned_pages.word());
    store32(head.data() + free_pages_at, table.free_pages.word());
}

DefinitionParts::DefinitionParts(Bytes text) {
    Reader reader(text);
    head = reader.take(counts_at);
    const std::uint32_t logical_count = load32(head.data() + logical_indexes_at);
    const std::uint32_t real_count = load32(head.data() + real_indexes_at);
    if (logical_count > most_logical_indexes || real_count > most_indexes)
        throw damaged(damage::definition_invalid);
    for (std::uint32_t i = 0; i < real_count; ++i) counts.push_back(reader.take(count_size));
    columns.resize(load16(head.data() + columns_at));
    for (Named& column : columns) column.piece = reader.take(format::column::size);
    for (Named& column : columns) column.name = reader.name();
    for (std::uint32_t i = 0; i < real_count; ++i) real_indexes.push_back(reader.take(format::index::size));
    logical_indexes.resize(logical_count);
    for (Named& logical : logical_indexes) logical.piece = reader.take(format::logical::size);
    for (Named& logical : logical_indexes) logical.name = reader.name();
    while (!reader.at_end()) {
        Piece number = reader.take(sizeof(std::uint16_t));
        if (load16(number.data()) == none) return;
        put(number, reader.take(long_maps_size));
        long_maps.push_back(std::move(number));
    }
}

void DefinitionParts::set_row(const TableDefinition& table) {
    store16(head.data() + row_columns_at, table.row_columns);
    store16(head.data() + variable_columns_at, table.variable_columns);
}

void DefinitionParts::add(const ColumnDefinition& column) {
    namespace f = format::column;
    Piece piece(f::size, 0);
    const auto word = [&piece](std::size_t at, std::uint32_t value) { store16(piece.data() + at, value); };
    piece[f::type_at] = static_cast<std::uint8_t>(column.type);
    store32(piece.data() + f::constant_at, constant);
    word(f::number_at, column.number);
    word(f::variable_place_at, column.variable_place);
    word(f::ordinal_at, column.ordinal);
    store32(piece.data() + f::sort_order_at, column.sort_order);
    piece[f::flags_at] = column.flags;
    piece[f::more_flags_at] = column.may_be_compressed ? f::compressible_flag : 0;
    word(f::fixed_place_at, column.fixed() ? column.fixed_place : 0);
    word(f::length_at, column.length);
    columns.push_back({std::move(piece), encode_utf16(column.name)});
    if (!column.long_pages) return;
    Piece maps;
    put_word(maps, column.number);
    maps.resize(maps.size() + long_maps_size);
    store32(maps.data() + maps.size() - long_maps_size, column.long_pages->word());
    store32(maps.data() + maps.size() - map_size, column.long_free_pages->word());
    long_maps.push_back(std::move(maps));
}

void DefinitionParts::add(const IndexDefinition& index, const std::vector<ColumnDefinition>& of) {
    namespace f = format::index;
    Piece piece(f::size, 0);
    store32(piece.data(), f::constant);
    for (std::size_t i = 0; i < f::most_columns; ++i) {
        std::uint8_t* column = piece.data() + f::columns_at + i * f::column_size;
        const bool used = i < index.columns.size();
        store16(column, used ? of[index.columns[i].column].number : none);
        column[f::order_at] = used && index.columns[i].ascending ? f::ascending_flag : 0;
    }
    store32(piece.data() + f::pages_at, index.pages.word());
    store32(piece.data() + f::root_at, index.root);
    piece[f::flags_at] = index.flags;
    real_indexes.push_back(std::move(piece));
    counts.emplace_back(count_size, std::uint8_t{0});
    add_logical(index);
}

void DefinitionParts::add_logical(const IndexDefinition& index) {
    namespace f = format::logical;
    Piece piece(f::size, 0);
    std::uint32_t number = 0; // those of dropped ones leave gaps
    for (const Named& other : logical_indexes)
        number = std::max(number, load32(other.piece.data() + f::number_at) + 1);
    store32(piece.data() + f::constant_at, constant);
    store32(piece.data() + f::number_at, number);
    store32(piece.data() + f::real_at, static_cast<std::uint32_t>(real_indexes.size() - 1));
    store32(piece.data() + f::related_at, std::numeric_limits<std::uint32_t>::max());
    store16(piece.data() + f::cascades_at, f::no_cascades);
    piece[f::type_at] = index.primary ? f::primary_type : 0;
    const auto behind = std::ranges::find_if(logical_indexes, [&](const Named& other) {
        return fold_case(decode_utf16(other.name)) > fold_case(index.name);
    });
    logical_indexes.insert(behind, {std::move(piece), encode_utf16(index.name)});
}

Piece DefinitionParts::joined() const {
    Piece text = head;
    store16(text.data() + columns_at, static_cast<std::uint32_t>(columns.size()));
    store32(text.data() + logical_indexes_at, static_cast<std::uint32_t>(logical_indexes.size()));
    store32(text.data() + real_indexes_at, static_cast<std::uint32_t>(real_indexes.size()));
    const auto put_names = [&text](const std::vector<Named>& named) {
        for (const Named& one : named) put(text, one.piece);
        for (const Named& one : named) {
            put_word(text, static_cast<std::uint32_t>(one.name.size()));
            put(text, one.name);
        }
    };
    for (const Piece& count : counts) put(text, count);
    put_names(columns);
    for (const Piece& index : real_indexes) put(text, index);
    put_names(logical_indexes);
    for (const Piece& maps : long_maps) put(text, maps);
    put_word(text, none);
    return text;
}

} // namespace tarvello::store::access
