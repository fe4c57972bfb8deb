#include "store/declaration.h"

#include "failure.h"
#include "store/failure_source.h"
#include "store/statement.h"
#include "text/letter_case.h"
#include "text/utf8.h"

#include <algorithm>

namespace tarvello::store {
namespace {

constexpr std::size_t most_name_length = 64;

[[noreturn]] void fail(const TableDeclaration& table, const std::string& what) {
    throw Failure(failure_number::statement, source,
                  "La tabella " + table.name + " non si può creare: " + what + ".");
}

void check_name(const TableDeclaration& table, const std::string& name) {
    if (!is_plain_name(name) || utf8::length(name) > most_name_length)
        fail(table, "il nome \"" + name + "\" non è ammesso");
}

void check_key(const TableDeclaration& table, const std::vector<std::string>& columns) {
    for (const std::string& name : columns) {
        const ColumnDeclaration* column = table.find(name);
        if (!column) fail(table, "non ha la colonna \"" + name + "\"");
        if (column->kind == ColumnKind::memo)
            fail(table, "la colonna " + name + " non può stare in un indice");
    }
}

template <typename Items>
void check_that_names_differ(const TableDeclaration& table, const Items& items) {
    for (auto one = items.begin(); one != items.end(); ++one) {
        if (std::any_of(items.begin(), one,
                        [&](const auto& other) { return equal_ignoring_case(other.name, one->name); })) {
            fail(table, "il nome \"" + one->name + "\" compare due volte");
        }
    }
}

} // namespace

const ColumnDeclaration* TableDeclaration::find(std::string_view column) const {
    const auto found = std::find_if(columns.begin(), columns.end(), [&](const ColumnDeclaration& one) {
        return equal_ignoring_case(one.name, column);
    });
    return found == columns.end() ? nullptr : &*found;
}

void check_declaration(const TableDeclaration& table) {
    check_name(table, table.name);
    if (table.columns.empty()) fail(table, "non ha colonne");
    check_that_names_differ(table, table.columns);
    check_that_names_differ(table, table.indexes);
    for (const ColumnDeclaration& column : table.columns) {
        check_name(table, column.name);
        if (column.kind == ColumnKind::text && (column.width < 1 || column.width > most_text_width))
            fail(table, "la colonna " + column.name + " non ha una larghezza fra 1 e 255");
        if (column.kind == ColumnKind::autonumber &&
            (table.primary_key.size() != 1 || table.find(table.primary_key[0]) != &column)) {
            fail(table, "il numero automatico " + column.name + " non è la chiave");
        }
    }
    check_key(table, table.primary_key);
    for (const IndexDeclaration& index : table.indexes) {
        check_name(table, index.name);
        if (index.columns.empty()) fail(table, "l'indice " + index.name + " non ha colonne");
        check_key(table, index.columns);
    }
}

} // namespace tarvello::store
