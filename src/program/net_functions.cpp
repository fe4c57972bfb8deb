#include "program/net_functions.h"

#include "program/program.h"

namespace tarvello {

void ApriBrowser(Program& program, const std::string& address) {
    program.opened_address = address;
    if (program.platform().desktop.open_address(address)) return;
    program.message("Errore imprevisto. Impossibile aprire Internet Explorer.", BoxIcon::none);
}

void ApriMail(Program& program, const std::string& address) {
    program.platform().desktop.open_address("mailto:" + address);
}

} // namespace tarvello
