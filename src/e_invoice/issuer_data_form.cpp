#include "e_invoice/issuer_data_form.h"

#include "e_invoice/code_choice.h"
#include "e_invoice/desk.h"
#include "e_invoice/entry_faults.h"
#include "program/doors.h"
#include "program/program.h"
#include "text/letter_case.h"

#include <algorithm>
#include <iterator>

namespace tarvello {

using namespace e_invoice;

frmDatiFatturaElettronica::frmDatiFatturaElettronica(Program& program)
    : Form(program, "frmDatiFatturaElettronica"), program_(program) {
    set_caption("Dati per la fattura elettronica");
    lblSanita.set_caption(
        "Chi fattura prestazioni sanitarie a persone fisiche non deve mandare quelle fatture a SdI: per "
        "legge restano su carta o in PDF.");
    cmdSalva.set_caption("&Salva");
    cmdChiudi.set_caption("&Chiudi");
    cmdSalva.on_click = [this] { save(); };
    cmdChiudi.on_click = [this] { unload(); };
    txtNome.set_tool_tip("Di una persona; una società lascia vuoti nome e cognome");
    txtTitolo.set_tool_tip("Facoltativo, come \"Avv.\"");
    txtSpese.set_tool_tip("Come si descrivono le spese anticipate; vuoto per le parole usuali");
    fill_lists();
    check_when_left();
}

void frmDatiFatturaElettronica::fill_lists() {
    const Date day = program_.platform().clock.today();
    fill_codes(cboRegime, tax_regimes(), day);
    fill_codes(cboCassa, funds(), day, "nessuna");
    fill_codes(cboTipoRitenuta, withholding_kinds(), day, "nessuna");
    fill_codes(cboCausale, withholding_reasons(), day, "nessuna");
    for (const char* kind : {"TD06", "TD01"}) cboTipoDocumento.add_item(in_words(document_kinds(), kind));
    for (const char* form : {"con l'anno: 7/2026", "solo il numero: 7"}) cboNumero.add_item(form);
    for (const char* item : {"non indicato", "socio unico (SU)", "più soci (SM)"}) cboSocio.add_item(item);
    for (const char* item : {"non in liquidazione (LN)", "in liquidazione (LS)"})
        cboLiquidazione.add_item(item);
    for (ComboBox* box : {&cboTipoDocumento, &cboNumero, &cboSocio, &cboLiquidazione})
        box->set_list_only(true);
}

void frmDatiFatturaElettronica::check_when_left() {
    const auto text = [](std::size_t limit) {
        return [limit](const std::string& entry) { return text_fault(entry, limit); };
    };
    constexpr std::size_t of_names = 60;
    const auto date = [this](const std::string& entry) {
        return trim(entry).empty() || read_date(entry, program_.regional())
                   ? std::string()
                   : "La data si scrive come 31/12/2025.";
    };
    const auto money = [this](const std::string& entry) {
        return trim(entry).empty() || read_cents(entry, program_.regional())
                   ? std::string()
                   : "Il capitale si scrive come 10.000,00.";
    };
    checks_ = {{&txtNome, text(of_names)},
               {&txtCognome, text(of_names)},
               {&txtTitolo, text(10)},
               {&txtCAP, cap_fault},
               {&txtComune, text(of_names)},
               {&txtProvincia, province_fault},
               {&txtIBAN, iban_fault},
               {&txtSpese, text(1000)},
               {&txtAlbo, text(of_names)},
               {&txtProvinciaAlbo, province_fault},
               {&txtNumeroAlbo, text(of_names)},
               {&txtDataAlbo, date},
               {&txtUfficioREA, province_fault},
               {&txtNumeroREA, text(20)},
               {&txtCapitale, money}};
    for (const auto& [box, check] : checks_) box->on_lost_focus = [this] { tell_fault(); };
    txtComune.on_lost_focus = [this] { leave_comune(); };
}

std::pair<TextBox*, std::string> frmDatiFatturaElettronica::first_wrong_entry() const {
    for (const auto& [box, check] : checks_) {
        if (std::string fault = check(box->text()); !fault.empty()) return {box, fault};
    }
    return {nullptr, {}};
}

void frmDatiFatturaElettronica::tell_fault() { lblAvviso.set_caption(first_wrong_entry().second); }

void frmDatiFatturaElettronica::leave_comune() {
    tell_fault();
    if (!txtProvincia.empty() || trim(txtComune.text()).empty()) return;
    txtProvincia.set_text(program_.doors().province_of(trim(txtComune.text())));
}

void frmDatiFatturaElettronica::on_load() {
    Desk desk(program_);
    issuer_ = desk.records().issuer();
    if (!desk.records().is_issuer_known()) issuer_ = proposed_issuer(issuer_);
    show_letterhead();
    show_entries();
    leave_comune();
}

void frmDatiFatturaElettronica::show_letterhead() {
    std::string words = "Dall'intestazione: " + issuer_.Nome_Azienda;
    if (!issuer_.Partita_IVA.empty()) words += ", partita IVA " + issuer_.Partita_IVA;
    if (!issuer_.Codice_Fiscale.empty()) words += ", codice fiscale " + issuer_.Codice_Fiscale;
    words += ".";
    for (const std::string& fault :
         {issuer_.Partita_IVA.empty() ? std::string("Nell'intestazione manca la partita IVA.")
                                      : partita_iva_fault(issuer_.Partita_IVA),
          issuer_.Codice_Fiscale.empty() ? std::string("Nell'intestazione manca il codice fiscale.")
                                         : codice_fiscale_fault(issuer_.Codice_Fiscale)}) {
        if (!fault.empty()) words += " " + fault;
    }
    lblIntestazione.set_caption(words);
}

void frmDatiFatturaElettronica::turn_to(Control& control) {
    const Control* const registers[] = {&txtAlbo,       &txtProvinciaAlbo, &txtNumeroAlbo, &txtDataAlbo,
                                        &txtUfficioREA, &txtNumeroREA,     &txtCapitale};
    const bool of_registers =
        std::find(std::begin(registers), std::end(registers), &control) != std::end(registers);
    SSTab1.set_tab(of_registers ? 1 : 0);
    control.set_focus();
}

void frmDatiFatturaElettronica::lead_to(Field field) {
    const std::pair<Field, Control*> places[] = {{Field::issuer_name, &txtCognome},
                                                 {Field::issuer_title, &txtTitolo},
                                                 {Field::issuer_cap, &txtCAP},
                                                 {Field::issuer_comune, &txtComune},
                                                 {Field::issuer_provincia, &txtProvincia},
                                                 {Field::issuer_regime, &cboRegime},
                                                 {Field::issuer_albo, &txtAlbo},
                                                 {Field::issuer_rea, &txtUfficioREA},
                                                 {Field::issuer_iban, &txtIBAN},
                                                 {Field::tipo_ritenuta, &cboTipoRitenuta},
                                                 {Field::causale_pagamento, &cboCausale},
                                                 {Field::tipo_cassa, &cboCassa}};
    for (const auto& [known, control] : places) {
        if (known == field) turn_to(*control);
    }
}

void frmDatiFatturaElettronica::show_entries() {
    txtNome.set_text(issuer_.Nome);
    txtCognome.set_text(issuer_.Cognome);
    txtTitolo.set_text(issuer_.Titolo);
    txtCAP.set_text(issuer_.CAP);
    txtComune.set_text(issuer_.Comune);
    txtProvincia.set_text(issuer_.Provincia);
    choose_code(cboRegime, issuer_.RegimeFiscale);
    choose_code(cboCassa, issuer_.TipoCassa);
    choose_code(cboTipoRitenuta, issuer_.TipoRitenuta);
    choose_code(cboCausale, issuer_.CausalePagamento);
    choose_code(cboTipoDocumento, issuer_.TipoDocumento.empty() ? "TD06" : issuer_.TipoDocumento);
    cboNumero.set_list_index(issuer_.number_form == NumberForm::plain ? 1 : 0);
    txtIBAN.set_text(issuer_.IBAN);
    txtSpese.set_text(issuer_.DescrizioneSpese);
    txtAlbo.set_text(issuer_.AlboProfessionale);
    txtProvinciaAlbo.set_text(issuer_.ProvinciaAlbo);
    txtNumeroAlbo.set_text(issuer_.NumeroIscrizioneAlbo);
    if (issuer_.DataIscrizioneAlbo) {
        txtDataAlbo.set_text(short_date_text(*issuer_.DataIscrizioneAlbo, program_.regional()));
    }
    const IscrizioneREAType& rea = issuer_.IscrizioneREA;
    txtUfficioREA.set_text(rea.Ufficio);
    txtNumeroREA.set_text(rea.NumeroREA);
    if (rea.CapitaleSociale) txtCapitale.set_text(shown_amount(*rea.CapitaleSociale));
    choose_code(cboSocio, rea.SocioUnico);
    choose_code(cboLiquidazione, rea.StatoLiquidazione.empty() ? "LN" : rea.StatoLiquidazione);
}

Issuer frmDatiFatturaElettronica::entered() const {
    Issuer issuer = issuer_;
    issuer.Nome = trim(txtNome.text());
    issuer.Cognome = trim(txtCognome.text());
    issuer.Titolo = trim(txtTitolo.text());
    issuer.CAP = trim(txtCAP.text());
    issuer.Comune = trim(txtComune.text());
    issuer.Provincia = upper_case(trim(txtProvincia.text()));
    issuer.RegimeFiscale = chosen_code(cboRegime);
    issuer.TipoCassa = chosen_code(cboCassa);
    issuer.TipoRitenuta = chosen_code(cboTipoRitenuta);
    issuer.CausalePagamento = chosen_code(cboCausale);
    issuer.TipoDocumento = chosen_code(cboTipoDocumento);
    issuer.number_form = cboNumero.list_index() == 1 ? NumberForm::plain : NumberForm::with_year;
    issuer.IBAN = trim(txtIBAN.text());
    issuer.DescrizioneSpese = trim(txtSpese.text());
    issuer.AlboProfessionale = trim(txtAlbo.text());
    issuer.ProvinciaAlbo = upper_case(trim(txtProvinciaAlbo.text()));
    issuer.NumeroIscrizioneAlbo = trim(txtNumeroAlbo.text());
    issuer.DataIscrizioneAlbo = read_date(txtDataAlbo.text(), program_.regional());
    IscrizioneREAType& rea = issuer.IscrizioneREA;
    rea.Ufficio = upper_case(trim(txtUfficioREA.text()));
    rea.NumeroREA = trim(txtNumeroREA.text());
    rea.CapitaleSociale.reset();
    if (!trim(txtCapitale.text()).empty())
        rea.CapitaleSociale = read_cents(txtCapitale.text(), program_.regional());
    rea.SocioUnico = chosen_code(cboSocio);
    rea.StatoLiquidazione = chosen_code(cboLiquidazione);
    return issuer;
}

std::pair<TextBox*, std::string> frmDatiFatturaElettronica::first_fault() {
    if (auto wrong = first_wrong_entry(); wrong.first) return wrong;
    if (trim(txtNome.text()).empty() != trim(txtCognome.text()).empty()) {
        return {trim(txtNome.text()).empty() ? &txtNome : &txtCognome,
                "Di una persona servono nome e cognome; una società li lascia vuoti."};
    }
    if (trim(txtCAP.text()).empty()) return {&txtCAP, "Inserire il CAP di chi emette la fattura."};
    if (trim(txtComune.text()).empty()) return {&txtComune, "Inserire il comune di chi emette la fattura."};
    return {nullptr, {}};
}

void frmDatiFatturaElettronica::save() {
    if (const auto [box, fault] = first_fault(); box) {
        program_.message(fault, BoxIcon::exclamation);
        turn_to(*box);
        return;
    }
    telling_failures(program_, [&] {
        Desk(program_).records().save_issuer(entered());
        program_.message("Dati per la fattura elettronica salvati correttamente.", BoxIcon::information);
        unload();
    });
}

} // namespace tarvello
