#pragma once

#include "e_invoice/creation.h"
#include "e_invoice/decisions_page.h"
#include "platform/controls.h"
#include "platform/form.h"

#include <string>
#include <vector>

namespace tarvello {

class Program;

/// "Fattura elettronica" of one stored invoice: what is to be decided, the document as its addressee will see
/// it, and what is wrong or doubtful with it. Every change is looked at anew at once; "Crea" writes the file.
class frmFatturaElettronica : public Form {
public:
    explicit frmFatturaElettronica(Program& program);

    Label lblTitolo{*this, "lblTitolo"};
    /// State of the file, and what is to be done next.
    Label lblStato{*this, "lblStato"};
    TabControl SSTab1{*this, "SSTab1"};
    DecisionsPage decisions;
    HtmlText txtVista{*this, "txtVista"};
    Label lblControlli{*this, "lblControlli"};
    ListView lstControlli{*this, "lstControlli"};
    CommandButton cmdCorreggi{*this, "cmdCorreggi"};
    CommandButton cmdCliente{*this, "cmdCliente"};
    CommandButton cmdEmittente{*this, "cmdEmittente"};
    CommandButton cmdCartella{*this, "cmdCartella"};
    CommandButton cmdCopia{*this, "cmdCopia"};
    CommandButton cmdMail{*this, "cmdMail"};
    CommandButton cmdCrea{*this, "cmdCrea"};
    CommandButton cmdChiudi{*this, "cmdChiudi"};

    /// Which invoice; before it is shown. Who issues it and the customer are asked for if they were never
    /// told.
    /// @return false if there is no such invoice
    bool open(int invoice);

protected:
    void on_key_preview(Control& control, int& key) override;
    bool on_query_unload(UnloadReason reason) override;

private:
    void connect();
    void read_source();
    /// Takes the entries, and shows what becomes of them.
    void look_again();
    void show_state();
    void show_findings();
    void mend();
    void edit_customer();
    void edit_issuer();
    void create();
    void save_copy();
    void write_mail();
    /// The customer's name as the windows call it.
    std::string customer_name() const;
    /// The file that is on its way, else as it would be.
    const std::string& document() const;

    Program& program_;
    e_invoice::Source source_;
    e_invoice::Preview preview_;
    std::string sent_;
    bool changed_ = false; ///< decisions that are not kept yet
    bool showing_ = false; ///< the program fills the boxes
};

} // namespace tarvello
