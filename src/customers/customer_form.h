#pragma once

#include "customers/customer_results.h"
#include "customers/customer_table.h"
#include "platform/bars.h"
#include "platform/controls.h"
#include "platform/form.h"
#include "platform/platform.h"
#include "program/drafts.h"

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace tarvello {

class Program;
class Recordset;

/// Where the columns of a customer stand among the boxes of frmClienti.
namespace customer_box {
inline constexpr std::size_t codice_fiscale = 0;
inline constexpr std::size_t nome = 1;
inline constexpr std::size_t indirizzo = 2;
inline constexpr std::size_t cap = 3;
inline constexpr std::size_t provincia = 4;
inline constexpr std::size_t citta = 5;
inline constexpr std::size_t telefono = 6;
inline constexpr std::size_t fax = 7;
inline constexpr std::size_t email = 8;
inline constexpr std::size_t appunti = 9;
inline constexpr std::size_t numero = 10;
inline constexpr std::size_t cognome = 11;
inline constexpr std::size_t partita_iva = 12;
} // namespace customer_box

/// The numbers of the commands of frmClienti; 10 and 11 have no function.
namespace customer_command {
inline constexpr std::size_t first = 0;
inline constexpr std::size_t previous = 1;
inline constexpr std::size_t next = 2;
inline constexpr std::size_t last = 3;
inline constexpr std::size_t remove = 4;
inline constexpr std::size_t change = 5;
inline constexpr std::size_t new_customer = 6;
inline constexpr std::size_t cancel = 7;
inline constexpr std::size_t search = 8;
inline constexpr std::size_t close = 9;
} // namespace customer_command

/// The customers: one on view, paged by number; new customers, changes, which can be carried into the
/// customer's invoices, deletion, which invoices forbid, search and mail.
///
/// The form has no cursor of its own. Every command runs a statement on the shared rsClienti, copies a row
/// into the boxes and closes the result: between commands the boxes are the record. The mode lies in the
/// captions of the commands change, new_customer and search alone.
class frmClienti : public Form, public CustomerView, public DraftedForm {
public:
    explicit frmClienti(Program& program);

    /// The record, by the numbers of customer_box.
    ControlArray<TextBox, 13> txtfields{*this, "txtfields"};
    ControlArray<Label, 13> lblLabels{*this, "lblLabels"};
    CommandButton cmdCalcolaCF{*this, "cmdCalcolaCF"};
    CommandButton cmdmail{*this, "cmdmail"};
    /// First name and surname of the record on view.
    TextBox txtCurrentClient{*this, "txtCurrentClient"};
    Toolbar Toolbar1{*this, "Toolbar1"};
    /// Search panel, folded away but for its button outside the search mode.
    Frame Frame1{*this, "Frame1"};
    /// Navigation bar.
    Frame Frame2{*this, "Frame2"};
    /// The commands that the tool bar presses; never in view.
    Frame Frame3{*this, "Frame3"};
    ControlArray<CommandButton, 12> cmd{{{&Frame2, &Frame2, &Frame2, &Frame2, &Frame2, &Frame3, &Frame3,
                                          &Frame3, &Frame1, &Frame3, &Frame3, &Frame3}},
                                        "cmd"};
    CommandButton cmdSendmail{Frame3, "cmdSendmail"};
    CommandButton cmdElettronica{Frame2, "cmdElettronica"};
    Label Label8{Frame1, "Label8"};
    ComboBox Combo1{Frame1, "Combo1"};
    Label Label2{Frame1, "Label2"};
    TextBox Text1{Frame1, "Text1"};
    /// The rectangle behind each box, by the number of the box; the customer number has none.
    std::map<std::size_t, Shape> ShapeAnagrafica;

    // customer_record.cpp

    /// Copies the current row of rsClienti into the boxes. A column that cannot be read, a null or one behind
    /// the end of the result, leaves its box with what it held.
    void CaricaCliente() override;
    /// The record as it is stored: codes and province in upper case, address, city and notes in proper case.
    /// Also enables the boxes of both codes and moves the focus to the surname.
    void AllUpperCase();
    /// True if the boxes may go into an INSERT. Reports the first fault and moves the focus to its box.
    /// @throws Failure if a duplicate test cannot run, such as with an apostrophe in a code
    bool ControllaNuovoCliente();
    /// True if the boxes may go into an UPDATE. A change is free to take the codes of another customer.
    bool ControllaModificaCliente();
    /// True if the fiscal code in its box belongs to a customer already; an empty one never does.
    bool CodiceFiscaleEsistente();
    /// The same for the VAT number.
    bool PartitaIvaEsistente();

    // customer_form.cpp

    /// Locks what is unlocked and unlocks what is locked, but for the number; so too the fiscal code button.
    void InvertiBlocchiCampi();
    /// Flips what can be pressed: all commands but that of the mode, and the tool bar buttons to match. A
    /// second call with the same mode brings everything back.
    /// @param mode  "Salva", "Modifica Dati", "Cerca Cliente" or "OK"
    void InvertiComandi(const std::string& mode);
    void SvuotaCampi();
    /// Closes rsClienti and rsFatture, open or not.
    void ChiudiRecordsetClienti();

    // customer_save.cpp

    /// Writes the boxes into the table, and after an INSERT loads the new row back. A failure is shown and
    /// goes no further.
    /// @param mode    "Salva" inserts, "Modifica Dati" updates
    /// @param number  the customer to update
    void SalvaCliente(const std::string& mode, std::int16_t number);
    /// Deletes the customer on view if there are no invoices and the user agrees. Failures are skipped. A
    /// refusal leaves rsFatture open, so that it refuses the next deletions too until something closes it.
    void EliminaCliente();
    /// Copies names, codes and address into all invoices of the customer. A failure is shown and goes no
    /// further.
    void AggiornaFattureCliente();

    // customer_search.cpp

    void ApriPannelloRicerca();
    void ChiudiPannelloRicerca();
    /// Searches and shows the results. @return false if there was nothing to search for
    bool CercaClienti();
    /// Shows the list of all customers.
    void ElencaClienti();

protected:
    void on_load() override;
    void on_unload(UnloadReason reason) override { draft_.form_closes(reason); }

private:
    /// Title of all boxes of the form.
    static constexpr const char* title = "Clienti";

    void connect_boxes();
    void connect_commands();
    void set_shortcuts();
    void set_tab_order();

    /// Cancels a key that the box does not take.
    void filter_key(std::size_t box, int& key) const;
    bool blank(std::size_t box) const;
    /// Reports a fault of that box. @return false
    bool fault(std::size_t box, const std::string& message);
    bool fault_no_code();
    bool name_and_address_complete();
    /// True if a customer has the text of that box, which is not empty, in a column.
    bool is_taken(const char* column, std::size_t box);
    CustomerTexts texts() const;

    void press(std::size_t pressed);
    void press_tool(const std::string& key);
    void page(std::size_t pressed, std::int16_t number);
    void new_customer(std::int16_t number);
    void change_customer(std::int16_t number);
    void cancel();
    void search();
    void send_mail();
    void compute_fiscal_code();
    void filter_search_key(int& key);
    void show_search_fields(bool visible);

    // DraftedForm
    std::string draft_mode() const override;
    std::string draft_record() const override { return txtfields[customer_box::numero].text(); }
    std::vector<Control*> draft_fields() override;
    std::string draft_words(const FormDraft& draft) const override;
    bool take_up(const FormDraft& draft) override;

    /// Opens rsClienti, which another window may have left open.
    Recordset& open_customers(const std::string& statement);
    /// Runs a SELECT on rsClienti, puts its first row on view and closes it.
    void show_first_row(const std::string& statement);
    void tell(const std::string& text, BoxIcon icon);

    Program& program_;
    DraftKeeper draft_{program_, *this, *this};
};

} // namespace tarvello
