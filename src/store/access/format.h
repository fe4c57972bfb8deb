#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

/// The figures of the file format of Access 2000-2003 that more than one source needs.
namespace tarvello::store::access {

inline constexpr std::size_t page_size = 4096;
using Page = std::array<std::uint8_t, page_size>;
using PageNumber = std::uint32_t;

enum class PageType : std::uint8_t { header, data, definition, index_node, index_leaf, usage_bits };

/// The page of the definition of the catalogue, and the page whose row 0 maps the free pages.
inline constexpr PageNumber catalogue_page = 2;
inline constexpr PageNumber global_map_page = 1;
/// The format's end of a file: 2 GB.
inline constexpr PageNumber max_pages = 0x80000;

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

} // namespace tarvello::store::access
