#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

/// The figures of the file format of Access 2000-2003, all of them: places and sizes in bytes, marks and
/// flags. A name ending in _at is the place of a field; the size of a field that is not 4 bytes stands behind
/// it.
namespace tarvello::store::access {

inline constexpr std::size_t page_size = 4096;
using Page = std::array<std::uint8_t, page_size>;
using PageNumber = std::uint32_t;
/// The format's end of a file: 2 GB.
inline constexpr PageNumber max_pages = 0x80000;

enum class PageType : std::uint8_t { header, data, definition, index_node, index_leaf, usage_bits };

/// Where a row lies. In the file: row number (1), page number (3).
struct RowPointer {
    PageNumber page = 0;
    std::uint8_t row = 0;

    static RowPointer from_word(std::uint32_t word) {
        return {word >> 8, static_cast<std::uint8_t>(word & 0xFF)};
    }
    std::uint32_t word() const { return (page << 8) | row; }
    auto operator<=>(const RowPointer&) const = default;
};

/// The types of columns as the file numbers them.
enum class StoredType : std::uint8_t {
    yes_no = 1,
    byte = 2,
    integer16 = 3,
    integer32 = 4,
    currency = 5,
    single_float = 6,
    double_float = 7,
    date = 8,
    binary = 9,
    text = 10,
    ole = 11,
    memo = 12,
    guid = 15,
    numeric = 16,
};

namespace format {

/// The pages that every file has, in the order in which a new one gets them.
inline constexpr PageNumber global_map_page = 1;  ///< row 0: the free pages
inline constexpr PageNumber catalogue_page = 2;   ///< the definition of MSysObjects
inline constexpr PageNumber last_system_page = 5; ///< the definition of MSysRelationships

/// The head of every page but the first.
namespace page {
inline constexpr std::size_t type_at = 0; // 1
inline constexpr std::size_t mark_at = 1; // 1
inline constexpr std::uint8_t mark = 1;
inline constexpr std::size_t free_bytes_at = 2; // 2
inline constexpr std::size_t owner_at = 4;      ///< page of the table's definition
} // namespace page

/// Page 0.
namespace header {
inline constexpr std::size_t name_at = 4;       // 16
inline constexpr std::size_t version_at = 0x14; // 1
inline constexpr std::uint8_t version = 1;      ///< 0 before, 2 and more of .accdb
inline constexpr std::size_t masked_at = 0x18;  ///< under an RC4 stream, masked_size bytes
inline constexpr std::size_t masked_size = 128;
inline constexpr std::array<std::uint8_t, 4> mask_key{0xC7, 0xDA, 0x39, 0x6B};
inline constexpr std::size_t code_page_at = 0x3C; // 2
inline constexpr std::size_t page_key_at = 0x3E;  ///< not 0: the other pages are encrypted
inline constexpr std::size_t password_at = 0x42;
inline constexpr std::size_t password_size = 40;
inline constexpr std::size_t engine_build_at = 0x6A; // 2
inline constexpr std::size_t sort_order_at = 0x6E;
inline constexpr std::size_t created_at = 0x72; // 8, a double
inline constexpr std::size_t revision_at = 0x98;
inline constexpr std::size_t revision_text_at = 0x9C;
inline constexpr std::size_t user_counters_at = 0xE00; ///< words, one for each possible user
inline constexpr std::size_t users = 256;
} // namespace header

/// The order "General" of texts, version 0: what bears it sorts as this program knows.
inline constexpr std::uint32_t general_order = 0x0409;

/// Pages of rows.
namespace data {
inline constexpr std::size_t row_count_at = 12; // 2
inline constexpr std::size_t slots_at = 14;     ///< of each row, slot_size: flags and place
inline constexpr std::size_t slot_size = 2;
inline constexpr std::uint32_t deleted_flag = 0x8000;
inline constexpr std::uint32_t elsewhere_flag = 0x4000;
inline constexpr std::uint32_t offset_mask = 0x1FFF;
inline constexpr std::uint32_t max_rows = 255;
inline constexpr std::size_t max_row_size = 4060;
/// On a page of long values a row may take everything.
inline constexpr std::size_t max_long_row_size = 4076;
/// The owner of a page of long values: the letters LVAL.
inline constexpr std::uint32_t long_value_owner = 0x4C41564C;
/// The owner of page 1, and of the pages with the maps of a table.
inline constexpr std::uint32_t global_map_owner = 1;
inline constexpr std::uint32_t maps_owner = 0;
} // namespace data

/// What a currency counts in.
inline constexpr std::int64_t ten_thousandths = 10000;

/// A row: its columns (2), fixed values, variable values, their end, starts and number, a bit for each
/// column.
namespace row {
inline constexpr std::size_t fixed_at = 2;
inline constexpr std::size_t word_size = 2; ///< of the counts and places
} // namespace row

/// What a row holds of a memo or OLE value: size and kind, the place of what lies outside, a stamp.
namespace long_value {
inline constexpr std::size_t head_size = 12;
inline constexpr std::size_t place_at = 4;
inline constexpr std::uint32_t size_mask = 0x3FFFFFFF;
inline constexpr std::uint32_t inline_kind = 0x80000000;
inline constexpr std::uint32_t one_row_kind = 0x40000000;
inline constexpr std::size_t most_inline = 64;
inline constexpr std::size_t most_compressed = 1024; ///< of the bytes without compression
inline constexpr std::size_t link_size = 4;          ///< a row of a chain starts with the place of the next
/// The least bytes that count as room on a page of long values: shorter values stay inside their row.
inline constexpr std::size_t least_row = most_inline + 1;
} // namespace long_value

/// A set of pages, in a row: a kind (1), then the first page and bits, or a list of pages of bits.
namespace map {
inline constexpr std::uint8_t bits_kind = 0;
inline constexpr std::uint8_t list_kind = 1;
inline constexpr std::size_t first_page_at = 1;
inline constexpr std::size_t bits_at = 5;
inline constexpr std::size_t list_at = 1;
inline constexpr std::size_t entry_size = 4;
inline constexpr std::size_t new_size = 69;        ///< of a new row, of either kind
inline constexpr PageNumber first_multiple = 8;    ///< the first page is a multiple of it
inline constexpr PageNumber pages_per_growth = 32; ///< a row grows by 4 bytes
inline constexpr std::size_t page_bits_at = 4;     ///< on a page of bits
inline constexpr PageNumber pages_per_bit_page = (page_size - page_bits_at) * 8;
} // namespace map

/// The definition of a table: the text of one page or several joined.
namespace definition {
inline constexpr std::size_t next_page_at = 4;
inline constexpr std::size_t head_size = 8; ///< of a page behind the first, not part of the text
inline constexpr std::size_t length_at = 8;
inline constexpr std::size_t constant_at = 12;
inline constexpr std::uint32_t constant = 0x659; ///< here, in columns and in logical indexes
inline constexpr std::size_t rows_at = 16;
inline constexpr std::size_t last_autonumber_at = 20;
inline constexpr std::size_t autonumber_step_at = 24;
inline constexpr std::size_t kind_at = 40; // 1
inline constexpr std::uint8_t user_kind = 0x4E;
inline constexpr std::uint8_t system_kind = 0x53;
inline constexpr std::size_t row_columns_at = 41;      // 2
inline constexpr std::size_t variable_columns_at = 43; // 2
inline constexpr std::size_t columns_at = 45;          // 2
inline constexpr std::size_t logical_indexes_at = 47;
inline constexpr std::size_t real_indexes_at = 51;
inline constexpr std::size_t owned_pages_at = 55;
inline constexpr std::size_t free_pages_at = 59;
inline constexpr std::size_t counts_at = 63; ///< of each real index, count_size
inline constexpr std::size_t count_size = 12;
inline constexpr std::size_t count_built_at = 0;
inline constexpr std::size_t count_distinct_at = 4;
inline constexpr std::uint32_t none = 0xFFFF; ///< the number of no column
inline constexpr std::size_t name_length_size = 2;
inline constexpr std::size_t long_maps_size = 8; ///< behind the number of a column: two row pointers
inline constexpr std::size_t map_size = 4;
inline constexpr std::uint32_t most_columns = 255;
inline constexpr std::uint32_t most_row_columns = 2048; ///< deleted columns count on for a while
inline constexpr std::uint32_t most_indexes = 64;
inline constexpr std::uint32_t most_logical_indexes = 255;
inline constexpr int most_pages = 256; ///< 255 columns with the longest names take about 40
} // namespace definition

namespace column {
inline constexpr std::size_t size = 25;
inline constexpr std::size_t type_at = 0; // 1
inline constexpr std::size_t constant_at = 1;
inline constexpr std::size_t number_at = 5;         // 2
inline constexpr std::size_t variable_place_at = 7; // 2
inline constexpr std::size_t ordinal_at = 9;        // 2
inline constexpr std::size_t sort_order_at = 11;    ///< of numeric: precision and scale
inline constexpr std::size_t scale_at = 12;         // 1
inline constexpr std::size_t flags_at = 15;         // 1
inline constexpr std::size_t more_flags_at = 16;    // 1
inline constexpr std::size_t fixed_place_at = 21;   // 2
inline constexpr std::size_t length_at = 23;        // 2
inline constexpr std::uint8_t fixed_flag = 0x01;
inline constexpr std::uint8_t nullable_flag = 0x02;
inline constexpr std::uint8_t autonumber_flag = 0x04;
inline constexpr std::uint8_t system_flag = 0x10;
inline constexpr std::uint8_t hidden_flag = 0x20;
inline constexpr std::uint8_t compressible_flag = 0x01; ///< of more_flags
} // namespace column

/// A real index: pages and the columns that order them.
namespace index {
inline constexpr std::size_t size = 52;
inline constexpr std::uint32_t constant = 0x783;
inline constexpr std::size_t columns_at = 4; ///< most_columns times: number (2), order (1)
inline constexpr std::size_t most_columns = 10;
inline constexpr std::size_t column_size = 3;
inline constexpr std::size_t order_at = 2;
inline constexpr std::uint8_t ascending_flag = 0x01;
inline constexpr std::size_t pages_at = 34;
inline constexpr std::size_t root_at = 38;
inline constexpr std::size_t flags_at = 46; // 1
inline constexpr std::uint8_t unique_flag = 0x01;
inline constexpr std::uint8_t ignores_nulls_flag = 0x02; ///< of rows that are null in all columns
inline constexpr std::uint8_t required_flag = 0x08;
inline constexpr std::uint8_t always_flag = 0x80;
inline constexpr std::uint8_t known_flags = always_flag | required_flag | ignores_nulls_flag | unique_flag;
} // namespace index

/// A logical index: a name, and what a real one is for.
namespace logical {
inline constexpr std::size_t size = 28;
inline constexpr std::size_t constant_at = 0;
inline constexpr std::size_t number_at = 4;
inline constexpr std::size_t real_at = 8;
inline constexpr std::size_t related_at = 13;  ///< 0xFFFFFFFF outside of relationships
inline constexpr std::size_t cascades_at = 21; // 2
inline constexpr std::uint32_t no_cascades = 0x0404;
inline constexpr std::size_t type_at = 23; // 1
inline constexpr std::uint8_t primary_type = 1;
inline constexpr std::uint8_t relationship_type = 2;
} // namespace logical

/// A leaf or a node of an index.
namespace index_page {
inline constexpr std::size_t previous_at = 12;
inline constexpr std::size_t next_at = 16;
inline constexpr std::size_t tail_at = 20;
inline constexpr std::size_t prefix_at = 24; // 2
inline constexpr std::size_t node_mark_at = 26;
inline constexpr std::uint8_t node_mark = 1;
inline constexpr std::size_t mask_at = 27; ///< a bit at the distance of each entry's end from entries_at
inline constexpr std::size_t mask_size = 453;
inline constexpr std::size_t entries_at = 480;
inline constexpr std::size_t entries_room = page_size - entries_at;
inline constexpr std::size_t row_size = 4;   ///< page and row, behind the key
inline constexpr std::size_t child_size = 4; ///< of a node's entry, behind the row
/// An entry may not be longer: two must fit on a page.
inline constexpr std::size_t max_entry_size = 1700;
inline constexpr int deepest = 24; ///< of a sound index a file of 2 GB has fewer levels
} // namespace index_page

/// How the bytes of a key begin, column by column.
namespace key {
inline constexpr std::uint8_t value = 0x7F;
inline constexpr std::uint8_t null = 0x00;
inline constexpr std::uint8_t above_null = 0x01;
inline constexpr std::uint8_t yes = 0x00;
inline constexpr std::uint8_t no = 0xFF;
inline constexpr std::uint8_t text_end = 0x01; ///< behind the inline bytes
inline constexpr std::uint8_t no_accent = 0x02;
inline constexpr std::uint32_t ignored_place = 0x8007; ///< and 4 for each letter in front
inline constexpr std::uint32_t ignored_step = 4;
inline constexpr std::uint8_t ignored_mark = 0x06;
} // namespace key

/// The catalogue: MSysObjects and MSysACEs.
namespace catalogue {
inline constexpr std::int64_t table_type = 1;
inline constexpr std::uint32_t page_mask = 0xFFFFFF; ///< of a table's Id
inline constexpr std::uint32_t parent_of_containers = 0x0F000000;
inline constexpr std::uint32_t tables_id = 0x0F000001; ///< the row that all tables hang on
inline constexpr std::uint32_t databases_id = 0x0F000002;
inline constexpr std::uint32_t relationships_id = 0x0F000003;
inline constexpr std::uint32_t database_id = 0x10000000; ///< MSysDb, which the user owns
inline constexpr std::int64_t container_type = 3;
inline constexpr std::int64_t database_type = 2;
inline constexpr std::uint32_t own_flag = 0x80000000; ///< objects of the engine itself
inline constexpr std::uint32_t hidden_flags = 0x8000000A;
/// A relationship with this flag is only drawn, not enforced.
inline constexpr std::int64_t not_enforced = 2;
} // namespace catalogue

} // namespace format
} // namespace tarvello::store::access
