#include "store/archive.h"

#include "failure.h"
#include "platform/posix/new_file.h"
#include "store/access/access_engine.h"
#include "store/failure_source.h"
#include "store/file_kind.h"
#include "store/sqlite/sqlite_engine.h"
#include "text/letter_case.h"

#include <algorithm>
#include <filesystem>
#include <map>
#include <set>
#include <span>

namespace tarvello::store {
namespace {

constexpr std::int64_t rows_between_reports = 500;

std::unique_ptr<Engine> make_engine(const std::string& path, ArchiveFormat format,
                                    const RegionalSettings& regional) {
    return format == ArchiveFormat::access ? make_access_engine(path, regional)
                                           : make_sqlite_engine(path, regional);
}

/// A new archive while it is filled. Nothing may lie where it is to be, nor beside that, where its engine
/// would take it for its own.
class ArchiveInTheMaking {
public:
    explicit ArchiveInTheMaking(const std::string& path) : file_(checked(path), private_file) {}

    const std::string& path() const { return file_.path(); }
    /// All is written; who looks through it may lock it now.
    void finish() { file_.finish(); }
    void place() {
        checked(file_.destination()); // somebody may have made it meanwhile
        file_.place();
    }

private:
    static const std::string& checked(const std::string& path) {
        if (std::filesystem::exists(std::filesystem::symlink_status(path)))
            fail(path, "esiste già: scegliere un altro nome.");
        for (const std::string& companion : companions_of(path)) {
            if (std::filesystem::exists(companion))
                fail(companion, "appartiene a un altro archivio con questo nome: scegliere un altro nome.");
        }
        return path;
    }
    [[noreturn]] static void fail(const std::string& path, const std::string& why) {
        throw Failure(failure_number::file_access, source, "Il file \"" + path + "\" " + why);
    }

    NewFile file_;
};

bool is_text_without_limit(const ColumnDeclaration* column) {
    return column && column->kind == ColumnKind::text && column->width == 0;
}

/// A declaration as Access files can have it: a text has a width there, and one that is as wide as can be is
/// no help to find rows.
/// @param wide  such texts become memos
TableDeclaration for_access(TableDeclaration table, bool wide) {
    const auto over_such_text = [&](const IndexDeclaration& index) {
        return std::any_of(index.columns.begin(), index.columns.end(),
                           [&](const std::string& name) { return is_text_without_limit(table.find(name)); });
    };
    std::erase_if(table.indexes, over_such_text);
    for (ColumnDeclaration& column : table.columns) {
        if (!is_text_without_limit(&column)) continue;
        column.kind = wide ? ColumnKind::memo : ColumnKind::text;
        column.width = wide ? 0 : most_text_width;
    }
    return table;
}

/// What the table of a file is to be in the new one: its own columns, and those that the program wants.
TableDeclaration joined(const TableDeclaration& have, const TableDeclaration* wanted) {
    TableDeclaration table = have;
    if (wanted) {
        table = *wanted;
        for (const ColumnDeclaration& column : have.columns) {
            const ColumnDeclaration* known = wanted->find(column.name);
            if (!known) {
                table.columns.push_back(column);
            } else if (!is_text_without_limit(&column) && known->kind != ColumnKind::autonumber) {
                table.columns[static_cast<std::size_t>(known - wanted->columns.data())] = column;
            }
        }
        table.last_autonumber = have.last_autonumber;
    }
    for (ColumnDeclaration& column : table.columns) {
        const bool key = table.primary_key.size() == 1 && table.find(table.primary_key[0]) == &column;
        if (column.kind == ColumnKind::autonumber && !key) column.kind = ColumnKind::whole;
    }
    const bool numbered = std::any_of(table.columns.begin(), table.columns.end(), [](const auto& column) {
        return column.kind == ColumnKind::autonumber;
    });
    if (!numbered) table.last_autonumber = 0;
    for (IndexDeclaration& index : table.indexes) {
        // One file of SQLite has no two indexes of a name, and tables of Access often do.
        if (!index.name.starts_with(table.name)) index.name = table.name + "_" + index.name;
    }
    return table;
}

/// Rows of a table on their way into its new one.
class Crossing {
public:
    /// @param as_it_is  what does not convert goes over as it is, else it is a failure
    Crossing(const TableDeclaration& table, const TableDeclaration& source, const RowSource& rows,
             bool as_it_is, const RegionalSettings& regional)
        : as_it_is_(as_it_is), regional_(regional) {
        for (std::size_t place = 0; place < rows.columns().size(); ++place) {
            const std::string& name = rows.columns()[place].name;
            const ColumnDeclaration* column = table.find(name);
            if (!column || !source.find(name)) continue;
            names_.push_back(column->name);
            columns_.push_back({column->name, type_of(column->kind), column->width});
            places_.push_back(place);
            may_repeat_null_.push_back(column->kind == ColumnKind::text &&
                                       is_in_unique_index(table, *column));
        }
        converted_.resize(columns_.size());
        values_.resize(columns_.size());
    }

    const std::vector<std::string>& names() const { return names_; }

    std::span<const ValueView> values(const RowSource& rows) {
        for (std::size_t i = 0; i < columns_.size(); ++i) {
            values_[i] = rows.value(places_[i]);
            // Access files give the empty text for none. Nulls may repeat where texts may not.
            if (may_repeat_null_[i] && values_[i] == ValueView(std::string_view())) values_[i] = {};
            if (!fits(values_[i], columns_[i])) convert(i);
        }
        return values_;
    }

private:
    static bool is_in_unique_index(const TableDeclaration& table, const ColumnDeclaration& column) {
        return std::any_of(table.indexes.begin(), table.indexes.end(), [&](const IndexDeclaration& index) {
            return index.unique && std::any_of(index.columns.begin(), index.columns.end(),
                                               [&](const auto& name) { return table.find(name) == &column; });
        });
    }

    static bool fits(const ValueView& value, const Column& column) {
        if (const auto* text = std::get_if<std::string_view>(&value))
            return column.type == ColumnType::text && (column.width == 0 || text->size() <= column.width);
        switch (column.type) {
        case ColumnType::text:
            return std::holds_alternative<std::monostate>(value);
        case ColumnType::yes_no:
            return std::holds_alternative<bool>(value);
        case ColumnType::integer:
            return std::holds_alternative<std::int64_t>(value) ||
                   std::holds_alternative<std::monostate>(value);
        case ColumnType::number:
            return std::holds_alternative<double>(value) || std::holds_alternative<std::monostate>(value);
        case ColumnType::currency:
            return std::holds_alternative<Amount>(value) || std::holds_alternative<std::monostate>(value);
        case ColumnType::date:
            return std::holds_alternative<Date>(value) || std::holds_alternative<std::monostate>(value);
        }
        return false;
    }

    void convert(std::size_t i) {
        const auto convert = [&] {
            converted_[i] = convert_value(values_[i], columns_[i], regional_);
            values_[i] = view_of(converted_[i]);
        };
        // A file of SQLite holds whatever was put into it, also a text in a column of numbers.
        as_it_is_ ? skip_failures(convert) : convert();
    }

    bool as_it_is_;
    const RegionalSettings& regional_;
    std::vector<std::string> names_;
    std::vector<Column> columns_;     // of the new table
    std::vector<std::size_t> places_; // of the columns in a row that comes
    std::vector<bool> may_repeat_null_;
    std::vector<Value> converted_;
    std::vector<ValueView> values_;
};

/// All tables of an archive on their way into a new one.
class CarryOver {
public:
    enum class End : std::uint8_t { done, given_up, too_narrow };

    CarryOver(Engine& from, ArchiveFormat format, const RegionalSettings& regional,
              const CarryProgress& progress)
        : from_(from), format_(format), regional_(regional), progress_(progress), tables_(from.tables()),
          wanted_(schema_tables()) {
        for (const StoredTable& table : tables_) all_ += table.rows;
    }

    /// @return too_narrow if a table must have memos, which it will have the next time
    End fill(Engine& to) {
        done_ = 0;
        carried_.clear();
        to.begin();
        for (const TableDeclaration& table : wanted_) {
            const auto same = [&](const StoredTable& other) {
                return equal_ignoring_case(other.declaration.name, table.name);
            };
            if (std::none_of(tables_.begin(), tables_.end(), same)) to.create_table(as_made(table));
        }
        for (const StoredTable& table : tables_) {
            if (const End end = carry(table.declaration, to); end != End::done) return end;
        }
        to.commit();
        return End::done;
    }

    /// @throws Failure if the new archive does not have all rows
    void look_through(Engine& made) const {
        const std::vector<StoredTable> found = made.tables();
        for (const StoredTable& table : tables_) {
            const bool whole = std::any_of(found.begin(), found.end(), [&](const StoredTable& other) {
                return equal_ignoring_case(other.declaration.name, table.declaration.name) &&
                       other.rows == carried_.at(table.declaration.name);
            });
            if (whole) continue;
            throw Failure(failure_number::database, source,
                          "Il nuovo archivio non ha tutte le righe della tabella " + table.declaration.name +
                              ": non è stato tenuto.");
        }
    }

    std::vector<std::string> left_out() const {
        std::vector<std::string> names;
        for (const StoredTable& table : tables_) {
            for (const std::string& column : table.other_columns)
                names.push_back(table.declaration.name + "." + column);
        }
        return names;
    }

private:
    TableDeclaration as_made(const TableDeclaration& table) const {
        return format_ == ArchiveFormat::access ? for_access(table, wide_.count(table.name) > 0) : table;
    }

    const TableDeclaration* wanted(const std::string& name) const {
        const auto found = std::find_if(wanted_.begin(), wanted_.end(), [&](const TableDeclaration& table) {
            return equal_ignoring_case(table.name, name);
        });
        return found == wanted_.end() ? nullptr : &*found;
    }

    End carry(const TableDeclaration& source, Engine& to) {
        const TableDeclaration table = as_made(joined(source, wanted(source.name)));
        to.create_table(table);
        Statement all;
        all.table = source.name;
        const auto rows = from_.run(all);
        Crossing crossing(table, source, *rows, format_ == ArchiveFormat::sqlite, regional_);
        const auto sink = to.fill(table.name, crossing.names());
        std::int64_t& row = carried_[source.name];
        while (rows->next()) {
            ++row;
            try {
                sink->add(crossing.values(*rows));
            } catch (const Failure& failure) {
                if (format_ == ArchiveFormat::access && wide_.insert(table.name).second)
                    return End::too_narrow;
                throw Failure(failure.number(), failure.source(),
                              "Tabella " + source.name + ", riga " + std::to_string(row) + ": " +
                                  failure.description());
            }
            if (++done_ % rows_between_reports == 0 && progress_ && !progress_(done_, std::max(done_, all_)))
                return End::given_up;
        }
        return End::done;
    }

    Engine& from_;
    ArchiveFormat format_;
    const RegionalSettings& regional_;
    const CarryProgress& progress_;
    const std::vector<StoredTable> tables_;
    const std::vector<TableDeclaration> wanted_;
    std::set<std::string> wide_;                  // tables whose texts are memos
    std::map<std::string, std::int64_t> carried_; // rows of each table
    std::int64_t all_ = 0;                        // as the tables count them, which need not be right
    std::int64_t done_ = 0;
};

} // namespace

void make_archive(const std::string& path, ArchiveFormat format, const RegionalSettings& regional) {
    ArchiveInTheMaking file(path);
    {
        const auto engine = make_engine(file.path(), format, regional);
        engine->begin();
        for (const TableDeclaration& table : schema_tables())
            engine->create_table(format == ArchiveFormat::access ? for_access(table, false) : table);
        engine->commit();
    }
    file.finish();
    file.place();
}

std::optional<std::vector<std::string>> carry_over(Engine& from, const std::string& path,
                                                   ArchiveFormat format, const RegionalSettings& regional,
                                                   const CarryProgress& progress) {
    CarryOver work(from, format, regional, progress);
    for (;;) {
        ArchiveInTheMaking file(path);
        const CarryOver::End end = work.fill(*make_engine(file.path(), format, regional));
        if (end == CarryOver::End::given_up) return std::nullopt;
        if (end == CarryOver::End::too_narrow) continue;
        file.finish();
        work.look_through(*open_engine(file.path(), regional));
        file.place();
        return work.left_out();
    }
}

} // namespace tarvello::store
