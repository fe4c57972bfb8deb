#include "program/session_fields.h"

#include "program/program.h"

namespace tarvello {

SessionFields::SessionFields(Program& program, Form& main_window)
    : mnuChiudiDatabase(main_window, "mnuChiudiDatabase"),
      FrameImpostazioni(main_window, "FrameImpostazioni"), program_(program) {
    FrameImpostazioni.set_visible(false);
    mnuChiudiDatabase.set_enabled(false);
    program_.set_session(this);
}

SessionFields::~SessionFields() { program_.set_session(nullptr); }

void SessionFields::take_route(const std::string& route) {
    if (txtDatabaseRoute.text() == route) {
        if (txtDatabaseRoute.on_change) txtDatabaseRoute.on_change();
    } else {
        txtDatabaseRoute.set_text(route);
    }
}

} // namespace tarvello
