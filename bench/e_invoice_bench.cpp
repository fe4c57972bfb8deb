// Electronic invoices: from a stored row to the file in the user's folder and its entry in the archive.

#include "archive.h"
#include "row.h"

#include "e_invoice/creation.h"
#include "e_invoice/parties.h"
#include "e_invoice/readable_view.h"
#include "platform/posix/posix_files.h"

#include <filesystem>

namespace tarvello::bench {
namespace {

using namespace e_invoice;

const RegionalSettings italian_settings;
constexpr Date creation_day = make_date(2026, 3, 10);

Source full_invoice() {
    Source source;
    StoredInvoice& row = source.invoice;
    row.Numero_Fattura = "1";
    row.Data_Fattura = creation_day;
    row.Anno = "2026";
    row.Partita_IVA = "05432100963";
    row.Cognome_Ragione_Sociale = "Officine Riunite “Łódź” S.r.l.";
    row.Indirizzo = "Via dell'Industria 5";
    row.CAP = "24121";
    row.Provincia = "BG";
    row.Citta = "Bergamo";
    for (std::size_t i = 0; i < StoredInvoice::lines; ++i) {
        row.Prestazione[i] = "Consulenza tecnica – perizia “asseverata” con sopralluogo e rimborso di 12 €";
        row.Importo[i] = "€ 200,00";
    }
    row.Rivalsa = row.Spese = row.Ritenuta = row.Check_Pagamento = "Sì";
    row.Percentuale_Rivalsa = "4";
    row.Importo_Rivalsa = "€ 40,00";
    row.Imponibile = "€ 1.040,00";
    row.Aliquota_IVA = "22";
    row.Imposta_IVA = "€ 228,80";
    row.Importo_Spese = "€ 14,62";
    row.Articolo_Esenzione = "(Art. 15 D.p.r. 633/72)";
    row.Totale_Fattura = "€ 1.283,42";
    row.Percentuale_Ritenuta = "20";
    row.Ritenuta_Su = "100";
    row.Importo_Ritenuta = "€ 208,00";
    row.Importo_Netto = "€ 1.075,42";
    row.Pagamento = "Banca di Prova S.p.A.\r\nABI: 05428\r\nCAB: 11101\r\nC/C: 123456";
    Issuer& issuer = source.issuer;
    issuer.Nome = "Niccolò";
    issuer.Cognome = "D'Angelo";
    issuer.Codice_Fiscale = "DNGNCL75E14F205Y";
    issuer.Partita_IVA = "01234560157";
    issuer.Indirizzo = "Via Santa Sofia, 12";
    issuer.CAP = "20122";
    issuer.Comune = "Milano";
    issuer.Provincia = "MI";
    issuer.Banca = "Banca di Prova S.p.A.";
    issuer.ABI = "05428";
    issuer.CAB = "11101";
    issuer.CC = "123456";
    issuer.RegimeFiscale = "RF01";
    issuer.TipoRitenuta = "RT01";
    issuer.CausalePagamento = "A";
    issuer.TipoCassa = "TC22";
    source.customer.CodiceDestinatario = "ABC1234";
    return source;
}

/// Checks, XML, entry in the archive of 100,000 invoices, file: everything but waiting for the disk.
void creation(benchmark::State& state) {
    const std::string path = archive_copy("e-invoice.mdb");
    const std::string folder = path + "-fatture";
    std::filesystem::remove_all(folder);
    std::filesystem::create_directory(folder);
    Connection connection(italian_settings);
    connection.open(path);
    Records records(connection);
    PosixFiles files;
    Source source = full_invoice();
    FileCreator creator(records, files, folder, sender_code(source.issuer), 0);
    for (auto _ : state) {
        ++source.invoice.ID;
        source.invoice.Numero_Fattura = std::to_string(source.invoice.ID);
        creator.create(source, creation_day, italian_settings);
    }
    if (records.counter() != source.invoice.ID) state.SkipWithError("files are missing");
    std::filesystem::remove_all(folder);
}

void view(benchmark::State& state) {
    const std::string path = archive_copy("e-invoice.mdb");
    Connection connection(italian_settings);
    connection.open(path);
    Records records(connection);
    const std::string xml = preview(records, full_invoice(), creation_day, italian_settings).xml;
    for (auto _ : state) benchmark::DoNotOptimize(to_html(readable_view(xml)));
}

/// The files of a year with 10,000 invoices, as the list of electronic invoices reads them.
void list(benchmark::State& state) {
    const std::string path = archive_copy("e-invoice.mdb");
    Connection connection(italian_settings);
    connection.open(path);
    Records records(connection);
    records.save_issuer(full_invoice().issuer);
    const Preview made = preview(records, full_invoice(), creation_day, italian_settings);
    {
        Transaction filling(connection);
        for (int i = 1; i <= 10'000; ++i) {
            connection.execute(
                "INSERT INTO FE_Fatture (Fattura,Stato,NomeFile,Cartella,Numero,AnnoDocumento,Contenuto) "
                "VALUES (?,?,?,?,?,?,?)",
                {std::int64_t{i}, std::int64_t{8}, std::to_string(i) + ".xml", "/fatture",
                 std::to_string(i) + "/2026", std::int64_t{2026}, made.xml});
        }
        filling.commit();
    }
    for (auto _ : state) {
        if (records.files().size() != 10'000) state.SkipWithError("files are missing");
    }
}

const bool registered = [] {
    row_within("one electronic invoice: from its row to the file and its entry in the archive", creation,
               3000);
    row_within("one electronic invoice: from its file to the view that is shown", view, 1000);
    row_within("reading the 10,000 electronic invoices of the list", list, 100'000);
    return true;
}();

} // namespace
} // namespace tarvello::bench
