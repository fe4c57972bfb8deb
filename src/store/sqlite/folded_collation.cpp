#include "store/sqlite/folded_collation.h"

#include "text/letter_case.h"

#include <sqlite3.h>

namespace tarvello::store::sqlite {
namespace {

int compare(void*, int left_size, const void* left, int right_size, const void* right) {
    const auto folded = [](const void* text, int size) {
        return fold_case({static_cast<const char*>(text), static_cast<std::size_t>(size)});
    };
    return folded(left, left_size).compare(folded(right, right_size));
}

} // namespace

int add_folded_collation(sqlite3* database) {
    return sqlite3_create_collation_v2(database, folded_collation, SQLITE_UTF8, nullptr, compare, nullptr);
}

} // namespace tarvello::store::sqlite
