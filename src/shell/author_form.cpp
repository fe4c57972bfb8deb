#include "shell/author_form.h"

#include "shell/maker_site.h"
#include "shell/program.h"

#include <string>

namespace tarvello {

namespace {

std::string credits() {
    return "Tarvello è un programma per i professionisti che emettono fatture: anagrafica dei clienti, "
           "fatture "
           "con rivalsa, I.V.A. e ritenuta d'acconto, stampa e documenti.\n"
           "\n"
           "Sito: " +
           maker_host() +
           "\n"
           "Licenza: MIT\n"
           "\n"
           "Componenti di terzi\n"
           "  Qt, licenza LGPL versione 3\n"
           "  SQLite, di pubblico dominio\n"
           "  utf8proc, licenza MIT\n"
           "  LibreOffice, licenza MPL versione 2.0\n"
           "  Caratteri Liberation, licenza SIL OFL 1.1\n"
           "\n"
           "Dati dei comuni\n"
           "  Archivio nazionale dei comuni (ANPR, Ministero dell'Interno), elenchi dell'ISTAT e "
           "dell'Agenzia delle Entrate, con licenza CC BY.";
}

} // namespace

frmAutore::frmAutore(Program& program) : Form(program, "frmAutore") {
    set_caption("Autore");
    Image1.set_picture("tarvello");
    lblTitle.set_caption("Gli autori di Tarvello");
    Text1.set_locked(true);
    Text1.set_text(credits());
    Command1.set_caption("&Chiudi");
    Command1.on_click = [this] { unload(); };
}

} // namespace tarvello
