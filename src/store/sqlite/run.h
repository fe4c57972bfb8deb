#pragma once

#include "store/sqlite/plan.h"
#include "text/regional_settings.h"

#include <memory>

namespace tarvello::store {

/// Binds a value as the file holds it: an amount as whole ten-thousandths, a date as year-month-day, yes and
/// no as 1 and 0. A text is read when the statement steps, no later.
/// @param index  of the parameter, from 1
/// @return a result code of SQLite
int bind_value(sqlite3_stmt* statement, int index, const ValueView& value);

/// The value of a column of the current row.
ValueView read_value(sqlite3_stmt* statement, int column, ColumnType type);

/// A statement taken from its plan, and given back when its work is over.
class Run {
public:
    /// @throws Failure
    explicit Run(std::shared_ptr<Plan> plan);
    Run(Run&& other) noexcept;
    Run& operator=(Run&&) = delete;
    ~Run();

    sqlite3_stmt* statement() const { return statement_; }
    const Plan& plan() const { return *plan_; }
    const SqliteFile& file() const { return *plan_->file; }

    /// @throws Failure if a literal does not convert
    void bind_literals(const Statement& statement, const RegionalSettings& regional) const;
    /// @return true at a row, false when the statement is done
    bool step() const;

private:
    void bind(int index, const Value& value) const;
    void bind_comparand(int index, const Literal& literal, const Column& column,
                        const RegionalSettings& regional) const;

    std::shared_ptr<Plan> plan_;
    sqlite3_stmt* statement_ = nullptr;
};

} // namespace tarvello::store
