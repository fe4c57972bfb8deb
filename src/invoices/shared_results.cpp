#include "invoices/shared_results.h"

#include "failure.h"

namespace tarvello {

void ChiudiRecordset(Database& database) {
    skip_failures([&] { database.rsFatture.close(); }, [&] { database.rsClienti.close(); },
                  [&] { database.rsIntestazione.close(); }, [&] { database.rsReport.close(); });
}

void run_statement(Database& database, Recordset& result, const std::string& sql,
                   const Parameters& parameters) {
    with_result(
        database, result, sql, [](const Recordset&) {}, parameters);
}

} // namespace tarvello
