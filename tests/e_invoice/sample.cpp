#include "e_invoice/sample.h"

#include "places.h"
#include "store/store_fixture.h"

#include <algorithm>
#include <filesystem>
#include <map>
#include <sstream>

namespace tarvello::e_invoice {
namespace {

const std::string folder = TARVELLO_TEST_DATA "/data/fatturapa/samples/";

/// Lines such as "row.Importo1=€ 1.000,00"; \n stands for a line break. A name that comes twice has its texts
/// joined by a tab.
class Fields {
public:
    explicit Fields(const std::string& text) {
        std::istringstream lines(text);
        for (std::string line; std::getline(lines, line);) {
            const std::size_t mark = line.find('=');
            if (line.starts_with('#') || mark == std::string::npos) continue;
            std::string value = line.substr(mark + 1);
            for (std::size_t at = 0; (at = value.find("\\n", at)) != std::string::npos;)
                value.replace(at, 2, "\r\n");
            std::string& field = values_[line.substr(0, mark)];
            field += (field.empty() ? "" : "\t") + value;
        }
    }
    const std::string& operator[](const std::string& name) { return values_[name]; }

private:
    std::map<std::string, std::string> values_;
};

StoredInvoice invoice_of(Fields& f) {
    StoredInvoice row;
    row.ID = std::stoi(f["row.ID"]);
    row.Numero_Cliente = std::stoi(f["row.Numero_Cliente"]);
    row.Data_Fattura = read_iso_date(f["row.Data_Fattura"]).value();
    const std::pair<const char*, std::string*> columns[] = {
        {"Numero_Fattura", &row.Numero_Fattura},
        {"Anno", &row.Anno},
        {"Codice_Fiscale", &row.Codice_Fiscale},
        {"Partita_IVA", &row.Partita_IVA},
        {"Nome", &row.Nome},
        {"Cognome_Ragione_Sociale", &row.Cognome_Ragione_Sociale},
        {"Indirizzo", &row.Indirizzo},
        {"CAP", &row.CAP},
        {"Provincia", &row.Provincia},
        {"Città", &row.Citta},
        {"Rivalsa", &row.Rivalsa},
        {"Percentuale_Rivalsa", &row.Percentuale_Rivalsa},
        {"Importo_Rivalsa", &row.Importo_Rivalsa},
        {"Imponibile", &row.Imponibile},
        {"Aliquota_IVA", &row.Aliquota_IVA},
        {"Imposta_IVA", &row.Imposta_IVA},
        {"Spese", &row.Spese},
        {"IVA_Spese", &row.IVA_Spese},
        {"Importo_Spese", &row.Importo_Spese},
        {"Articolo_Esenzione", &row.Articolo_Esenzione},
        {"Totale_Fattura", &row.Totale_Fattura},
        {"Ritenuta", &row.Ritenuta},
        {"Importo_Ritenuta", &row.Importo_Ritenuta},
        {"Percentuale_Ritenuta", &row.Percentuale_Ritenuta},
        {"Ritenuta_Su", &row.Ritenuta_Su},
        {"Importo_Netto", &row.Importo_Netto},
        {"Check_Pagamento", &row.Check_Pagamento},
        {"Pagamento", &row.Pagamento}};
    for (const auto& [name, text] : columns) *text = f[std::string("row.") + name];
    for (std::size_t i = 0; i < StoredInvoice::lines; ++i) {
        row.Prestazione[i] = f["row.Prestazione" + std::to_string(i + 1)];
        row.Importo[i] = f["row.Importo" + std::to_string(i + 1)];
    }
    return row;
}

Issuer issuer_of(Fields& f) {
    Issuer issuer;
    const std::pair<const char*, std::string*> fields[] = {{"Nome_Azienda", &issuer.Nome_Azienda},
                                                           {"Nome", &issuer.Nome},
                                                           {"Cognome", &issuer.Cognome},
                                                           {"Titolo", &issuer.Titolo},
                                                           {"Codice_Fiscale", &issuer.Codice_Fiscale},
                                                           {"Partita_IVA", &issuer.Partita_IVA},
                                                           {"Indirizzo", &issuer.Indirizzo},
                                                           {"CAP", &issuer.CAP},
                                                           {"Comune", &issuer.Comune},
                                                           {"Provincia", &issuer.Provincia},
                                                           {"Telefono", &issuer.Telefono},
                                                           {"Fax", &issuer.Fax},
                                                           {"email", &issuer.email},
                                                           {"Banca", &issuer.Banca},
                                                           {"ABI", &issuer.ABI},
                                                           {"CAB", &issuer.CAB},
                                                           {"CC", &issuer.CC},
                                                           {"RegimeFiscale", &issuer.RegimeFiscale},
                                                           {"TipoRitenuta", &issuer.TipoRitenuta},
                                                           {"CausalePagamento", &issuer.CausalePagamento},
                                                           {"TipoCassa", &issuer.TipoCassa}};
    for (const auto& [name, text] : fields) *text = f[std::string("issuer.") + name];
    return issuer;
}

} // namespace

Draft Sample::draft() const { return from_row(invoice, issuer, customer, decisions, progressive, italian); }

std::vector<Finding> Sample::findings() const { return check(draft(), {.today = soon_after}); }

std::vector<std::string*> texts_of(Sample& s) {
    StoredInvoice& row = s.invoice;
    Issuer& issuer = s.issuer;
    Customer& customer = s.customer;
    Decisions& d = s.decisions;
    d.Causale.resize(1);
    std::vector<std::string*> texts{&row.Numero_Fattura,
                                    &row.Anno,
                                    &row.Codice_Fiscale,
                                    &row.Partita_IVA,
                                    &row.Nome,
                                    &row.Cognome_Ragione_Sociale,
                                    &row.Indirizzo,
                                    &row.CAP,
                                    &row.Provincia,
                                    &row.Citta,
                                    &row.Rivalsa,
                                    &row.Percentuale_Rivalsa,
                                    &row.Importo_Rivalsa,
                                    &row.Imponibile,
                                    &row.Aliquota_IVA,
                                    &row.Imposta_IVA,
                                    &row.Spese,
                                    &row.IVA_Spese,
                                    &row.Importo_Spese,
                                    &row.Articolo_Esenzione,
                                    &row.Totale_Fattura,
                                    &row.Ritenuta,
                                    &row.Importo_Ritenuta,
                                    &row.Percentuale_Ritenuta,
                                    &row.Ritenuta_Su,
                                    &row.Importo_Netto,
                                    &row.Check_Pagamento,
                                    &row.Pagamento,
                                    &issuer.Nome_Azienda,
                                    &issuer.Indirizzo,
                                    &issuer.Telefono,
                                    &issuer.Fax,
                                    &issuer.Codice_Fiscale,
                                    &issuer.Partita_IVA,
                                    &issuer.email,
                                    &issuer.Banca,
                                    &issuer.ABI,
                                    &issuer.CAB,
                                    &issuer.CC,
                                    &issuer.Nome,
                                    &issuer.Cognome,
                                    &issuer.Titolo,
                                    &issuer.CAP,
                                    &issuer.Comune,
                                    &issuer.Provincia,
                                    &issuer.RegimeFiscale,
                                    &issuer.TipoRitenuta,
                                    &issuer.CausalePagamento,
                                    &issuer.TipoCassa,
                                    &issuer.TipoDocumento,
                                    &issuer.IBAN,
                                    &issuer.DescrizioneSpese,
                                    &issuer.AlboProfessionale,
                                    &issuer.ProvinciaAlbo,
                                    &issuer.NumeroIscrizioneAlbo,
                                    &issuer.IscrizioneREA.Ufficio,
                                    &issuer.IscrizioneREA.NumeroREA,
                                    &customer.CodiceDestinatario,
                                    &customer.PECDestinatario,
                                    &customer.Nazione,
                                    &customer.IdPaese,
                                    &customer.IdCodice,
                                    &customer.Indirizzo,
                                    &customer.Comune,
                                    &d.TipoDocumento,
                                    &d.Natura,
                                    &d.NaturaSpese,
                                    &d.RiferimentoNormativo,
                                    &d.RiferimentoNormativoSpese,
                                    &d.DescrizioneSpese,
                                    &d.EsigibilitaIVA,
                                    &d.Causale.front(),
                                    &d.reference.IdDocumento,
                                    &d.reference.NumItem,
                                    &d.reference.CodiceCommessaConvenzione,
                                    &d.reference.CodiceCUP,
                                    &d.reference.CodiceCIG,
                                    &d.FatturaCollegata.IdDocumento,
                                    &d.ProtocolloIntento,
                                    &s.progressive};
    for (std::string& text : row.Prestazione) texts.push_back(&text);
    for (std::string& text : row.Importo) texts.push_back(&text);
    return texts;
}

namespace {

void insert(Connection& connection, const std::string& table,
            const std::vector<std::pair<std::string, std::string>>& columns) {
    std::string names;
    std::string marks;
    Parameters values;
    for (const auto& [name, text] : columns) {
        names += (names.empty() ? "" : ",") + name;
        marks += marks.empty() ? "?" : ",?";
        values.push_back(text.empty() ? store::Value() : store::Value(text));
    }
    connection.execute("INSERT INTO " + table + " (" + names + ") VALUES (" + marks + ")", values);
}

} // namespace

void store_row(Connection& connection, const StoredInvoice& row) {
    std::vector<std::pair<std::string, std::string>> columns{
        {"Numero_Fattura", row.Numero_Fattura},
        {"Data_Fattura", short_date_text(row.Data_Fattura, italian)},
        {"Anno", row.Anno},
        {"Numero_Cliente", std::to_string(row.Numero_Cliente)},
        {"Codice_Fiscale", row.Codice_Fiscale},
        {"Partita_IVA", row.Partita_IVA},
        {"Nome", row.Nome},
        {"Cognome_Ragione_Sociale", row.Cognome_Ragione_Sociale},
        {"Indirizzo", row.Indirizzo},
        {"CAP", row.CAP},
        {"Provincia", row.Provincia},
        {"Città", row.Citta},
        {"Rivalsa", row.Rivalsa},
        {"Percentuale_Rivalsa", row.Percentuale_Rivalsa},
        {"Importo_Rivalsa", row.Importo_Rivalsa},
        {"Imponibile", row.Imponibile},
        {"Aliquota_IVA", row.Aliquota_IVA},
        {"Imposta_IVA", row.Imposta_IVA},
        {"Spese", row.Spese},
        {"IVA_Spese", row.IVA_Spese},
        {"Importo_Spese", row.Importo_Spese},
        {"Articolo_Esenzione", row.Articolo_Esenzione},
        {"Totale_Fattura", row.Totale_Fattura},
        {"Ritenuta", row.Ritenuta},
        {"Importo_Ritenuta", row.Importo_Ritenuta},
        {"Percentuale_Ritenuta", row.Percentuale_Ritenuta},
        {"Ritenuta_Su", row.Ritenuta_Su},
        {"Importo_Netto", row.Importo_Netto},
        {"Check_Pagamento", row.Check_Pagamento},
        {"Pagamento", row.Pagamento}};
    for (std::size_t i = 0; i < StoredInvoice::lines; ++i) {
        columns.emplace_back("Prestazione" + std::to_string(i + 1), row.Prestazione[i]);
        columns.emplace_back("Importo" + std::to_string(i + 1), row.Importo[i]);
    }
    insert(connection, "Fatture", columns);
}

void store_letterhead(Connection& connection, const Issuer& issuer) {
    insert(connection, "DatiIntestazione",
           {{"Nome_Azienda", issuer.Nome_Azienda},
            {"Indirizzo", issuer.Indirizzo},
            {"Telefono", issuer.Telefono},
            {"Codice_Fiscale", issuer.Codice_Fiscale},
            {"Partita_IVA", issuer.Partita_IVA},
            {"email", issuer.email},
            {"Banca", issuer.Banca},
            {"ABI", issuer.ABI},
            {"CAB", issuer.CAB},
            {"CC", issuer.CC}});
}

std::vector<std::string> sample_names() {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        if (entry.path().extension() == ".xml") names.push_back(entry.path().stem());
    }
    std::sort(names.begin(), names.end());
    return names;
}

Sample sample(const std::string& name) {
    Fields f(testing::bytes_of(folder + name + ".fields"));
    Sample sample;
    sample.invoice = invoice_of(f);
    sample.issuer = issuer_of(f);
    sample.customer.Nazione = f["customer.Nazione"];
    sample.customer.public_administration = f["einvoice.FormatoTrasmissione"] == "FPA12";
    sample.customer.CodiceDestinatario = f["einvoice.CodiceDestinatario"];
    sample.decisions.TipoDocumento = f["einvoice.TipoDocumento"];
    sample.decisions.Natura = f["einvoice.Natura"];
    sample.decisions.NaturaSpese = f["einvoice.NaturaSpese"];
    sample.decisions.DescrizioneSpese = f["einvoice.DescrizioneSpese"];
    sample.decisions.bollo = !f["einvoice.Bollo"].empty();
    std::istringstream reasons(f["einvoice.Causale"]);
    for (std::string reason; std::getline(reasons, reason, '\t');) sample.decisions.Causale.push_back(reason);
    if (!f["einvoice.IdContratto"].empty()) {
        sample.decisions.reference_kind = ReferenceKind::contract;
        sample.decisions.reference.IdDocumento = f["einvoice.IdContratto"];
        sample.decisions.reference.CodiceCIG = f["einvoice.CIG"];
    }
    sample.progressive = f["einvoice.Progressivo"];
    sample.file_name = f["einvoice.file_name"];
    sample.number = f["einvoice.Numero"];
    sample.xml = testing::bytes_of(folder + name + ".xml");
    return sample;
}

} // namespace tarvello::e_invoice
