#include "preferences/tax_preferences.h"

#include "preferences/rates.h"
#include "program/program.h"
#include "program/session_fields.h"
#include "program/settings.h"

namespace tarvello {

namespace {

const char* const nothing_in_use = "---";

} // namespace

frmImpostazioni::frmImpostazioni(Program& program) : Form(program, "frmImpostazioni"), program_(program) {
    set_texts();
    connect();
}

void frmImpostazioni::set_texts() {
    set_caption("Impostazioni");

    Label1.set_caption("Impostazioni di Rivalsa");
    Frame1.set_caption("Dicitura Rivalsa");
    Option1.set_caption("Usa la dicitura \"Rivalsa\"");
    Option2.set_caption("Personalizza");
    Label4.set_caption("Dicitura usata attualmente:");
    Frame2.set_caption("Aliquota Rivalsa");
    for (const char* rate : rates::rivalsa) ComboRivalsa.add_item(rate);
    Label5.set_caption("Aliquota usata attualmente:");
    Check1.set_caption("Includi Rivalsa 4% nel calcolo della R.A.");
    CheckEscludiRivalsaImponibile.set_caption(
        "Esludi la rivalsa dal calcolo dell'imponibile (Rivalsa esente da IVA)");

    Label2.set_caption("Impostazioni I.V.A.");
    Frame3.set_caption("Aliquota IVA Predefinita");
    for (const char* rate : rates::iva) ComboIVAApplicata.add_item(rate);

    Label3.set_caption("Impostazioni Ritenuta Acconto");
    Frame4.set_caption("Aliquota Ritenuta Acconto Predefinita");
    for (const char* rate : rates::ritenuta) ComboRitenuta.add_item(rate);
    for (const char* share : rates::ritenuta_shares) ComboRitenutaSu.add_item(share);
    Label6.set_caption("% dell'imponibile");

    for (Label* in_use : {&Label13, &Label18, &Label14, &Label17}) in_use->set_caption(nothing_in_use);
    for (CommandButton* save : {&Command1, &Command3, &Command4}) {
        save->set_caption("&Salva");
        save->set_enabled(false);
    }
    Text1.set_enabled(false);
    Command2.set_caption("Chiudi");
}

void frmImpostazioni::connect() {
    const auto allows = [](CommandButton& save) { return [&save] { save.set_enabled(true); }; };

    Option1.on_click = [this] {
        Text1.set_enabled(false);
        Command1.set_enabled(true);
    };
    Option2.on_click = [this] {
        Command1.set_enabled(true);
        Text1.set_enabled(true);
        Text1.set_text("Indicare la dicitura desiderata");
    };
    Text1.on_change = allows(Command1);
    Check1.on_click = [this] {
        Command1.set_enabled(true);
        if (Check1.checked()) ComboRivalsa.set_text("4");
    };
    ComboRivalsa.on_change = ComboRivalsa.on_click = [this] { rate_changed(); };
    CheckEscludiRivalsaImponibile.on_click = [this] {
        Command1.set_enabled(true);
        // At once, not at the save: the invoice form computes by the main window's box.
        program_.session().CheckEscludiRivalsaImponibile.set_checked(CheckEscludiRivalsaImponibile.checked());
    };
    Command1.on_click = [this] { save_surcharge(); };

    ComboIVAApplicata.on_change = ComboIVAApplicata.on_click = allows(Command3);
    Command3.on_click = [this] { save_vat(); };

    for (ComboBox* combo : {&ComboRitenuta, &ComboRitenutaSu}) {
        combo->on_change = combo->on_click = allows(Command4);
    }
    Command4.on_click = [this] { save_withholding(); };

    Command2.on_click = [this] { unload(); };
    set_keys(nullptr, &Command2);
}

void frmImpostazioni::on_load() {
    Option1.set_selected(true);
    ReadValueSetting(program_, Check1);
    ReadValueSetting(program_, CheckEscludiRivalsaImponibile);
    show_values_in_use();
    const SessionFields& session = program_.session();
    add_rates_in_use(program_, {{ComboRivalsa, "Percentuale_Rivalsa", session.txt_RIVALSA_default},
                                {ComboIVAApplicata, "Aliquota_IVA", session.txt_IVA_default},
                                {ComboRitenuta, "Percentuale_Ritenuta", session.txt_Ritenuta_default},
                                {ComboRitenutaSu, "Ritenuta_Su", session.txt_RitenutaSu_default}});
    // What the load itself has changed is nothing to save.
    for (CommandButton* save : {&Command1, &Command3, &Command4}) save->set_enabled(false);
}

void frmImpostazioni::show_values_in_use() {
    const SessionFields& session = program_.session();
    Label13.set_caption(session.txtProfessione.text());
    if (!session.txt_IVA_default.empty()) Label14.set_caption(session.txt_IVA_default.text() + " %");
    if (!session.txt_Ritenuta_default.empty()) {
        Label17.set_caption(session.txt_Ritenuta_default.text() + "% su " +
                            session.txt_RitenutaSu_default.text() + "% Imponibile");
    }
    const std::string& rate = session.txt_RIVALSA_default.text();
    if (rate.empty()) return;
    if (!Check1.checked()) {
        Label18.set_caption(rate + " %");
    } else if (rate == "4") {
        Label18.set_caption(rate + " % (Inclusa nel calcolo R.A.)");
    }
}

void frmImpostazioni::rate_changed() {
    Command1.set_enabled(true);
    if (ComboRivalsa.text() == "2") Check1.set_checked(false);
}

void frmImpostazioni::save_surcharge() {
    SaveValueSetting(program_, Check1);
    SaveValueSetting(program_, CheckEscludiRivalsaImponibile);
    SessionFields& session = program_.session();
    session.txtProfessione.set_text(Text1.enabled() ? Text1.text() : "Rivalsa");
    session.txt_RIVALSA_default.set_text(ComboRivalsa.text());
    program_.message("Impostazioni rivalsa salvate correttamente.", BoxIcon::information);
    Command1.set_enabled(false);
}

void frmImpostazioni::save_vat() {
    program_.session().txt_IVA_default.set_text(ComboIVAApplicata.text());
    program_.message("Impostazioni IVA salvate correttamente.", BoxIcon::information);
    Command3.set_enabled(false);
}

void frmImpostazioni::save_withholding() {
    SessionFields& session = program_.session();
    session.txt_Ritenuta_default.set_text(ComboRitenuta.text());
    session.txt_RitenutaSu_default.set_text(ComboRitenutaSu.text());
    program_.message("Impostazioni Ritenuta d'Acconto salvate correttamente.", BoxIcon::information);
    Command4.set_enabled(false);
}

bool rivalsa_enters_ritenuta(Program& program) {
    CheckBox& shown = program.form<frmImpostazioni>().Check1;
    ReadValueSetting(program, shown);
    return shown.checked();
}

} // namespace tarvello
