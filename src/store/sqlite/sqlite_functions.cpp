#include "store/sqlite/sqlite_functions.h"

#include "text/ascii.h"
#include "text/letter_case.h"

#include <sqlite3.h>

#include <algorithm>
#include <memory>
#include <string_view>

namespace tarvello::store {
namespace {

constexpr const char* pattern_type = "tarvello::store::LikePattern";

int compare_ignoring_case(void*, int left_size, const void* left_bytes, int right_size,
                          const void* right_bytes) {
    const std::string_view left(static_cast<const char*>(left_bytes), static_cast<std::size_t>(left_size));
    const std::string_view right(static_cast<const char*>(right_bytes), static_cast<std::size_t>(right_size));
    const std::size_t common = std::min(left.size(), right.size());
    std::size_t at = 0;
    for (; at < common; ++at) {
        if (!ascii::contains(left[at]) || !ascii::contains(right[at])) break;
        if (const int difference = ascii::lower(left[at]) - ascii::lower(right[at])) return difference;
    }
    if (at == common) return left_size - right_size;
    return fold_case(left.substr(at)).compare(fold_case(right.substr(at)));
}

void matches(sqlite3_context* context, int, sqlite3_value** arguments) {
    const auto* pattern = static_cast<const LikePattern*>(sqlite3_value_pointer(arguments[1], pattern_type));
    const auto* text = reinterpret_cast<const char*>(sqlite3_value_text(arguments[0]));
    if (!pattern || !text) return; // null, as every comparison with one
    const auto size = static_cast<std::size_t>(sqlite3_value_bytes(arguments[0]));
    sqlite3_result_int(context, pattern->matches({text, size}) ? 1 : 0);
}

} // namespace

void register_sqlite_functions(sqlite3* handle) {
    sqlite3_create_collation(handle, "ignoring_case", SQLITE_UTF8, nullptr, compare_ignoring_case);
    sqlite3_create_function(handle, "matches", 2, SQLITE_UTF8 | SQLITE_DETERMINISTIC | SQLITE_DIRECTONLY,
                            nullptr, matches, nullptr, nullptr);
}

int bind_pattern(sqlite3_stmt* statement, int index, LikePattern pattern) {
    auto own = std::make_unique<LikePattern>(std::move(pattern));
    return sqlite3_bind_pointer(statement, index, own.release(), pattern_type,
                                [](void* old) { delete static_cast<LikePattern*>(old); });
}

} // namespace tarvello::store
