#include "shell/author_form.h"

#include "failure.h"
#include "program/maker_site.h"
#include "program/program.h"

#include <string>

namespace tarvello {

namespace {

/// The licences of the program and of what it is made with, and where its data comes from.
std::string licences(Program& program) {
    const Platform& platform = program.platform();
    const std::string path = platform.shipped_directory + platform.separator + "licenze.txt";
    try {
        return platform.files.read(path);
    } catch (const Failure& failure) {
        return failure.description(); // the rest of the window does not depend on it
    }
}

} // namespace

frmAutore::frmAutore(Program& program) : Form(program, "frmAutore") {
    set_caption("Autore");
    Image1.set_picture("tarvello");
    lblTitle.set_caption("Gli autori di Tarvello");
    Text1.set_locked(true);
    Text1.set_text(
        "Tarvello è un programma per i professionisti che emettono fatture: anagrafica dei clienti, "
        "fatture con rivalsa, I.V.A. e ritenuta d'acconto, stampa e documenti.\n\nSito: " +
        maker_host() + "\n\n" + licences(program));
    Command1.set_caption("&Chiudi");
    Command1.on_click = [this] { unload(); };
    set_keys(&Command1, &Command1);
}

} // namespace tarvello
