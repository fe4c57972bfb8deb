#include "shell/main_window.h"

#include "program/program.h"
#include "shell/session.h"

#include <array>

namespace tarvello {

namespace {

struct SideCommand {
    const char* caption;
    const char* tool_tip;
    const char* picture;
};

constexpr std::array<SideCommand, 7> side_commands{{
    {"Clienti", "Visualizza l'anagrafica clienti", "clienti"},
    {"Fatture", "Visualizza l'archivio fatture", "fatture"},
    {"Intestazione", "Visualizza i propri dati personali e le impostazioni di stampa", "intestazione"},
    {"Strumenti", "Visualizza gli strumenti di accesso ai dati e di backup", "strumenti"},
    {"Esci", "", "esci"},
    {"Impostazioni", "Visualiza le impostazioni delle aliquote per la fatturazione", "impostazioni"},
    {"Aggiornamenti", "Verifica la disponibilità di aggiornamenti", "aggiornamenti"},
}};

/// The lowest that the user can make the window, in twips.
constexpr int least_height = 9000;

} // namespace

MDIForm1::MDIForm1(Program& program)
    : Form(program, "MDIForm1"), Doors(program), session(program, *this), program_(program) {
    set_texts();
    connect_menus();
    connect_panel();
    // The first command has the keyboard from the start, and the folding of the panel comes after them all.
    order_tabs({&Label2[0], &Label2[1], &Label2[2], &Label2[3], &Label2[4], &Label2[5], &Label2[6], &imgApn2,
                &imgApS2, &imgChN2, &imgChS2});
    session.txtDatabaseRoute.on_change = [this] { show_route(); };
}

void MDIForm1::show_route() {
    set_caption(std::string(program_title) + " - [" + session.txtDatabaseRoute.text() + "]");
}

void MDIForm1::set_texts() {
    set_caption(program_title);
    mnuFile.set_caption("&File");
    mnuApri.set_caption("&Apri                    ");
    session.mnuChiudiDatabase.set_caption("Chiudi");
    CercaFile.set_caption("&Cerca File");
    mnuFileExit.set_caption("&Esci");
    Visualizza.set_caption("&Menù");
    mnuAnagrafica_Clienti.set_caption("&Clienti");
    mnuFatture.set_caption("&Fatture");
    IntestaFatture.set_caption("I&ntestazione");
    Impostazioni.set_caption("&Impostazioni");
    mnuGestioneDatabase.set_caption("&Strumenti");
    mnuScaricaAggiornamenti.set_caption("A&ggiornamenti");
    mnuFattureElettroniche.set_caption("Fatture &elettroniche");
    mnuDatiElettronica.set_caption("&Dati per la fattura elettronica");
    Help.set_caption("?");
    Autore.set_caption("&Autore");
    AboutTarvello.set_caption("&Programma");

    lblNome2.set_caption("Menù");
    Label2.each([](std::size_t i, Label& label) {
        label.set_caption(side_commands[i].caption);
        label.set_tool_tip(side_commands[i].tool_tip);
    });
    imgVoce.each([](std::size_t i, Picture& picture) { picture.set_picture(side_commands[i].picture); });
    imgApn2.set_picture("pannello-piega");
    imgApS2.set_picture("pannello-piega-attivo");
    imgChN2.set_picture("pannello-apri");
    imgChS2.set_picture("pannello-apri-attivo");
    Image1.set_picture("donazione");
    Image1.set_tool_tip("Donazioni con carta di credito o altri mezzi di pagamento.");
}

bool MDIForm1::on_query_unload(UnloadReason reason) {
    if (closing_) return true; // under a box of the closing that goes on
    closing_ = true;
    close_session(program_, reason);
    return false;
}

void MDIForm1::on_unload(UnloadReason) { program_.platform().windows.quit(); }

void MDIForm1::on_resize(int width, int height) {
    if (height < least_height) set_size(width, least_height);
}

} // namespace tarvello
