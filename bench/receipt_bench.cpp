// The receipts of electronic invoices.

#include "row.h"

#include "e_invoice/receipt_import.h"

#include <cstdlib>

namespace tarvello::bench {
namespace {

constexpr std::size_t five_megabytes = 5'000'000;

/// So many bytes of base64, in lines.
std::string base64_lines(std::size_t size) {
    std::string lines;
    lines.reserve(size + 78);
    while (lines.size() < size) lines += std::string(76, 'Q') + "\r\n";
    return lines;
}

/// A rejection with as many errors as there may be, and a signature of that size.
std::string rejection(std::size_t size_of_signature) {
    std::string errors;
    for (int i = 0; i < 200; ++i) {
        errors += "<Errore><Codice>00423</Codice><Descrizione>2.2.1.11 PrezzoTotale non calcolato secondo le "
                  "regole "
                  "definite nelle specifiche "
                  "tecniche</Descrizione><Suggerimento>Verificare</Suggerimento></Errore>\n";
    }
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<n:RicevutaScarto "
           "xmlns:n=\"http://ivaservizi.agenziaentrate.gov.it/docs/xsd/fattura/messaggi/v1.0\" "
           "versione=\"1.0\">\n"
           "<IdentificativoSdI>1</IdentificativoSdI><NomeFile>IT01234560157_00001.xml</"
           "NomeFile>\n<ListaErrori>" +
           errors + "</ListaErrori><MessageId>1</MessageId><Signature>" + base64_lines(size_of_signature) +
           "</Signature></n:RicevutaScarto>";
}

/// Certified mail with the mail of SdI in it, which has the receipt and other files.
std::string certified_mail() {
    return "Subject: POSTA CERTIFICATA\r\nContent-Type: multipart/mixed; boundary=busta\r\n\r\n--busta\r\n"
           "Content-Type: message/rfc822; name=postacert.eml\r\n\r\n"
           "Subject: Invio\r\nContent-Type: multipart/mixed; boundary=parte\r\n\r\n--parte\r\n"
           "Content-Type: application/octet-stream; name=fattura.xml.p7m\r\nContent-Transfer-Encoding: "
           "base64\r\n\r\n" +
           base64_lines(five_megabytes) +
           "--parte\r\nContent-Type: application/octet-stream; name=IT01234560157_00001_NS_001.xml\r\n"
           "Content-Transfer-Encoding: 8bit\r\n\r\n" +
           rejection(3000) + "\r\n--parte--\r\n--busta--\r\n";
}

void find_one_receipt(benchmark::State& state, const std::string& bytes) {
    for (auto _ : state) {
        if (e_invoice::find_receipts(bytes, "ricevuta").receipts.size() != 1) std::abort();
    }
}

void from_xml(benchmark::State& state) { find_one_receipt(state, rejection(five_megabytes)); }
void from_mail(benchmark::State& state) { find_one_receipt(state, certified_mail()); }

const bool registered = [] {
    row_within("receipt of 5 MB", from_xml, 50'000);
    row_within("receipt from certified mail with 5 MB of attachments", from_mail, 50'000);
    return true;
}();

} // namespace
} // namespace tarvello::bench
