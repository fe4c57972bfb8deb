#include "e_invoice/e_invoice_form.h"

#include "e_invoice/code_lists.h"
#include "e_invoice/courtesy_copy.h"
#include "e_invoice/desk.h"
#include "e_invoice/from_row.h"
#include "e_invoice/readable_view.h"
#include "e_invoice/stamp_duty.h"
#include "e_invoice/xml_reader.h"
#include "failure.h"
#include "program/doors.h"
#include "program/program.h"

#include <algorithm>

namespace tarvello {

using namespace e_invoice;

frmFatturaElettronica::frmFatturaElettronica(Program& program)
    : Form(program, "frmFatturaElettronica"), decisions(*this, program.platform().clock.today()),
      program_(program) {
    set_caption("Fattura elettronica");
    lblControlli.set_caption("Errori e avvisi");
    lstControlli.add_column({"", "gravita", false, 1300});
    lstControlli.add_column({"Che cosa", "parole", false, 9000});
    lstControlli.add_column({"Campo", "campo", false, 3000});
    cmdCorreggi.set_caption("&Vai al campo");
    cmdCliente.set_caption("Dati del c&liente");
    cmdEmittente.set_caption("&I miei dati");
    cmdCartella.set_caption("Car&tella");
    cmdCartella.set_tool_tip("Cambia la cartella in cui si scrivono i file");
    cmdCopia.set_caption("C&opia PDF");
    cmdCopia.set_tool_tip("Salva la copia di cortesia per il cliente");
    cmdMail.set_caption("&E-mail");
    cmdMail.set_tool_tip("Salva la copia di cortesia e apre un messaggio al cliente");
    cmdCrea.set_caption("C&rea");
    cmdChiudi.set_caption("&Chiudi");
    connect();
}

void frmFatturaElettronica::connect() {
    decisions.on_change([this] { look_again(); });
    lstControlli.on_double_click = [this] { mend(); };
    cmdCorreggi.on_click = [this] { mend(); };
    cmdCliente.on_click = [this] { edit_customer(); };
    cmdEmittente.on_click = [this] { edit_issuer(); };
    cmdCartella.on_click = [this] { Desk(program_).choose_folder(); };
    cmdCopia.on_click = [this] { save_copy(); };
    cmdMail.on_click = [this] { write_mail(); };
    cmdCrea.on_click = [this] { create(); };
    cmdChiudi.on_click = [this] { unload(); };
}

bool frmFatturaElettronica::open(int invoice) {
    Desk desk(program_);
    desk.settle();
    const auto stored = desk.invoice(invoice);
    if (!stored) return false;
    if (!desk.records().is_issuer_known()) program_.doors().edit_e_invoice_issuer();
    source_.invoice = *stored;
    if (!desk.records().is_customer_known(stored->Numero_Cliente)) {
        program_.doors().edit_e_invoice_customer(stored->Numero_Cliente, customer_name());
    }
    read_source();
    return true;
}

void frmFatturaElettronica::read_source() {
    Desk desk(program_);
    source_ = desk.source(source_.invoice);
    lblTitolo.set_caption("Fattura n. " + source_.invoice.Numero_Fattura + " del " +
                          short_date_text(source_.invoice.Data_Fattura, program_.regional()) + " a " +
                          customer_name());
    showing_ = true;
    decisions.show(source_.decisions, program_.regional());
    showing_ = false;
    changed_ = false;
    show_state();
    look_again();
}

std::string frmFatturaElettronica::customer_name() const {
    const StoredInvoice& row = source_.invoice;
    return row.Cognome_Ragione_Sociale + (row.Nome.empty() ? "" : " " + row.Nome);
}

void frmFatturaElettronica::look_again() {
    if (showing_ || source_.invoice.ID == 0) return;
    const Decisions before = source_.decisions;
    source_.decisions = decisions.entered(before, program_.regional());
    Desk desk(program_);
    preview_ = preview(desk.records(), source_, desk.today(), program_.regional());
    if (const TextBox* unread = decisions.unread_date(program_.regional())) {
        preview_.findings.push_back(
            {Severity::refusal, "", Field::riferimenti, 0,
             "\"" + unread->text() + "\" non è una data: si scrive come 31/12/2025."});
    }
    // What keeps the file from being written comes first.
    std::stable_partition(preview_.findings.begin(), preview_.findings.end(),
                          [](const Finding& finding) { return finding.severity == Severity::refusal; });
    const StoredInvoice& row = source_.invoice;
    decisions.enable(is_without_vat(row), row.Spese == "Sì", source_.customer.public_administration,
                     row.Check_Pagamento == "Sì");
    decisions.lblBollo.set_caption(stamp_reason(stamp_base(read_document(preview_.xml))));
    txtVista.set_html(to_html(readable_view(document())));
    show_findings();
    changed_ = changed_ || focus() != nullptr;
}

const std::string& frmFatturaElettronica::document() const { return sent_.empty() ? preview_.xml : sent_; }

void frmFatturaElettronica::show_state() {
    Desk desk(program_);
    const auto last = desk.records().newest(source_.invoice.ID);
    const DeliveryState state = last ? last->state : DeliveryState::to_create;
    std::string words = "Stato: " + std::string(state_text(state));
    if (last && !last->file_name.empty()) words += ", file " + last->file_name;
    lblStato.set_caption(words + ". " + std::string(state_advice(state)));
    const bool may_create = state_after(state, DeliveryAct::create).has_value();
    cmdCrea.set_enabled(may_create);
    sent_ = may_create ? std::string() : desk.records().xml(last->id);
}

void frmFatturaElettronica::show_findings() {
    lstControlli.clear();
    for (const Finding& finding : preview_.findings) {
        lstControlli.add_row(std::vector<std::string>{
            finding.severity == Severity::refusal ? "Errore" : "Avviso",
            finding.words + (finding.code.empty() ? "" : " (controllo " + finding.code + " di SdI)"),
            std::string(facts_of(finding.field).words)});
    }
    if (!preview_.findings.empty()) lstControlli.set_selected(0);
    cmdCorreggi.set_enabled(!preview_.findings.empty());
}

void frmFatturaElettronica::mend() {
    if (!lstControlli.selected() || *lstControlli.selected() >= preview_.findings.size()) return;
    const Finding finding = preview_.findings[*lstControlli.selected()];
    switch (facts_of(finding.field).place) {
    case Place::issuer:
        return edit_issuer();
    case Place::customer:
        return edit_customer();
    case Place::decisions:
        SSTab1.set_tab(0);
        decisions.control_of(finding.field).set_focus();
        return;
    case Place::file:
        cmdCartella.set_focus();
        return;
    case Place::invoice:
        break;
    }
    const int id = source_.invoice.ID;
    if (unload()) program_.doors().show_invoice(id, &finding.field, finding.line);
}

void frmFatturaElettronica::edit_customer() {
    program_.doors().edit_e_invoice_customer(source_.invoice.Numero_Cliente, customer_name());
    source_.customer = Desk(program_).records().customer(source_.invoice.Numero_Cliente);
    look_again();
}

void frmFatturaElettronica::edit_issuer() {
    program_.doors().edit_e_invoice_issuer();
    source_.issuer = Desk(program_).records().issuer();
    look_again();
}

void frmFatturaElettronica::create() {
    look_again();
    if (any_refusal(preview_.findings)) {
        program_.message("La fattura elettronica non si può creare: correggere prima gli errori elencati.",
                         BoxIcon::exclamation);
        lstControlli.set_focus();
        return;
    }
    Desk desk(program_);
    const std::string folder = desk.need_folder();
    if (folder.empty()) return;
    try {
        FileCreator creator = desk.creator(folder, source_.issuer);
        const InvoiceFile file = desk.create(creator, source_);
        changed_ = false;
        show_state();
        program_.message("La fattura elettronica è stata creata:\n" + path_of(file) + "\n\n" +
                             std::string(state_advice(file.state)),
                         BoxIcon::information);
    } catch (const Failure& failure) {
        // The window stays with what was decided, for another try.
        program_.message(failure.description(), BoxIcon::critical);
        show_state();
    }
}

void frmFatturaElettronica::save_copy() { save_courtesy_copy(program_, document()); }

void frmFatturaElettronica::write_mail() {
    if (save_courtesy_copy(program_, document()))
        write_to_customer(program_, source_.invoice.Numero_Cliente, document());
}

void frmFatturaElettronica::on_key_preview(Control& control, int& key) {
    // The reasons are one a line: Enter begins the next one.
    if (&control != &decisions.txtCausale) Form::on_key_preview(control, key);
}

bool frmFatturaElettronica::on_query_unload(UnloadReason) {
    if (!changed_) return false;
    const auto last = Desk(program_).records().newest(source_.invoice.ID);
    const bool on_its_way = last && !state_after(last->state, DeliveryAct::create);
    if (!on_its_way) {
        telling_failures(program_, [&] {
            Desk(program_).records().save_decisions(source_.invoice.ID, source_.decisions);
        });
    }
    changed_ = false;
    return false;
}

} // namespace tarvello
