#pragma once

#include "invoices/invoice_amounts.h"
#include "platform/bars.h"
#include "platform/controls.h"
#include "platform/form.h"
#include "program/program.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace tarvello {

/// The invoice form: shows one invoice, and is the only place where invoices are made, changed and deleted.
///
/// Its fields are the working state: every amount is the text that is shown. The mode is the caption of its
/// buttons: "Salva Fattura" on cmdNuovaFattura for a new invoice, "Aggiorna Dati" on cmdModificaDati for a
/// change, "OK" on cmdCerca for a search.
class frmTarvello : public Form {
public:
    static constexpr std::size_t lines = 5;          ///< service lines of an invoice
    static constexpr int search_closed_height = 540; ///< twips, FrameRicerca
    static constexpr int search_open_height = 2580;
    static constexpr int note_closed_height = 580; ///< twips, FrameNota
    static constexpr int note_open_height = 2655;

    explicit frmTarvello(Program& program);

    Toolbar Toolbar1{*this, "Toolbar1"};

    // Walking the archive.
    ControlArray<CommandButton, 6> cmdNavigazione{*this, "cmdNavigazione"};

    // Number and date.
    TextBox txtNumeroFattura{*this, "txtNumeroFattura"};
    CommandButton cmdNuovoAnnoFatturazione{*this, "cmdNuovoAnnoFatturazione"};
    /// Disabled, it is the lock of the calendar.
    Frame FrameData{*this, "FrameData"};
    DatePicker DTPicker1{FrameData, "DTPicker1"};

    // The customer block: the invoice's own copy of the customer's data.
    Frame frameAnagrafica{*this, "frameAnagrafica"};
    CommandButton cmdCercaCliente{frameAnagrafica, "cmdCercaCliente"};
    /// Key of the customer.
    TextBox ComboNumeroCliente{frameAnagrafica, "ComboNumeroCliente"};
    /// 0 fiscal code, 1 address, 2 postal code, 3 province, 4 town, 5 surname or company, 6 VAT number.
    ControlArray<TextBox, 7> txtAnagrafica{frameAnagrafica, "txtAnagrafica"};
    TextBox txtNome{frameAnagrafica, "txtNome"};
    CommandButton cmdCalcolaCF{frameAnagrafica, "cmdCalcolaCF"};
    ControlArray<Shape, 7> ShapeAnagrafica{frameAnagrafica, "ShapeAnagrafica"};
    Shape ShapeNome{frameAnagrafica, "ShapeNome"};

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

    // The search.
    Frame FrameRicerca{*this, "FrameRicerca"};
    CommandButton cmdCerca{FrameRicerca, "cmdCerca"};
    Label Label7{FrameRicerca, "Label7"};
    ComboBox Combo3{FrameRicerca, "Combo3"};
    Label Label8{FrameRicerca, "Label8"};
    ComboBox Combo1{FrameRicerca, "Combo1"};
    Label Label4{FrameRicerca, "Label4"};
    TextBox Text2{FrameRicerca, "Text2"};

    /// A note for the screen alone: it is stored nowhere.
    Frame FrameNota{*this, "FrameNota"};
    CommandButton cmdNota{FrameNota, "cmdNota"};
    TextBox Text1{FrameNota, "Text1"};

    // Hidden state.
    /// Key of the row on view.
    TextBox txtCurrent_ID{*this, "txtCurrent_ID"};
    /// "NEW" while the customer block holds a customer who is not in the register yet.
    TextBox txtNuovoInserimento{*this, "txtNuovoInserimento"};
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
    /// Closes the shared results that the form uses; one that is not open is no fault.
    void ChiudiRecordset();
    /// Copies the current row of rsFatture into the fields. A field whose column cannot be read (a null, no
    /// such row) stays as it was. Opens and closes nothing of rsFatture.
    void MostraFattura();
    /// The whole calculation, as the button "Calcola" runs it.
    /// @throws Failure where an amount of the taxable base, the total or the withholding cannot be read
    void Calcola();

protected:
    void on_load() override;
    void on_unload(UnloadReason reason) override;

private:
    // Pictures of the tool bar by mode.
    static constexpr const char* new_picture = "nuova-fattura";
    static constexpr const char* change_picture = "modifica";
    static constexpr const char* save_picture = "salva";

    /// A column of the row to be written, with its text as it goes between the apostrophes of the statement.
    struct ColumnText {
        std::string column;
        std::string text;
    };

    // invoice_form.cpp
    void set_captions();
    void set_lists();
    void set_first_state();
    void connect_buttons();
    void press_toolbar(const ToolButton& button);
    void connect_fields();
    /// Keeps a marker on view while its field holds text or has the focus.
    static void mark(TextBox& field, Shape& shape);
    void rivalsa_changed();
    void ritenuta_changed();
    void spese_changed();
    /// The look of the expenses while they are part of the invoice, or while they are not.
    void show_expenses(bool part_of_invoice);
    void expenses_rate_chosen();
    void pagamento_changed();
    void flip_note();
    void write_mail();

    // invoice_modes.cpp
    void lock_invoice(bool locked);
    void show_toolbar_mode(std::size_t place, const std::string& caption, const char* picture);
    void start_new_invoice();
    void start_change();
    void cancel();
    void delete_invoice();

    // invoice_show.cpp
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
    void leave_amount(std::size_t line);
    void leave_expenses();

    // numbering.cpp
    void propose_number();
    void start_numbering_year();
    void date_changed();
    bool date_fits_new_invoice();
    bool date_fits_changed_invoice();

    // invoice_customer.cpp
    void pick_customer();
    void key_in_customer(int& key);
    /// Opens the picker where a customer may only be picked. @return true if it did
    bool picks_customer_instead();
    void leave_customer_field(std::size_t field);
    void leave_name();
    void calculate_fiscal_code();
    bool is_in_register(const std::string& column, const std::string& value);
    /// Adds the customer of the block to the register if the block is marked as new.
    /// @return false if a customer with that fiscal code or VAT number is there already
    bool insert_new_customer();

    // invoice_save.cpp
    void save_new_invoice();
    void save_changed_invoice();
    bool is_complete();
    bool every_field_is_filled();
    std::vector<ColumnText> column_texts() const;
    void insert_invoice();
    void update_invoice();

    // invoice_navigation.cpp
    /// The move of cmdNavigazione(index).
    void navigate(std::size_t index);

    // invoice_search.cpp
    /// Opens the search, or runs it.
    void search();
    /// ImpostaStato for "Cerca Fattura" and "OK".
    void set_search_state(std::string_view action);
    /// Reaches or locks the entries of the search, and unfolds or folds their frame.
    void open_search_frame(bool open);
    /// Lists what matches the entries in a window and waits until it has closed.
    /// @return false if nothing matched or an entry is missing
    /// @throws Failure if the statement cannot run, such as with an apostrophe in the text
    bool list_matches();

    Program& program_;
};

} // namespace tarvello
