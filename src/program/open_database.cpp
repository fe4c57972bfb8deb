#include "program/open_database.h"

#include "failure.h"
#include "program/program.h"
#include "program/session_fields.h"

namespace tarvello {

bool ApriDatabase(Program& program) {
    SessionFields& session = program.session();
    bool opened = false;
    skip_failures([&] {
        program.database().dbConnection.open(session.txtDatabaseRoute.text());
        opened = true;
    });
    session.mnuChiudiDatabase.set_enabled(opened);
    if (opened) {
        const std::string notice = program.database().dbConnection.engine().notice();
        if (!notice.empty()) program.message(notice, BoxIcon::exclamation);
    }
    return opened;
}

void ChiudiDatabase(Program& program) {
    Database& database = program.database();
    skip_failures([&] { database.rsFatture.close(); }, [&] { database.rsClienti.close(); },
                  [&] { database.rsIntestazione.close(); }, [&] { database.rsRiserva.close(); },
                  [&] { database.dbConnection.close(); });
}

} // namespace tarvello
