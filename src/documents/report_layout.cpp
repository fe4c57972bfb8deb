#include "documents/print_reports.h"
#include "program/maker_site.h"

#include <algorithm>
#include <map>
#include <string_view>
#include <vector>

/// The page of the two reports, in twips.
namespace tarvello {
namespace {

constexpr Color grey{128, 128, 128};
constexpr Color light_grey{224, 224, 224};
constexpr int page_width = 9630;

const ReportFont arial{"Arial", 8.25, false, false};

ReportControl label(const char* name, ReportBox box, const char* text = "",
                    ReportAlignment alignment = ReportAlignment::left) {
    return {name, box, ReportLabel{text, arial, alignment, Color{0, 0, 0}}};
}

ReportControl rectangle(const char* name, int top, int height, std::optional<Color> fill = std::nullopt) {
    return {name, {0, top, page_width, height}, ReportRectangle{grey, fill}};
}

ReportControl across(const char* name, int top) { return {name, {0, top, page_width, 0}, ReportLine{grey}}; }

ReportControl down(const char* name, int left, int top, int height) {
    return {name, {left, top, 0, height}, ReportLine{grey}};
}

/// Letterhead, date and customer.
ReportSection section4() {
    constexpr auto right = ReportAlignment::right;
    constexpr auto centre = ReportAlignment::centre;
    return {"Section4",
            4770,
            {
                rectangle("Shape4", 3000, 1770),
                label("NomeDitta", {0, 0, 3969, 255}),
                label("DescrizioneAttività", {0, 300, 6705, 255}),
                label("IndirizzoDitta", {0, 660, 6705, 255}),
                label("Label1", {0, 1005, 405, 270}, "Tel."),
                label("TelefonoDitta", {495, 1005, 2100, 255}),
                label("Label2", {2700, 1005, 390, 270}, "FAX", right),
                label("FaxDitta", {3195, 1005, 2805, 255}),
                label("Label5", {0, 1260, 570, 270}, "C.F."),
                label("CFDitta", {495, 1260, 2100, 255}),
                label("Label7", {2700, 1260, 390, 270}, "P.I.", right),
                label("PIDitta", {3210, 1260, 2205, 255}),
                label("Label4", {30, 1575, 570, 270}, "e-mail"),
                label("EMail", {765, 1575, 2805, 255}),
                {"ImageLogo", {6945, 45, 2640, 2025}, ReportImage{}},
                label("Label3", {120, 3150, 540, 255}, "Data"),
                label("Data", {690, 3150, 1695, 255}),
                label("Label8", {5955, 3150, 540, 255}, "Spett."),
                label("Cognome", {6570, 3150, 3030, 255}),
                label("IndirizzoCliente", {6555, 3465, 3030, 255}),
                label("Indirizzo2", {6555, 3795, 3030, 255}),
                label("Label10", {5925, 4125, 540, 255}, "C.F.", centre),
                label("CFCliente", {6555, 4095, 3030, 255}),
                label("Label9", {5925, 4440, 540, 255}, "P.I.", centre),
                label("PICliente", {6555, 4410, 3030, 255}),
                down("Line2", 5795, 3000, 1770),
            }};
}

/// The body of the invoice: texts at left, amounts at right.
ReportSection section2() {
    ReportSection section{"Section2", 7245, {}};
    auto& controls = section.controls;
    controls = {
        rectangle("Shape3", 0, 405),
        rectangle("Shape1", 405, 345, light_grey),
        rectangle("Shape2", 750, 5100),
        rectangle("Shape5", 5850, 1395),
        across("Line3", 2865),
        across("Line4", 4470),
        across("Line1", 5265),
        down("Line7", 7275, 420, 5445),
        label("Label11", {60, 90, 900, 255}, "Fattura n°"),
        label("NumeroFattura", {1035, 105, 2265, 255}),
        label("Label14", {90, 465, 2265, 240}, "Descrizione"),
        label("Label15", {7320, 465, 2265, 240}, "Importi", ReportAlignment::right),
    };
    const auto row = [&](const char* text, int text_top, const char* amount, int amount_top,
                         const char* caption = "") {
        controls.push_back(label(text, {90, text_top, 7065, 300}, caption));
        controls.push_back(label(amount, {7305, amount_top, 2265, 300}, "", ReportAlignment::right));
    };
    row("Descrizione1", 960, "Importo1", 945);
    row("Descrizione2", 1350, "Importo2", 1335);
    row("Descrizione3", 1755, "Importo3", 1740);
    row("Descrizione4", 2160, "Importo4", 2145);
    row("Descrizione5", 2535, "Importo5", 2535);
    row("Label12", 2940, "Imponibile", 2940, "Imponibile");
    row("Rivalsa", 3345, "ImportoRivalsa", 3345);
    row("AliquotaIVA", 3735, "ImpostaIVA", 3735);
    row("SpeseAnticipate", 4140, "ImportoSpeseAnticipate", 4140);
    row("Label13", 4545, "TotaleFattura", 4545, "Totale comprensivo di IVA");
    row("RitenutaAcconto", 4935, "ImportoRitenuta", 4935);
    row("label", 5445, "TotaleDovuto", 5445, "Totale Dovuto");
    controls.push_back(label("TitoloPagamento", {90, 5925, 2265, 300}));
    controls.push_back(label("Pagamento", {90, 6285, 8505, 915}));
    return section;
}

ReportSection section5() {
    const std::string text = "Fattura Realizzata con TARVELLO 4 - " + maker_host();
    return {"Section5",
            2340,
            {{"Label6", {60, 2070, 7230, 270}, ReportLabel{text, arial, ReportAlignment::left, grey}}}};
}

/// What the texts are that a user has written, in the words of the windows.
const std::map<std::string_view, const char*> subjects{
    {"NomeDitta", "nome (intestazione)"},
    {"DescrizioneAttività", "descrizione attività"},
    {"IndirizzoDitta", "indirizzo (intestazione)"},
    {"TelefonoDitta", "telefono"},
    {"FaxDitta", "fax"},
    {"CFDitta", "codice fiscale (intestazione)"},
    {"PIDitta", "partita IVA (intestazione)"},
    {"EMail", "e-mail"},
    {"Cognome", "nome del cliente"},
    {"IndirizzoCliente", "indirizzo del cliente"},
    {"Indirizzo2", "CAP e città del cliente"},
    {"CFCliente", "codice fiscale del cliente"},
    {"PICliente", "partita IVA del cliente"},
    {"Descrizione1", "prestazione 1"},
    {"Descrizione2", "prestazione 2"},
    {"Descrizione3", "prestazione 3"},
    {"Descrizione4", "prestazione 4"},
    {"Descrizione5", "prestazione 5"},
    {"Rivalsa", "dicitura della rivalsa"},
    {"AliquotaIVA", "aliquota IVA"},
    {"SpeseAnticipate", "spese anticipate"},
    {"RitenutaAcconto", "ritenuta d'acconto"},
    {"Pagamento", "pagamento"},
};

Report make_report(const char* name) {
    Report report;
    report.name = name;
    report.caption = "Anteprima di stampa";
    report.width = page_width;
    report.margin = 1000;
    report.window = {60, 450, 13000, 10000};
    // The detail and the footer of the page hold nothing: the invoice is one page, whatever the archive
    // holds.
    report.sections = {section4(), section2(), {"Section1", 0, {}}, {"Section3", 0, {}}, section5()};
    for (const auto& [name, subject] : subjects) report.label(std::string(name)).subject = subject;
    return report;
}

/// Gives labels another font, wherever they stand.
void set_fonts(Report& report, const ReportFont& font, const std::vector<std::string_view>& names) {
    for (ReportSection& section : report.sections) {
        for (ReportControl& control : section.controls) {
            auto* text = std::get_if<ReportLabel>(&control.look);
            if (text && std::find(names.begin(), names.end(), control.name) != names.end()) text->font = font;
        }
    }
}

const std::vector<std::string_view> bold_labels{
    "Label1", "Label2",  "Label3",  "Label4",  "Label5",  "Label7",          "Label8",
    "Label9", "Label10", "Label11", "Label14", "Label15", "TitoloPagamento", "TotaleDovuto"};

} // namespace

Report DataReport1() {
    Report report = make_report("DataReport1");
    set_fonts(report, {"Arial", 11.25, true, false}, {"NomeDitta"});
    set_fonts(report, {"Arial", 9, false, true}, {"DescrizioneAttività"});
    set_fonts(report, {"Arial", 8.25, true, false}, bold_labels);
    return report;
}

Report DataReport2() {
    Report report = make_report("DataReport2");
    for (ReportSection& section : report.sections) {
        for (ReportControl& control : section.controls) {
            auto* text = std::get_if<ReportLabel>(&control.look);
            const bool stays =
                control.name == "Data" || control.name == "NumeroFattura" || control.name == "Label6";
            if (text && !stays) text->font = {"Tahoma", 8.25, false, false};
        }
    }
    set_fonts(report, {"Tahoma", 11.25, true, false}, {"NomeDitta"});
    set_fonts(report, {"Tahoma", 9, false, true}, {"DescrizioneAttività"});
    set_fonts(report, {"Tahoma", 8.25, false, true},
              {"IndirizzoDitta", "TelefonoDitta", "FaxDitta", "EMail", "CFDitta", "PIDitta"});
    set_fonts(report, {"Tahoma", 8.25, true, false}, bold_labels);
    set_fonts(report, {"Tahoma", 8.25, true, false}, {"label"});
    return report;
}

} // namespace tarvello
