#pragma once

#include "platform/bars.h"
#include "platform/controls.h"
#include "platform/form.h"
#include "program/doors.h"
#include "program/session_fields.h"

namespace tarvello {

class Program;

/// The main window: menus, side panel, status bars, and the holder fields on a hidden panel. It opens the
/// other windows and opens and closes the database.
///
/// Whether a database is connected shows on the commands that need one only when the pointer next moves over
/// the window: directly after a change they keep their old state.
class MDIForm1 : public Form, public Doors {
public:
    explicit MDIForm1(Program& program);

    MenuItem mnuFile{*this, "mnuFile"};
    MenuItem mnuApri{*this, "mnuApri"};
    MenuItem CercaFile{*this, "CercaFile"};
    MenuItem mnuFileExit{*this, "mnuFileExit"};
    MenuItem Visualizza{*this, "Visualizza"};
    MenuItem mnuAnagrafica_Clienti{*this, "mnuAnagrafica_Clienti"};
    MenuItem mnuFatture{*this, "mnuFatture"};
    MenuItem IntestaFatture{*this, "IntestaFatture"};
    MenuItem Impostazioni{*this, "Impostazioni"};
    MenuItem mnuGestioneDatabase{*this, "mnuGestioneDatabase"};
    MenuItem mnuScaricaAggiornamenti{*this, "mnuScaricaAggiornamenti"};
    MenuItem mnuFattureElettroniche{*this, "mnuFattureElettroniche"};
    MenuItem mnuDatiElettronica{*this, "mnuDatiElettronica"};
    MenuItem Help{*this, "Help"};
    MenuItem Autore{*this, "Autore"};
    MenuItem AboutTarvello{*this, "AboutTarvello"};

    /// Header of the side panel. The arrow has four pictures, of which one shows: Ap while the panel is open
    /// and Ch while it is folded, n quiet and S under the pointer.
    Label lblNome2{*this, "lblNome2"};
    Picture imgApn2{*this, "imgApn2"};
    Picture imgApS2{*this, "imgApS2"};
    Picture imgChN2{*this, "imgChN2"};
    Picture imgChS2{*this, "imgChS2"};
    /// The side panel, which folds.
    Frame Picture11{*this, "Picture11"};
    /// Its commands, by the numbers of side_command.
    ControlArray<Label, 7> Label2{Picture11, "Label2"};
    /// The picture beside each command.
    ControlArray<Picture, 7> imgVoce{Picture11, "imgVoce"};
    /// The donation picture at the foot of the panel.
    Picture Image1{*this, "Image1"};

    StatusBar StatusBar2{*this, "StatusBar2"};
    /// What the command under the pointer does.
    StatusBar sbStatusBar{*this, "sbStatusBar"};

    /// The holder fields, and the menu entry that says whether a database is connected.
    SessionFields session;

    // Doors
    void calculate_fiscal_code(const std::string& caller, const std::string& surname, const std::string& name,
                               std::shared_ptr<TextBox> code) override;
    void calculate_fiscal_code(std::function<void(const std::string&)> taker) override;
    void pick_customer(std::shared_ptr<CustomerTarget> target) override;
    void ask_issuer_name() override;
    void show_guide() override;
    void show_help(const std::string& title, const std::string& text) override;
    void edit_e_invoice_issuer(const e_invoice::Field* field) override;
    void edit_e_invoice_customer(int number, const std::string& name, const e_invoice::Field* field) override;
    void show_letterhead(e_invoice::Field field) override;
    void open_e_invoice(int invoice) override;
    void show_invoice(int invoice, const e_invoice::Field* field, int line) override;
    std::string province_of(const std::string& municipality) override;

protected:
    bool on_query_unload(UnloadReason reason) override;
    void on_unload(UnloadReason reason) override;
    void on_resize(int width, int height) override;

private:
    void set_texts();
    void show_route();
    void connect_menus();
    void connect_panel();

    // Menus.
    void open_database();
    /// After another database could not be opened over the one of this route, which is still open: asks
    /// whether the user wants to stay with it.
    void offer_way_back(const std::string& route);
    void close_database();
    void find_files();
    void exit();
    void look_for_updates();
    void show_e_invoices();
    /// Says so where none is open.
    bool database_is_open();

    // Side panel.
    void run_side_command(std::size_t command);
    /// The pointer has come to a part of the window, or to none that shows it.
    void pointer_over(const Control* part);
    void follow_connection();
    void show_hover(const Control* part);
    void show_arrow(bool under_pointer);
    void fold();
    void unfold();
    void slide_panel(int from, int to);

    Program& program_;
    bool sliding_ = false;
    bool closing_ = false;
};

/// The numbers of the commands of the side panel.
namespace side_command {
inline constexpr std::size_t customers = 0;
inline constexpr std::size_t invoices = 1;
inline constexpr std::size_t letterhead = 2;
inline constexpr std::size_t tools = 3;
inline constexpr std::size_t exit = 4;
inline constexpr std::size_t preferences = 5;
inline constexpr std::size_t updates = 6;
} // namespace side_command

} // namespace tarvello
