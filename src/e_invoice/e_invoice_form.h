#pragma once

#include "e_invoice/creation.h"
#include "e_invoice/decisions_page.h"
#include "platform/controls.h"
#include "platform/form.h"

#include <functional>
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
    /// The selected one of the list in full.
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
    /// Once it is closed: shows the window in which the user wants to mend something.
    void go_on() const;

protected:
    void on_key_preview(Control& control, int& key) override;
    bool on_query_unload(UnloadReason reason) override;

private:
    void connect();
    void read_source();
    /// Takes the entries, and shows what becomes of them.
    void look_again();
    /// Stamp duty and reasons as they are proposed with the kind and the natures of these decisions.
    e_invoice::Decisions proposed_with(const e_invoice::Decisions& decisions);
    /// Stamp duty and reasons go with kind and natures, as long as the user leaves them as proposed.
    void follow_choices();
    void show_state();
    void show_findings();
    void show_finding();
    /// Null if there is none.
    const e_invoice::Finding* selected_finding() const;
    void mend();
    void edit_customer(const e_invoice::Field* field = nullptr);
    void edit_issuer(const e_invoice::Field* field = nullptr);
    void create();
    void save_copy();
    void write_mail();
    /// The customer's name as the windows call it.
    std::string customer_name() const;
    /// The file that is on its way, else as it would be.
    const std::string& document() const;

    Program& program_;
    e_invoice::Source source_;
    e_invoice::Decisions proposed_; ///< what was proposed for the decisions as they stand
    e_invoice::Preview preview_;
    std::string sent_;
    std::function<void()> afterwards_;
    bool changed_ = false; ///< decisions that are not kept yet
    bool showing_ = false; ///< the program fills the boxes
};

} // namespace tarvello
