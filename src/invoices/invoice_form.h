#pragma once

#include "documents/printed_texts.h"
#include "invoices/customer_block.h"
#include "invoices/exemption_form.h"
#include "invoices/invoice_amounts.h"
#include "invoices/invoice_view.h"
#include "invoices/note_panel.h"
#include "invoices/search_panel.h"
#include "platform/bars.h"
#include "platform/controls.h"
#include "platform/form.h"
#include "program/drafts.h"
#include "program/program.h"
#include "store/column_text.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tarvello {

namespace e_invoice {
enum class Field : std::uint8_t;
} // namespace e_invoice

/// The numbers of the moves through the archive.
namespace invoice_move {
inline constexpr std::size_t first = 0;
inline constexpr std::size_t previous = 1;
inline constexpr std::size_t next = 2;
inline constexpr std::size_t last = 3;
inline constexpr std::size_t previous_year = 4;
inline constexpr std::size_t next_year = 5;
} // namespace invoice_move

/// The places of those tool bar buttons of the invoice form that a mode treats apart.
namespace invoice_tool {
inline constexpr std::size_t new_invoice = 1;
inline constexpr std::size_t change = 2;
inline constexpr std::size_t cancel = 6;
} // namespace invoice_tool

/// The invoice form: shows one invoice, and is the only place where invoices are made, changed and deleted.
///
/// Its fields are the working state: every amount is the text that is shown. The mode is the caption of its
/// buttons: "Salva Fattura" on cmdNuovaFattura for a new invoice, "Aggiorna Dati" on cmdModificaDati for a
/// change, "OK" on cmdCerca for a search.
class frmTarvello : public Form, public InvoiceView, public ExemptionTarget, public DraftedForm {
public:
    static constexpr std::size_t lines = 5; ///< service lines of an invoice

    explicit frmTarvello(Program& program);

    Toolbar Toolbar1{*this, "Toolbar1"};

    /// Walking the archive, by the numbers of invoice_move.
    ControlArray<CommandButton, 6> cmdNavigazione{*this, "cmdNavigazione"};

    // Number and date.
    TextBox txtNumeroFattura{*this, "txtNumeroFattura"};
    CommandButton cmdNuovoAnnoFatturazione{*this, "cmdNuovoAnnoFatturazione"};
    /// Disabled, it is the lock of the calendar.
    Frame FrameData{*this, "FrameData"};
    DatePicker DTPicker1{FrameData, "DTPicker1"};

    CustomerBlock customer;

    // The service lines, locked one by one.
    ControlArray<TextBox, lines> PrestazioneSingola{*this, "PrestazioneSingola"};
    ControlArray<TextBox, lines> txtImportoPrestazioni{*this, "txtImportoPrestazioni"};
    ControlArray<Shape, lines> ShapePrestazioneSingola{*this, "ShapePrestazioneSingola"};
    ControlArray<Shape, lines> ShapeImporto{*this, "ShapeImporto"};
    CommandButton cmdDettagliPrestazioni{*this, "cmdDettagliPrestazioni"};

    /// Rates, expenses and results; disabled outside of the new and modify modes.
    Frame FrameBloccaFattura{*this, "FrameBloccaFattura"};
    CheckBox CheckRivalsa{FrameBloccaFattura, "CheckRivalsa"};
    ComboBox ComboPercentualeRivalsa{FrameBloccaFattura, "ComboPercentualeRivalsa"};
    TextBox txtImportoRivalsa{FrameBloccaFattura, "txtImportoRivalsa"};
    TextBox txtImponibile{FrameBloccaFattura, "txtImponibile"};
    ComboBox ComboIVAApplicata{FrameBloccaFattura, "ComboIVAApplicata"};
    /// The taxable base once more, beside the VAT rate.
    Label LabelImponibile{FrameBloccaFattura, "LabelImponibile"};
    TextBox txtIVA{FrameBloccaFattura, "txtIVA"};
    CheckBox CheckSpese{FrameBloccaFattura, "CheckSpese"};
    /// Hidden: the expenses carry no VAT.
    ComboBox ComboIVASpeseAnticipate{FrameBloccaFattura, "ComboIVASpeseAnticipate"};
    TextBox txtArticoloEsenzione{FrameBloccaFattura, "txtArticoloEsenzione"};
    TextBox txtImportoSpeseAnticipate{FrameBloccaFattura, "txtImportoSpeseAnticipate"};
    Shape ShapeImportoSpeseAnticipate{FrameBloccaFattura, "ShapeImportoSpeseAnticipate"};
    TextBox txtTotaleFattura{FrameBloccaFattura, "txtTotaleFattura"};
    CheckBox CheckRitenuta{FrameBloccaFattura, "CheckRitenuta"};
    ComboBox ComboRitenuta{FrameBloccaFattura, "ComboRitenuta"};
    ComboBox ComboRitenutaSu{FrameBloccaFattura, "ComboRitenutaSu"};
    /// The base on which the withholding was computed.
    Label LabelRitenuta{FrameBloccaFattura, "LabelRitenuta"};
    TextBox txtRitenutaAcconto{FrameBloccaFattura, "txtRitenutaAcconto"};
    TextBox txtImportoNetto{FrameBloccaFattura, "txtImportoNetto"};
    CheckBox CheckPagamento{FrameBloccaFattura, "CheckPagamento"};
    TextBox txtPagamento{*this, "txtPagamento"};

    CommandButton cmdCalcola{*this, "cmdCalcola"};
    CommandButton cmdNuovaFattura{*this, "cmdNuovaFattura"};
    CommandButton cmdModificaDati{*this, "cmdModificaDati"};
    CommandButton cmdAnnulla{*this, "cmdAnnulla"};
    CommandButton cmdEliminaFattura{*this, "cmdEliminaFattura"};
    CommandButton cmdStampaFattura{*this, "cmdStampaFattura"};
    CommandButton StampaWord{*this, "StampaWord"};
    CommandButton CheckEmail{*this, "CheckEmail"};
    CommandButton Command1{*this, "Command1"};
    CommandButton cmdChiudi{*this, "cmdChiudi"};
    CommandButton cmdElettronica{*this, "cmdElettronica"};

    SearchPanel search;
    NotePanel note;

    // Hidden state.
    /// Key of the row on view.
    TextBox txtCurrent_ID{*this, "txtCurrent_ID"};
    TextBox txtfield_CURRENT_YEAR{*this, "txtfield_CURRENT_YEAR"};
    TextBox txtfield_CURRENT_MONTH{*this, "txtfield_CURRENT_MONTH"};
    TextBox txtfield_CURRENT_DAY{*this, "txtfield_CURRENT_DAY"};
    TextBox xtConnected{*this, "xtConnected"};
    /// Date of the row of highest key.
    DatePicker DTPicker_CURRENT_YEAR{*this, "DTPicker_CURRENT_YEAR"};

    /// Locks the customer block and the calendar.
    void BloccaAnagrafica();
    /// Unlocks the customer block and the calendar.
    void SbloccaAnagrafica();
    /// Locks the service lines, the rates and the payment text.
    void BloccaFattura();
    void SbloccaFattura();
    /// Empties the invoice. The key, the number and the date of the row on view stay.
    void PulisciFattura();
    /// Sets or flips what is enabled and shown for an action: "Salva Fattura", "Modifica Dati",
    /// "Aggiorna Dati", "Annulla", "Cerca Fattura" or "OK".
    void ImpostaStato(std::string_view action);
    void MostraFattura() override;
    const std::string& current_year() const override { return txtfield_CURRENT_YEAR.text(); }
    /// The whole calculation, as the button "Calcola" runs it.
    /// @throws Failure where an amount of the taxable base, the total or the withholding cannot be read
    void Calcola();

    /// Shows a row of the archive, unless another invoice is being written.
    void show_stored(int id);
    /// The control in which a finding on an electronic invoice is mended.
    /// @param line  1 to 5 for a field of a service line
    Control& control_of(e_invoice::Field field, int line);

    // ExemptionTarget
    void exempt_expenses(const std::optional<std::string>& article) override;
    void drop_expenses() override;

protected:
    void on_load() override;
    bool on_query_unload(UnloadReason reason) override;
    void on_unload(UnloadReason reason) override;

private:
    // Pictures of the tool bar by mode.
    static constexpr const char* new_picture = "nuova-fattura";
    static constexpr const char* change_picture = "modifica";
    static constexpr const char* save_picture = "salva";

    // invoice_form.cpp
    void set_captions();
    void set_shortcuts();
    void set_lists();
    /// The rates that are in use now come at the end of the lists.
    void add_rates();
    void set_first_state();
    void connect_buttons();
    void press_toolbar(const ToolButton& button);
    void connect_fields();
    void rivalsa_changed();
    void ritenuta_changed();
    void spese_changed();
    /// The look of the expenses while they are part of the invoice, or while they are not.
    void show_expenses(bool part_of_invoice);
    void expenses_rate_chosen();
    void pagamento_changed();
    void write_mail();
    /// Opens the search, or runs it.
    void run_search();
    InvoiceOnView on_view() const;

    // invoice_modes.cpp
    void lock_invoice(bool locked);
    /// Empties the form, key and number too: no command finds anything on view.
    void show_no_invoice();
    void show_toolbar_mode(std::size_t place, const std::string& caption, const char* picture);
    /// Calls `visit` on the buttons of the tool bar but for that of the mode and "Annulla".
    void each_other_tool(std::size_t mode, const std::function<void(ToolButton&)>& visit);
    /// ImpostaStato for "Cerca Fattura" and "OK".
    void set_search_state(std::string_view action);
    void start_new_invoice();
    void start_change();
    void cancel();
    /// From any mode to that of looking at invoices.
    void leave_mode();
    /// Shows the newest invoice, if there is one.
    void show_newest();
    /// The command on what is on view: if another archive has been opened since it came there, nothing is
    /// done but to say so, and the newest invoice of that one comes on view.
    std::function<void()> in_its_archive(std::function<void()> command);
    void delete_invoice();

    // invoice_columns.cpp
    std::vector<Control*> draft_fields() override;
    std::vector<ColumnText> column_texts() const;
    void copy_column(std::string_view column, TextEntry& field);
    void show_rivalsa();
    void show_spese();
    void show_ritenuta();
    void show_pagamento();

    // invoice_calculation.cpp
    invoice_amounts::Lines line_amounts() const;
    bool ready_to_calculate();
    void calculate_rivalsa();
    void calculate_imponibile();
    void calculate_iva();
    void calculate_total();
    void calculate_ritenuta();
    void calculate_net();
    /// False if the amount that was typed is too large: the user has been told, and corrects it.
    /// @throws Failure if the text is no amount
    bool can_be_shown(TextBox& field);
    void leave_amount(std::size_t line);
    void leave_expenses();

    // numbering.cpp
    void propose_number();
    void start_numbering_year();
    void date_changed();
    bool date_fits_new_invoice();
    bool date_fits_changed_invoice();

    // invoice_save.cpp
    void save_new_invoice();
    void save_changed_invoice();
    bool is_complete();
    bool every_field_is_filled();
    void insert_invoice();
    void update_invoice();

    // invoice_electronic.cpp
    void open_electronic();
    /// The user lets an invoice be changed or deleted whose electronic invoice is on its way.
    bool may_touch(const std::string& deed);

    // invoice_navigation.cpp
    /// The move of cmdNavigazione(index).
    void navigate(std::size_t index);

    // invoice_draft.cpp
    std::string draft_mode() const override;
    std::string draft_record() const override { return txtCurrent_ID.text(); }
    std::string draft_words(const FormDraft& draft) const override;
    bool take_up(const FormDraft& draft) override;
    bool is_stored(const FormDraft& draft) override;
    /// Shows the invoice of that key. @return false if there is none
    bool show_invoice(const std::string& id);

    Program& program_;
    std::string archive_; ///< path of the one that holds what is on view
    DraftKeeper draft_{program_, *this, *this};
};

} // namespace tarvello
