#pragma once

#include "store/database.h"

#include <string>

namespace tarvello {

/// The invoices, the newest one first: it is the one of the highest key.
inline constexpr const char* newest_first = "SELECT * FROM Fatture ORDER BY ID DESC";
/// The newest invoice alone.
inline constexpr const char* newest_invoice = "SELECT TOP 1 * FROM Fatture ORDER BY ID DESC";

/// Closes the shared results that the invoices use; one that is not open is no fault.
void ChiudiRecordset(Database& database);

/// Runs a statement on one of the shared results, with all of them closed before and after it.
/// @param use  called on the result as it stands on its first row; what it throws leaves the result open
/// @throws Failure if the statement fails
template <typename Use>
void with_result(Database& database, Recordset& result, const std::string& sql, Use use,
                 const Parameters& parameters = {}) {
    ChiudiRecordset(database);
    result.open(sql, database.dbConnection, parameters);
    use(result);
    ChiudiRecordset(database);
}

/// The same for a statement that yields no rows.
void run_statement(Database& database, Recordset& result, const std::string& sql,
                   const Parameters& parameters = {});

} // namespace tarvello
