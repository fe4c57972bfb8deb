#include "store/access/index_key.h"

#include "store/access/stored_text.h"
#include "text/utf8.h"

#include <algorithm>
#include <limits>

namespace tarvello::store::access {
namespace {

/// What a character gives to a key. Plain and accented ones give inline bytes; accented ones an accent byte
/// too; ignored ones nothing inline, and a code behind the rest.
struct SortCode {
    enum class Kind : std::uint8_t { plain, accented, ignored };
    char32_t character;
    Kind kind;
    std::uint8_t inline_bytes[2];
    std::uint8_t inline_count;
    std::uint8_t extra; // the accent byte, or the code
};

constexpr SortCode sort_codes[] = {
#include "store/access/sort_codes.inc"
};

/// The letters that a character counts for in the places of what follows it: ß is two s. 0 where no key of
/// Access shows how many.
std::size_t letters_of(char32_t character) {
    constexpr std::u32string_view unproven = U"ÆæŒœÞþĲĳ";
    if (unproven.find(character) != std::u32string_view::npos) return 0;
    return character == U'ß' ? 2 : 1;
}

[[noreturn]] void fail_for_character(char32_t character) {
    std::string shown;
    utf8::append(shown, character);
    throw not_writable("Il testo contiene il carattere \"" + shown +
                       "\", di cui non si conosce il posto nell'ordine di un indice del file Access: "
                       "non è stato scritto nulla.");
}

const SortCode& sort_code(char32_t character) {
    const auto* found =
        std::lower_bound(std::begin(sort_codes), std::end(sort_codes), character,
                         [](const SortCode& code, char32_t wanted) { return code.character < wanted; });
    if (found == std::end(sort_codes) || found->character != character) fail_for_character(character);
    return *found;
}

constexpr std::uint8_t sign_bit = 0x80;

/// The bytes of a number with the highest first.
void append_big_endian(Key& key, Bytes stored) {
    for (std::size_t i = stored.size(); i > 0; --i) key.push_back(stored[i - 1]);
}

bool is_whole(StoredType type) {
    return type == StoredType::integer16 || type == StoredType::integer32 || type == StoredType::currency;
}

bool is_floating(StoredType type) {
    return type == StoredType::single_float || type == StoredType::double_float || type == StoredType::date;
}

} // namespace

bool key_is_known(const ColumnDefinition& column) {
    if (!column.known_type) return false;
    if (column.type == StoredType::text) return !column.fixed() && column.sort_order == format::general_order;
    return is_whole(column.type) || is_floating(column.type) || column.type == StoredType::yes_no;
}

void append_text_key(Key& key, std::string_view text) {
    using namespace format::key;
    while (text.ends_with(' ')) text.remove_suffix(1);
    Key accents; // one for each letter
    Key ignored;
    std::size_t accents_end = 0;
    char32_t unproven = 0;
    for (const char32_t character : utf8::decode(text)) {
        const SortCode& code = sort_code(character);
        if (code.kind != SortCode::Kind::plain && unproven != 0) fail_for_character(unproven);
        if (code.kind == SortCode::Kind::ignored) {
            const std::size_t place = ignored_place + ignored_step * accents.size();
            ignored.push_back(static_cast<std::uint8_t>(place >> 8));
            ignored.push_back(static_cast<std::uint8_t>(place));
            ignored.push_back(ignored_mark);
            ignored.push_back(code.extra);
            continue;
        }
        key.append(code.inline_bytes, code.inline_count);
        const bool accented = code.kind == SortCode::Kind::accented;
        accents.push_back(accented ? code.extra : no_accent);
        if (accented) accents_end = accents.size();
        const std::size_t letters = letters_of(character);
        if (letters == 0) unproven = character;
        if (letters > 1) accents.append(letters - 1, no_accent);
    }
    key.push_back(text_end);
    key.append(accents, 0, accents_end);
    if (!ignored.empty()) {
        key.append(3, text_end);
        key.append(ignored);
    }
    key.push_back(null);
}

void append_key(Key& key, std::optional<Bytes> stored, bool yes, const ColumnDefinition& column,
                bool ascending) {
    using format::key::null;
    using format::key::value;
    const std::size_t start = key.size();
    if (!stored) {
        key.push_back(ascending ? null : static_cast<std::uint8_t>(~null));
        return;
    }
    key.push_back(value);
    if (column.type == StoredType::yes_no) {
        key.push_back(yes ? format::key::yes : format::key::no);
    } else if (is_whole(column.type)) {
        append_big_endian(key, *stored);
        key[start + 1] ^= sign_bit;
    } else if (is_floating(column.type)) {
        append_big_endian(key, *stored);
        if ((key[start + 1] & sign_bit) != 0) {
            for (std::size_t i = start + 1; i < key.size(); ++i) key[i] = static_cast<std::uint8_t>(~key[i]);
        } else {
            key[start + 1] ^= sign_bit;
        }
    } else {
        std::string text;
        decode_text(*stored, text);
        append_text_key(key, text);
    }
    if (!ascending) {
        for (std::size_t i = start; i < key.size(); ++i) key[i] = static_cast<std::uint8_t>(~key[i]);
    }
}

RowKey row_key(const RowView& row, const IndexDefinition& index, const TableDefinition& table) {
    RowKey key;
    for (const IndexColumn& part_of_key : index.columns) {
        const ColumnDefinition& column = table.columns[part_of_key.column];
        const auto stored = row.stored(column);
        if (stored) {
            key.all_null = false;
        } else {
            key.any_null = true;
        }
        append_key(key.bytes, stored, row.yes(column), column, part_of_key.ascending);
    }
    return key;
}

std::optional<Key> number_key(std::int64_t number, const ColumnDefinition& column, bool ascending) {
    std::uint8_t bytes[8];
    store64(bytes, static_cast<std::uint64_t>(number));
    // Up to where each whole number has a floating one, or one in ten-thousandths, of its own.
    const auto within = [number](std::int64_t limit) { return -limit <= number && number <= limit; };
    Key key;
    switch (column.type) {
    case StoredType::integer16:
        if (number != static_cast<std::int16_t>(number)) return std::nullopt;
        append_key(key, Bytes(bytes, 2), false, column, ascending);
        return key;
    case StoredType::integer32:
        if (number != static_cast<std::int32_t>(number)) return std::nullopt;
        append_key(key, Bytes(bytes, 4), false, column, ascending);
        return key;
    case StoredType::currency:
        if (!within(std::numeric_limits<std::int64_t>::max() / format::ten_thousandths)) return std::nullopt;
        store64(bytes, static_cast<std::uint64_t>(number * format::ten_thousandths));
        append_key(key, Bytes(bytes, 8), false, column, ascending);
        return key;
    case StoredType::single_float:
        if (!within(std::int64_t{1} << 24)) return std::nullopt;
        store32(bytes, std::bit_cast<std::uint32_t>(static_cast<float>(number)));
        append_key(key, Bytes(bytes, 4), false, column, ascending);
        return key;
    case StoredType::double_float:
        if (!within(std::int64_t{1} << 53)) return std::nullopt;
        store64(bytes, std::bit_cast<std::uint64_t>(static_cast<double>(number)));
        append_key(key, Bytes(bytes, 8), false, column, ascending);
        return key;
    default:
        return std::nullopt;
    }
}

} // namespace tarvello::store::access
