#include "e_invoice/receipt.h"

#include "e_invoice/failures.h"
#include "e_invoice/sdi_time.h"
#include "e_invoice/xml_reading.h"

#include <algorithm>
#include <charconv>

namespace tarvello::e_invoice {
namespace {

using namespace std::string_view_literals;

constexpr auto private_customers = "http://ivaservizi.agenziaentrate.gov.it/docs/xsd/fattura/messaggi/v1.0"sv;
constexpr auto administration = "http://www.fatturapa.gov.it/sdi/messaggi/v1.0"sv;

constexpr struct {
    std::string_view family;
    std::string_view root;
    ReceiptKind kind;
} kinds[] = {
    {private_customers, "RicevutaConsegna", ReceiptKind::delivered},
    {private_customers, "RicevutaScarto", ReceiptKind::rejected},
    {private_customers, "RicevutaImpossibilitaRecapito", ReceiptKind::made_available},
    {administration, "RicevutaConsegna", ReceiptKind::delivered},
    {administration, "NotificaScarto", ReceiptKind::rejected},
    {administration, "NotificaMancataConsegna", ReceiptKind::not_delivered},
    {administration, "AttestazioneTrasmissioneFattura", ReceiptKind::attested},
    {administration, "NotificaDecorrenzaTermini", ReceiptKind::lapsed},
    {administration, "NotificaEsito", ReceiptKind::accepted}, // or refused, as its field says
};

/// What users may take for a receipt.
constexpr const char* is_metadata =
    "Sono i metadati di una fattura ricevuta: SdI li manda a chi riceve, non a chi emette.";
constexpr const char* is_invoice = "È una fattura elettronica, non una ricevuta di SdI.";

constexpr struct {
    std::string_view root;
    const char* words;
} others[] = {
    {"FileMetadati", is_metadata},
    {"MetadatiInvioFile", is_metadata},
    {"NotificaEsitoCommittente",
     "È la risposta che il cliente ha mandato a SdI: quella che conta per chi emette è la "
     "notifica di esito (NE) che SdI manda in seguito."},
    {"ScartoEsitoCommittente",
     "È lo scarto della risposta di un cliente: SdI lo manda al cliente, non a chi emette."},
    {"FatturaElettronica", is_invoice},
    {"FatturaElettronicaSemplificata", is_invoice},
    {"postacert", "Sono i dati del gestore della posta certificata, non una ricevuta di SdI."},
};

ReceiptKind kind_of(const pugi::xml_node& root) {
    for (const auto& known : kinds) {
        if (local_name(root) == known.root && namespace_of(root) == known.family) return known.kind;
    }
    for (const auto& other : others) {
        if (local_name(root) == other.root) throw unreadable(other.words);
    }
    throw unreadable("Il file XML non è una ricevuta di SdI che il programma conosce.");
}

std::optional<InvoiceReference> reference_in(pugi::xml_node parent) {
    const pugi::xml_node element = child_named(parent, "RiferimentoFattura");
    InvoiceReference invoice{text_of_child(element, "NumeroFattura"), 0};
    const std::string year = text_of_child(element, "AnnoFattura");
    std::from_chars(year.data(), year.data() + year.size(), invoice.year);
    return invoice.number.empty() ? std::nullopt : std::optional(invoice);
}

void read_errors(pugi::xml_node list, std::vector<ReceiptError>& errors) {
    for (const pugi::xml_node error : list.children()) {
        if (local_name(error) != "Errore") continue;
        errors.push_back({text_of_child(error, "Codice"), text_of_child(error, "Descrizione"),
                          text_of_child(error, "Suggerimento")});
    }
}

void read_outcome(pugi::xml_node answer, Receipt& receipt) {
    const std::string outcome = text_of_child(answer, "Esito");
    if (outcome != "EC01" && outcome != "EC02") {
        throw unreadable(
            "La notifica di esito non dice se il cliente ha accettato o rifiutato: è danneggiata.");
    }
    receipt.kind = outcome == "EC01" ? ReceiptKind::accepted : ReceiptKind::refused;
    receipt.description = text_of_child(answer, "Descrizione");
    receipt.invoice = reference_in(answer);
}

} // namespace

Receipt read_receipt(std::string_view xml) {
    pugi::xml_document document;
    read_xml(document, xml);
    const pugi::xml_node root = document.document_element();
    Receipt receipt;
    receipt.kind = kind_of(root);
    receipt.sdi_number = text_of_child(root, "IdentificativoSdI");
    receipt.file_name = text_of_child(root, "NomeFile");
    receipt.archive_name = text_of_child(child_named(root, "RiferimentoArchivio"), "NomeFile");
    receipt.invoice = reference_in(root);
    receipt.hash = text_of_child(root, receipt.kind == ReceiptKind::attested ? "HashFileOriginale" : "Hash");
    receipt.received = read_sdi_time(text_of_child(root, "DataOraRicezione"));
    receipt.delivered = read_sdi_time(text_of_child(root, "DataOraConsegna"));
    receipt.available = read_sdi_date(text_of_child(root, "DataMessaADisposizione"));
    receipt.addressee_code = text_of_child(child_named(root, "Destinatario"), "Codice");
    receipt.addressee = text_of_child(child_named(root, "Destinatario"), "Descrizione");
    read_errors(child_named(root, "ListaErrori"), receipt.errors);
    receipt.description = text_of_child(root, "Descrizione");
    receipt.note = text_of_child(root, "Note");
    receipt.message_id = text_of_child(root, "MessageId");
    if (receipt.kind == ReceiptKind::accepted) read_outcome(child_named(root, "EsitoCommittente"), receipt);

    if (receipt.file_name.empty() && !receipt.invoice) {
        throw unreadable("La ricevuta non dice a quale file risponde: è danneggiata, scaricarla di nuovo.");
    }
    return receipt;
}

std::string_view receipt_letters(ReceiptKind kind) {
    switch (kind) {
    case ReceiptKind::delivered:
        return "RC";
    case ReceiptKind::rejected:
        return "NS";
    case ReceiptKind::made_available:
    case ReceiptKind::not_delivered:
        return "MC";
    case ReceiptKind::attested:
        return "AT";
    case ReceiptKind::lapsed:
        return "DT";
    case ReceiptKind::accepted:
    case ReceiptKind::refused:
        break;
    }
    return "NE";
}

std::string receipt_identity(const Receipt& receipt) {
    std::string identity(receipt_letters(receipt.kind));
    for (const std::string* part : {&receipt.sdi_number, &receipt.message_id, &receipt.file_name}) {
        identity += '/' + *part;
    }
    if (receipt.invoice) identity += '/' + receipt.invoice->number;
    return identity;
}

} // namespace tarvello::e_invoice
