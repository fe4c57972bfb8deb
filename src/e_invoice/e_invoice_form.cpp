#include "e_invoice/e_invoice_form.h"

#include "e_invoice/code_lists.h"
#include "e_invoice/courtesy_copy.h"
#include "e_invoice/desk.h"
#include "e_invoice/from_row.h"
#include "e_invoice/proposals.h"
#include "e_invoice/readable_view.h"
#include "e_invoice/stamp_duty.h"
#include "e_invoice/xml_reader.h"
#include "failure.h"
#include "program/doors.h"
#include "program/program.h"

#include <algorithm>
#include <utility>

namespace tarvello {

using namespace e_invoice;

namespace {

std::string words_of(const Finding& finding) {
    return finding.words + (finding.code.empty() ? "" : " (controllo " + finding.code + " di SdI)");
}

} // namespace

frmFatturaElettronica::frmFatturaElettronica(Program& program)
    : Form(program, "frmFatturaElettronica"), decisions(*this, program.platform().clock.today()),
      program_(program) {
    set_caption("Fattura elettronica");
    lstControlli.add_column({"", "gravita", false, 1000});
    lstControlli.add_column({"Errori e avvisi", "parole", false, 7600});
    lstControlli.add_column({"Campo", "campo", false, 2200});
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
    lstControlli.on_item_click = [this] { show_finding(); };
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
    source_ = desk.source(source_.invoice, desk.records().last_answers());
    lblTitolo.set_caption("Fattura n. " + source_.invoice.Numero_Fattura + " del " +
                          short_date_text(source_.invoice.Data_Fattura, program_.regional()) + " a " +
                          customer_name());
    proposed_ = proposed_with(source_.decisions);
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

Decisions frmFatturaElettronica::proposed_with(const Decisions& decisions) {
    Decisions chosen;
    chosen.TipoDocumento = decisions.TipoDocumento;
    chosen.Natura = decisions.Natura;
    chosen.NaturaSpese = decisions.NaturaSpese;
    return propose(source_.invoice, source_.issuer, source_.customer, chosen, program_.regional());
}

void frmFatturaElettronica::follow_choices() {
    Decisions& now = source_.decisions;
    Decisions fresh = proposed_with(now);
    const bool stamp_follows = now.bollo == proposed_.bollo && now.bollo != fresh.bollo;
    if (stamp_follows) now.bollo = fresh.bollo;
    fresh.Causale =
        proposed_reasons(source_.invoice, source_.issuer, source_.customer, now, program_.regional());
    const bool reasons_follow = now.Causale == proposed_.Causale && now.Causale != fresh.Causale;
    if (reasons_follow) now.Causale = fresh.Causale;
    proposed_ = std::move(fresh);
    if (!stamp_follows && !reasons_follow) return;
    showing_ = true;
    decisions.show(now, program_.regional());
    showing_ = false;
}

void frmFatturaElettronica::look_again() {
    if (showing_ || source_.invoice.ID == 0) return;
    const Decisions before = source_.decisions;
    source_.decisions = decisions.entered(before, program_.regional());
    follow_choices();
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
    decisions.lblBollo.set_caption(is_without_vat(row) && source_.decisions.Natura.empty()
                                       ? "L'imposta di bollo dipende dalla natura: sceglierla prima."
                                       : stamp_reason(stamp_base(read_document(preview_.xml))));
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
    const bool waits = state == DeliveryState::created || state == DeliveryState::to_sign;
    lblStato.set_caption(words + ". " +
                         (waits && !desk.is_up_to_date(*last)
                              ? "Dopo la creazione del file qualcosa è cambiato: crearlo di nuovo."
                              : std::string(state_advice(state))));
    const bool may_create = state_after(state, DeliveryAct::create).has_value();
    cmdCrea.set_enabled(may_create);
    sent_ = may_create ? std::string() : desk.records().xml(last->id);
}

void frmFatturaElettronica::show_findings() {
    lstControlli.clear();
    for (const Finding& finding : preview_.findings) {
        lstControlli.add_row(
            std::vector<std::string>{finding.severity == Severity::refusal ? "Errore" : "Avviso",
                                     words_of(finding), std::string(facts_of(finding.field).words)});
    }
    if (!preview_.findings.empty()) lstControlli.set_selected(0);
    cmdCorreggi.set_enabled(!preview_.findings.empty());
    show_finding();
}

const Finding* frmFatturaElettronica::selected_finding() const {
    const auto row = lstControlli.selected();
    return row && *row < preview_.findings.size() ? &preview_.findings[*row] : nullptr;
}

void frmFatturaElettronica::show_finding() {
    const Finding* finding = selected_finding();
    lblControlli.set_caption(finding ? words_of(*finding) : "Nessun errore e nessun avviso.");
}

void frmFatturaElettronica::mend() {
    const Finding* chosen = selected_finding();
    if (!chosen) return;
    const Finding finding = *chosen;
    switch (facts_of(finding.field).place) {
    case Place::issuer:
        return edit_issuer(&finding.field);
    case Place::customer:
        return edit_customer(&finding.field);
    case Place::decisions:
        SSTab1.set_tab(0);
        decisions.control_of(finding.field).set_focus();
        return;
    case Place::file:
        cmdCartella.set_focus();
        return;
    case Place::letterhead:
        afterwards_ = [&program = program_, field = finding.field] {
            program.doors().show_letterhead(field);
        };
        unload();
        return;
    case Place::invoice:
        break;
    }
    afterwards_ = [&program = program_, id = source_.invoice.ID, finding] {
        program.doors().show_invoice(id, &finding.field, finding.line);
    };
    unload();
}

void frmFatturaElettronica::go_on() const {
    if (afterwards_) afterwards_();
}

void frmFatturaElettronica::edit_customer(const Field* field) {
    program_.doors().edit_e_invoice_customer(source_.invoice.Numero_Cliente, customer_name(), field);
    source_.customer = Desk(program_).records().customer(source_.invoice.Numero_Cliente);
    look_again();
}

void frmFatturaElettronica::edit_issuer(const Field* field) {
    program_.doors().edit_e_invoice_issuer(field);
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
