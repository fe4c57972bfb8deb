#pragma once

#include "platform/report.h"

namespace tarvello::testing {

/// A text of the printed invoice: its place in twips from the corner of the print area, and what stands there
/// for the letterhead and the invoice of PrintingTest. The maker's address follows the last one.
struct PrintedText {
    const char* name;
    ReportBox box;
    char alignment; ///< 'l', 'r' or 'c'
    char font; ///< 'b' bold, 'd' and 'i' bold and italic in the second layout only, 'a' Arial in both; '.'
               ///< plain
    const char* text;
};

inline constexpr int section2_top = 4770;
inline constexpr int section5_top = 12015;

inline constexpr PrintedText printed_texts[] = {
    {"NomeDitta", {0, 0, 3969, 255}, 'l', 'N', "Studio Bianchi"},
    {"DescrizioneAttività", {0, 300, 6705, 255}, 'l', 'D', "Ingegneria civile"},
    {"IndirizzoDitta", {0, 660, 6705, 255}, 'l', 'i', "Via Roma 1 - 00100 Roma"},
    {"Label1", {0, 1005, 405, 270}, 'l', 'b', "Tel."},
    {"TelefonoDitta", {495, 1005, 2100, 255}, 'l', 'i', "06 1234"},
    {"Label2", {2700, 1005, 390, 270}, 'r', 'b', "FAX"},
    {"FaxDitta", {3195, 1005, 2805, 255}, 'l', 'i', "06 5678"},
    {"Label5", {0, 1260, 570, 270}, 'l', 'b', "C.F."},
    {"CFDitta", {495, 1260, 2100, 255}, 'l', 'i', "BNCMRA80A01H501U"},
    {"Label7", {2700, 1260, 390, 270}, 'r', 'b', "P.I."},
    {"PIDitta", {3210, 1260, 2205, 255}, 'l', 'i', "01234567890"},
    {"Label4", {30, 1575, 570, 270}, 'l', 'b', "e-mail"},
    {"EMail", {765, 1575, 2805, 255}, 'l', 'i', "studio@bianchi.it"},
    {"Label3", {120, 3150, 540, 255}, 'l', 'b', "Data"},
    {"Data", {690, 3150, 1695, 255}, 'l', 'a', "05/03/2006"},
    {"Label8", {5955, 3150, 540, 255}, 'l', 'b', "Spett."},
    {"Cognome", {6570, 3150, 3030, 255}, 'l', '.', "Rossi Luigi"},
    {"IndirizzoCliente", {6555, 3465, 3030, 255}, 'l', '.', "Corso Italia 12"},
    {"Indirizzo2", {6555, 3795, 3030, 255}, 'l', '.', "20100 - Milano (MI)"},
    {"Label10", {5925, 4125, 540, 255}, 'c', 'b', "C.F."},
    {"CFCliente", {6555, 4095, 3030, 255}, 'l', '.', "RSSLGU70B02F205X"},
    {"Label9", {5925, 4440, 540, 255}, 'c', 'b', "P.I."},
    {"PICliente", {6555, 4410, 3030, 255}, 'l', '.', "09876543210"},
    {"Label11", {60, section2_top + 90, 900, 255}, 'l', 'b', "Fattura n°"},
    {"NumeroFattura", {1035, section2_top + 105, 2265, 255}, 'l', 'a', "7/2006"},
    {"Label14", {90, section2_top + 465, 2265, 240}, 'l', 'b', "Descrizione"},
    {"Label15", {7320, section2_top + 465, 2265, 240}, 'r', 'b', "Importi"},
    {"Descrizione1", {90, section2_top + 960, 7065, 300}, 'l', '.', "Progetto della struttura"},
    {"Importo1", {7305, section2_top + 945, 2265, 300}, 'r', '.', "€ 1.000,00"},
    {"Descrizione2", {90, section2_top + 1350, 7065, 300}, 'l', '.', "Direzione dei lavori"},
    {"Importo2", {7305, section2_top + 1335, 2265, 300}, 'r', '.', "€ 234,56"},
    {"Descrizione3", {90, section2_top + 1755, 7065, 300}, 'l', '.', "Terza"},
    {"Importo3", {7305, section2_top + 1740, 2265, 300}, 'r', '.', "€ 3,00"},
    {"Descrizione4", {90, section2_top + 2160, 7065, 300}, 'l', '.', "Quarta"},
    {"Importo4", {7305, section2_top + 2145, 2265, 300}, 'r', '.', "€ 4,00"},
    {"Descrizione5", {90, section2_top + 2535, 7065, 300}, 'l', '.', "Quinta"},
    {"Importo5", {7305, section2_top + 2535, 2265, 300}, 'r', '.', "€ 5,00"},
    {"Label12", {90, section2_top + 2940, 7065, 300}, 'l', '.', "Imponibile"},
    {"Imponibile", {7305, section2_top + 2940, 2265, 300}, 'r', '.', "€ 1.259,25"},
    {"Rivalsa", {90, section2_top + 3345, 7065, 300}, 'l', '.', "Rivalsa INPS 2%"},
    {"ImportoRivalsa", {7305, section2_top + 3345, 2265, 300}, 'r', '.', "€ 24,69"},
    {"AliquotaIVA", {90, section2_top + 3735, 7065, 300}, 'l', '.', "IVA 20% su € 1.259,25"},
    {"ImpostaIVA", {7305, section2_top + 3735, 2265, 300}, 'r', '.', "€ 251,85"},
    {"SpeseAnticipate", {90, section2_top + 4140, 7065, 300}, 'l', '.', "Spese Anticipate art. 15"},
    {"ImportoSpeseAnticipate", {7305, section2_top + 4140, 2265, 300}, 'r', '.', "€ 14,62"},
    {"Label13", {90, section2_top + 4545, 7065, 300}, 'l', '.', "Totale comprensivo di IVA"},
    {"TotaleFattura", {7305, section2_top + 4545, 2265, 300}, 'r', '.', "€ 1.525,72"},
    {"RitenutaAcconto",
     {90, section2_top + 4935, 7065, 300},
     'l',
     '.',
     "Dedotta R.A. 20% su 100% Imponibile"},
    {"ImportoRitenuta", {7305, section2_top + 4935, 2265, 300}, 'r', '.', "€ 246,91"},
    {"label", {90, section2_top + 5445, 7065, 300}, 'l', 'd', "Totale Dovuto"},
    {"TotaleDovuto", {7305, section2_top + 5445, 2265, 300}, 'r', 'b', "€ 1.278,81"},
    {"TitoloPagamento", {90, section2_top + 5925, 2265, 300}, 'l', 'b', "Pagamento"},
    {"Pagamento",
     {90, section2_top + 6285, 8505, 915},
     'l',
     '.',
     "Banca di Roma\nABI: 03002\nCAB: 03200\nC/C: 000123"},
    {"Label6", {60, section5_top + 2070, 7230, 270}, 'l', 'a', "Fattura Realizzata con TARVELLO 4 - "},
};

} // namespace tarvello::testing
