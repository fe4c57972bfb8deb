#include "e_invoice/code_lists.h"

namespace tarvello::e_invoice {
namespace {

/// The last day of the natures and reasons without a digit; the digits hold from some months before.
constexpr Date end_of_2020 = make_date(2020, 12, 31);
constexpr Date october_2020 = make_date(2020, 10, 1);

constexpr Code document_kind_list[] = {
    {"TD01", "fattura"},
    {"TD02", "acconto o anticipo su fattura"},
    {"TD03", "acconto o anticipo su parcella"},
    {"TD04", "nota di credito"},
    {"TD05", "nota di debito"},
    {"TD06", "parcella"},
};

constexpr Code tax_regime_list[] = {
    {"RF01", "ordinario"},
    {"RF02", "contribuenti minimi (art. 1, c. 96-117, L. 244/2007)"},
    {"RF04", "agricoltura e attività connesse e pesca (artt. 34 e 34-bis, DPR 633/72)"},
    {"RF05", "vendita sali e tabacchi (art. 74, c. 1, DPR 633/72)"},
    {"RF06", "commercio dei fiammiferi (art. 74, c. 1, DPR 633/72)"},
    {"RF07", "editoria (art. 74, c. 1, DPR 633/72)"},
    {"RF08", "gestione di servizi di telefonia pubblica (art. 74, c. 1, DPR 633/72)"},
    {"RF09", "rivendita di documenti di trasporto pubblico e di sosta (art. 74, c. 1, DPR 633/72)"},
    {"RF10",
     "intrattenimenti, giochi e altre attività della tariffa del DPR 640/72 (art. 74, c. 6, DPR 633/72)"},
    {"RF11", "agenzie di viaggi e turismo (art. 74-ter, DPR 633/72)"},
    {"RF12", "agriturismo (art. 5, c. 2, L. 413/1991)"},
    {"RF13", "vendite a domicilio (art. 25-bis, c. 6, DPR 600/73)"},
    {"RF14",
     "rivendita di beni usati, di oggetti d'arte, d'antiquariato o da collezione (art. 36, DL 41/1995)"},
    {"RF15",
     "agenzie di vendite all'asta di oggetti d'arte, antiquariato o da collezione (art. 40-bis, DL 41/1995)"},
    {"RF16", "IVA per cassa delle pubbliche amministrazioni (art. 6, c. 5, DPR 633/72)"},
    {"RF17", "IVA per cassa (art. 32-bis, DL 83/2012)"},
    {"RF18", "altro"},
    {"RF19", "forfettario (art. 1, c. 54-89, L. 190/2014)"},
};

constexpr Code withholding_kind_list[] = {
    {"RT01", "ritenuta di persone fisiche"},
    {"RT02", "ritenuta di persone giuridiche"},
};

/// The letters of the yearly certificate of withholdings (CU), instructions for its box 1.
constexpr Code withholding_reason_list[] = {
    {"A", "lavoro autonomo abituale (arte o professione)"},
    {"B", "utilizzazione economica, da parte dell'autore, di opere dell'ingegno"},
    {"C", "utili da contratti di associazione in partecipazione, con apporto di solo lavoro"},
    {"D", "utili dei soci promotori e fondatori di società di capitali"},
    {"E", "levata di protesti cambiari da parte dei segretari comunali"},
    {"G", "indennità per la cessazione di attività sportiva professionale"},
    {"H", "indennità per la cessazione di rapporti di agenzia"},
    {"I", "indennità per la cessazione da funzioni notarili"},
    {"L", "opere dell'ingegno utilizzate da chi le ha ricevute in eredità o in dono"},
    {"L1", "opere dell'ingegno utilizzate da chi ne ha acquistato i diritti"},
    {"M", "lavoro autonomo non abituale"},
    {"M1", "obblighi di fare, di non fare o permettere"},
    {"M2", "lavoro autonomo non abituale, con obbligo di iscrizione alla gestione separata"},
    {"N", "indennità e compensi nell'esercizio di attività sportive dilettantistiche"},
    {"O", "lavoro autonomo non abituale, senza obbligo di iscrizione alla gestione separata"},
    {"O1", "obblighi di fare, di non fare o permettere, senza obbligo di iscrizione alla gestione separata"},
    {"P", "compensi a non residenti per l'uso di attrezzature in Italia"},
    {"Q", "provvigioni di agente o rappresentante monomandatario"},
    {"R", "provvigioni di agente o rappresentante plurimandatario"},
    {"S", "provvigioni di commissionario"},
    {"T", "provvigioni di mediatore"},
    {"U", "provvigioni di procacciatore d'affari"},
    {"V", "provvigioni di incaricato per le vendite a domicilio"},
    {"V1", "attività commerciali non abituali"},
    {"W", "corrispettivi per appalti del condominio"},
    {"X", "canoni a società o stabili organizzazioni estere (anno 2004)"},
    {"Y", "canoni a società o stabili organizzazioni estere (primi mesi del 2005)"},
    {"Z", "titolo diverso dai precedenti", ever_since, end_of_2020},
    {"ZO", "titolo diverso dai precedenti", october_2020},
};

constexpr Code payment_term_list[] = {
    {"TP01", "a rate"},
    {"TP02", "completo"},
    {"TP03", "anticipo"},
};

constexpr Code payment_way_list[] = {{"MP05", "bonifico"}};

constexpr Code vat_due_list[] = {
    {"I", "esigibilità immediata"},
    {"D", "esigibilità differita"},
    {"S", "scissione dei pagamenti"},
};

constexpr Nature nature_list[] = {
    {{"N1", "escluso art. 15"}, "Escluso art. 15 DPR 633/72", false, true},
    {{"N2", "non soggetto", ever_since, end_of_2020}, "", true, true},
    {{"N2.1", "non soggetto, artt. da 7 a 7-septies", october_2020}, "Art. 7-ter DPR 633/72", true, true},
    {{"N2.2", "non soggetto, altri casi", october_2020}, "", true, true},
    {{"N3", "non imponibile", ever_since, end_of_2020}, "", false, false},
    {{"N3.1", "non imponibile, esportazioni", october_2020}, "Art. 8 DPR 633/72", false, false},
    {{"N3.2", "non imponibile, cessioni intracomunitarie", october_2020}, "Art. 41 DL 331/93", false, false},
    {{"N3.3", "non imponibile, cessioni verso San Marino", october_2020}, "Art. 71 DPR 633/72", false, false},
    {{"N3.4", "non imponibile, operazioni assimilate alle esportazioni e servizi internazionali",
      october_2020},
     "Art. 9 DPR 633/72",
     false,
     false},
    {{"N3.5", "non imponibile, dichiarazione d'intento", october_2020},
     "Art. 8 c. 1 lett. c) DPR 633/72",
     true,
     true},
    {{"N3.6", "non imponibile, altre operazioni senza plafond", october_2020}, "", true, true},
    {{"N4", "esente"}, "Esente art. 10 DPR 633/72", true, true},
    {{"N5", "regime del margine, IVA non esposta in fattura"}, "Art. 36 DL 41/95", false, false},
};

/// The usual rates as found in print; the system checks neither the rate nor the amount.
constexpr Fund fund_list[] = {
    {{"TC01", "Cassa Forense, avvocati"}, "4"},
    {{"TC02", "Cassa dottori commercialisti"}, "4"},
    {{"TC03", "Cassa geometri (CIPAG)"}, "5"},
    {{"TC04", "Inarcassa, ingegneri e architetti"}, "4"},
    {{"TC05", "Cassa del notariato"}, ""},
    {{"TC06", "Cassa ragionieri e periti commerciali"}, "4"},
    {{"TC07", "ENASARCO, agenti e rappresentanti di commercio"}, ""},
    {{"TC08", "ENPACL, consulenti del lavoro"}, "4"},
    {{"TC09", "ENPAM, medici"}, ""},
    {{"TC10", "ENPAF, farmacisti"}, ""},
    {{"TC11", "ENPAV, veterinari"}, "2"},
    {{"TC12", "ENPAIA, periti agrari e agrotecnici"}, "2"},
    {{"TC13", "Fondo impiegati di imprese di spedizione e agenzie marittime"}, ""},
    {{"TC14", "INPGI, giornalisti"}, "4"},
    {{"TC15", "ONAOSI, orfani dei sanitari"}, ""},
    {{"TC16", "CASAGIT, giornalisti"}, ""},
    {{"TC17", "EPPI, periti industriali"}, "5"},
    {{"TC18", "EPAP, chimici, geologi, agronomi, attuari"}, "4"},
    {{"TC19", "ENPAB, biologi"}, "4"},
    {{"TC20", "ENPAPI, infermieri"}, "4"},
    {{"TC21", "ENPAP, psicologi"}, "2"},
    {{"TC22", "INPS, gestione separata"}, "4"},
};

constexpr Country country_list[] = {
#include "e_invoice/countries.inc"
};

} // namespace

std::span<const Code> document_kinds() { return document_kind_list; }
std::span<const Code> tax_regimes() { return tax_regime_list; }
std::span<const Code> withholding_kinds() { return withholding_kind_list; }
std::span<const Code> withholding_reasons() { return withholding_reason_list; }
std::span<const Code> payment_terms() { return payment_term_list; }
std::span<const Code> payment_ways() { return payment_way_list; }
std::span<const Code> vat_due() { return vat_due_list; }
std::span<const Nature> natures() { return nature_list; }
std::span<const Fund> funds() { return fund_list; }
std::span<const Country> countries() { return country_list; }

bool in_european_union(std::string_view country) {
    const Country* const found = find_code(countries(), country);
    return found && found->european_union;
}

bool is_flat_rate(std::string_view regime) { return regime == "RF19" || regime == "RF02"; }

} // namespace tarvello::e_invoice
