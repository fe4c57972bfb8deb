#pragma once

#include "e_invoice/desk.h"
#include "e_invoice/year_list.h"
#include "platform/controls.h"
#include "platform/form.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace tarvello {

class Program;

namespace lists {
class Narrowing;
}

/// "Fatture elettroniche": the invoices of a year with the state of their electronic invoices, and everything
/// that is done with the files after they were created.
class frmFattureElettroniche : public Form {
public:
    explicit frmFattureElettroniche(Program& program);
    ~frmFattureElettroniche() override;

    ComboBox cboAnno{*this, "cboAnno"};
    ComboBox cboStato{*this, "cboStato"};
    TextBox txtFiltro{*this, "txtFiltro"};
    ComboBox cboOrdine{*this, "cboOrdine"};
    CheckBox chkDecrescente{*this, "chkDecrescente"};
    ListView lstFatture{*this, "lstFatture"};
    /// What the state of the selected invoice means, and what is to be done.
    Label lblConsiglio{*this, "lblConsiglio"};
    HtmlText txtRicevute{*this, "txtRicevute"};
    CommandButton cmdElettronica{*this, "cmdElettronica"};
    CommandButton cmdFattura{*this, "cmdFattura"};
    CommandButton cmdCreaTutte{*this, "cmdCreaTutte"};
    CommandButton cmdFirmato{*this, "cmdFirmato"};
    CommandButton cmdInviata{*this, "cmdInviata"};
    CommandButton cmdRicevuta{*this, "cmdRicevuta"};
    CommandButton cmdRicevute{*this, "cmdRicevute"};
    CommandButton cmdFile{*this, "cmdFile"};
    CommandButton cmdCartella{*this, "cmdCartella"};
    CommandButton cmdEsporta{*this, "cmdEsporta"};
    CommandButton cmdChiudi{*this, "cmdChiudi"};

protected:
    void on_load() override;

private:
    // e_invoice_list_form.cpp
    void set_captions();
    void connect();
    void read_year();
    void show_rows();
    void show_selected();
    /// The entry of the selected row; null if none is.
    const e_invoice::YearEntry* selected() const;
    /// Reads the year anew, with the same invoice selected.
    void read_again(int invoice);
    /// Runs an act on the selected entry as it is now, whatever other windows have done to it.
    void with_selected(const std::function<void(const e_invoice::YearEntry&)>& act);
    void export_list();

    // e_invoice_list_acts.cpp
    void create_all();
    void choose_signed(const e_invoice::YearEntry& entry);
    /// Marks it as sent, or takes the mark back.
    void mark_sent(const e_invoice::YearEntry& entry);
    void prepare_mail(const e_invoice::InvoiceFile& file);
    void open_file(const e_invoice::YearEntry& entry);
    void open_folder(const e_invoice::YearEntry& entry);
    void take_receipt();
    void take_folder_of_receipts();
    void take_receipts(const std::vector<std::string>& paths);

    Program& program_;
    e_invoice::Desk desk_;
    std::optional<e_invoice::YearList> list_;
    std::unique_ptr<lists::Narrowing> narrowing_;
    std::vector<std::size_t> shown_; ///< entries behind the rows on view
};

} // namespace tarvello
