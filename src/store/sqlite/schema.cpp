#include "store/sqlite/schema.h"

#include "failure.h"
#include "store/failure_source.h"
#include "store/sqlite/query.h"
#include "text/letter_case.h"

#include <algorithm>
#include <charconv>

namespace tarvello::store {

const char* const schema_script =
#include "schema_script.inc"
    ;

namespace {

constexpr const char* amount_type = "TENTHOUSANDTHS INT";
/// The collation of this program is on no schema, which others must be able to read; this one comes near it.
constexpr const char* no_case = " COLLATE NOCASE";

std::string joined(const std::vector<std::string>& parts) {
    std::string text;
    for (const std::string& part : parts) text += (text.empty() ? "" : ", ") + part;
    return text;
}

/// The width in VARCHAR(40); 0 if there is none.
std::size_t width_in(const std::string& declared) {
    const std::size_t open = declared.find('(');
    std::size_t width = 0;
    if (open != std::string::npos)
        std::from_chars(declared.data() + open + 1, declared.data() + declared.size(), width);
    return width;
}

std::string type_text(const ColumnDeclaration& column) {
    switch (column.kind) {
    case ColumnKind::autonumber:
        return "INTEGER PRIMARY KEY AUTOINCREMENT";
    case ColumnKind::whole:
        return "INT"; // as a key it is no rowid, which would be given if it is missing
    case ColumnKind::number:
        return "DOUBLE";
    case ColumnKind::text:
        return column.width == 0 ? "TEXT" : "VARCHAR(" + std::to_string(column.width) + ")";
    case ColumnKind::memo:
        return "CLOB";
    case ColumnKind::currency:
        return amount_type;
    case ColumnKind::date:
        return "DATE";
    case ColumnKind::yes_no:
        return "BOOLEAN NOT NULL DEFAULT 0";
    }
    return {};
}

/// A column as a key or index has it.
std::string key_part(const TableDeclaration& table, const std::string& name) {
    const ColumnDeclaration* column = table.find(name);
    return quoted_name(name) + (column && column->kind == ColumnKind::text ? no_case : "");
}

std::string key_parts(const TableDeclaration& table, const std::vector<std::string>& names) {
    std::vector<std::string> parts;
    parts.reserve(names.size());
    for (const std::string& name : names) parts.push_back(key_part(table, name));
    return joined(parts);
}

std::string table_sql(const TableDeclaration& table) {
    std::vector<std::string> parts;
    bool key_is_written = false;
    for (const ColumnDeclaration& column : table.columns) {
        const bool key = std::any_of(table.primary_key.begin(), table.primary_key.end(),
                                     [&](const std::string& name) { return table.find(name) == &column; });
        const bool given = column.kind == ColumnKind::autonumber;
        key_is_written = key_is_written || given;
        // A text that is a key has the collation itself, so that it is found by its index.
        const bool text = column.kind == ColumnKind::text;
        parts.push_back(quoted_name(column.name) + " " + type_text(column) + (key && text ? no_case : "") +
                        (key && !given && column.kind != ColumnKind::yes_no ? " NOT NULL" : ""));
    }
    if (!table.primary_key.empty() && !key_is_written)
        parts.push_back("PRIMARY KEY (" + key_parts(table, table.primary_key) + ")");
    return "CREATE TABLE " + quoted_name(table.name) + " (" + joined(parts) + ")";
}

std::string text_literal(const std::string& text) { return "'" + double_apostrophes(text) + "'"; }

/// An index on a single text gets a second half, see data/schema.sql.
std::vector<std::string> index_sql(const TableDeclaration& table, const IndexDeclaration& index) {
    const std::string on = " ON " + quoted_name(table.name) + " (";
    std::vector<std::string> statements{std::string(index.unique ? "CREATE UNIQUE INDEX " : "CREATE INDEX ") +
                                        quoted_name(index.name) + on + key_parts(table, index.columns) + ")"};
    if (index.columns.size() == 1 && table.find(index.columns[0])->kind == ColumnKind::text) {
        const std::string column = quoted_name(index.columns[0]);
        statements.push_back("CREATE INDEX " + quoted_name(index.name + "_oltre_ASCII") + on + column +
                             ") WHERE " + column + " GLOB '*[^ -~]*'");
    }
    return statements;
}

std::vector<std::string> column_sql(const TableDeclaration& have, const TableDeclaration& wanted) {
    std::vector<std::string> statements;
    for (const ColumnDeclaration& column : wanted.columns) {
        if (have.find(column.name)) continue;
        if (column.kind == ColumnKind::autonumber) {
            throw Failure(failure_number::no_such_element, source,
                          "La tabella " + have.name + " non ha la colonna \"" + column.name +
                              "\", che non si può aggiungere.");
        }
        statements.push_back("ALTER TABLE " + quoted_name(have.name) + " ADD COLUMN " +
                             quoted_name(column.name) + " " + type_text(column));
    }
    return statements;
}

void read_columns(const SqliteFile& file, StoredTable& table) {
    TableDeclaration& declaration = table.declaration;
    Query columns(file, "SELECT name, type, pk FROM pragma_table_info(?1)");
    columns.bind(1, declaration.name);
    std::vector<std::pair<std::int64_t, std::string>> key;
    bool integer_key = false;
    while (columns.next()) {
        const std::string name = columns.text(0);
        const std::string type = upper_case(columns.text(1));
        if (columns.whole(2) > 0) {
            key.emplace_back(columns.whole(2), name);
            integer_key = type == "INTEGER";
        }
        if (auto column = column_of_type(name, type)) {
            declaration.columns.push_back(std::move(*column));
        } else {
            table.other_columns.push_back(name);
        }
    }
    std::sort(key.begin(), key.end());
    for (const auto& [place, name] : key) declaration.primary_key.push_back(name);
    if (key.size() != 1 || !integer_key) return;
    for (ColumnDeclaration& column : declaration.columns) {
        if (column.name == key[0].second) column.kind = ColumnKind::autonumber;
    }
}

void read_indexes(const SqliteFile& file, TableDeclaration& table) {
    Query indexes(file,
                  "SELECT name, \"unique\" FROM pragma_index_list(?1) WHERE origin <> 'pk' AND partial = 0");
    indexes.bind(1, table.name);
    while (indexes.next()) {
        IndexDeclaration index{indexes.text(0), {}, indexes.whole(1) != 0};
        Query parts(file, "SELECT name FROM pragma_index_info(?1)");
        parts.bind(1, index.name);
        bool plain = true; // no expression
        while (parts.next()) {
            plain = plain && table.find(parts.text(0));
            index.columns.push_back(parts.text(0));
        }
        if (plain) table.indexes.push_back(std::move(index));
    }
}

std::int64_t last_autonumber(const SqliteFile& file, const std::string& table) {
    Query made(file, "SELECT 1 FROM sqlite_master WHERE name = 'sqlite_sequence'");
    if (!made.next()) return 0;
    Query last(file, "SELECT seq FROM sqlite_sequence WHERE name = ?1");
    last.bind(1, table);
    return last.next() ? last.whole(0) : 0;
}

StoredTable read_table(const SqliteFile& file, const std::string& name) {
    StoredTable table;
    table.declaration.name = name;
    read_columns(file, table);
    read_indexes(file, table.declaration);
    table.declaration.last_autonumber = last_autonumber(file, name);
    return table;
}

std::vector<std::string> table_names(const SqliteFile& file) {
    std::vector<std::string> found;
    Query names(file, "SELECT name FROM sqlite_master WHERE type = 'table' AND name NOT LIKE 'sqlite\\_%' "
                      "ESCAPE '\\' AND sql NOT LIKE 'CREATE VIRTUAL%'");
    while (names.next()) found.push_back(names.text(0));
    return found;
}

} // namespace

std::optional<ColumnDeclaration> column_of_type(const std::string& name, const std::string& declared) {
    const std::string upper = upper_case(declared);
    const auto has = [&](const char* part) { return upper.find(part) != std::string::npos; };
    const auto column = [&](ColumnKind kind, std::size_t width = 0) {
        return ColumnDeclaration{name, kind, width};
    };
    if (upper == amount_type) return column(ColumnKind::currency);
    if (has("DATE") || has("TIME")) return column(ColumnKind::date);
    if (has("BOOL")) return column(ColumnKind::yes_no);
    if (has("INT")) return column(ColumnKind::whole);
    if (has("CLOB")) return column(ColumnKind::memo);
    if (has("CHAR") || has("TEXT") || upper.empty()) {
        const std::size_t width = width_in(upper);
        return width > most_text_width ? column(ColumnKind::memo) : column(ColumnKind::text, width);
    }
    if (has("BLOB")) return std::nullopt;
    for (const char* part : {"REAL", "FLOA", "DOUB", "NUM", "DEC", "CURR"}) {
        if (has(part)) return column(ColumnKind::number);
    }
    return column(ColumnKind::text);
}

std::vector<StoredTable> read_tables(const SqliteFile& file) {
    std::vector<StoredTable> tables;
    for (const std::string& name : table_names(file)) {
        tables.push_back(read_table(file, name));
        Query rows(file, "SELECT count(*) FROM " + quoted_name(name));
        if (rows.next()) tables.back().rows = rows.whole(0);
    }
    return tables;
}

std::vector<std::string> missing_parts(const SqliteFile& file, const TableDeclaration& wanted) {
    const auto same_name = [&](const auto& other) {
        return [&other](const auto& one) { return equal_ignoring_case(one.name, other.name); };
    };
    TableDeclaration have;
    for (const std::string& name : table_names(file)) {
        if (equal_ignoring_case(name, wanted.name)) have = read_table(file, name).declaration;
    }
    std::vector<std::string> statements;
    if (have.name.empty()) {
        statements.push_back(table_sql(wanted));
    } else {
        statements = column_sql(have, wanted);
    }
    for (const IndexDeclaration& index : wanted.indexes) {
        if (std::any_of(have.indexes.begin(), have.indexes.end(), same_name(index))) continue;
        for (std::string& sql : index_sql(wanted, index)) statements.push_back(std::move(sql));
    }
    if (wanted.last_autonumber > have.last_autonumber) {
        const std::string name = text_literal(have.name.empty() ? wanted.name : have.name);
        statements.push_back("DELETE FROM sqlite_sequence WHERE name = " + name);
        statements.push_back("INSERT INTO sqlite_sequence (name, seq) VALUES (" + name + ", " +
                             std::to_string(wanted.last_autonumber) + ")");
    }
    return statements;
}

} // namespace tarvello::store
