#include "e_invoice/receipt_errors.h"

#include <algorithm>

namespace tarvello::e_invoice {
namespace {

enum class Group { file, signature, schema, number, addressee, parties, content };

/// The codes of SdI's list of controls from `first` to `last`.
struct Codes {
    std::string_view first;
    std::string_view last;
    Group group;
    const char* hint;
};

constexpr const char* sign_again =
    "Firmare di nuovo il file, con un certificato valido, e inviare quello appena firmato.";
constexpr const char* create_again =
    "Creare di nuovo la fattura elettronica e inviare il file senza modificarlo.";
constexpr const char* look_at_customer = "Controllare partita IVA e codice fiscale del cliente: quello che "
                                         "c'è deve essere suo e attivo all'anagrafe tributaria.";
constexpr const char* look_at_issuer = "Controllare partita IVA e codice fiscale in «Dati per la fattura "
                                       "elettronica»: devono essere dello stesso "
                                       "soggetto.";
constexpr const char* look_at_code =
    "Chiedere al cliente il codice destinatario e correggerlo nei suoi dati; se non ne "
    "ha, toglierlo: il file avrà 0000000.";
constexpr const char* look_at_exemption =
    "Scegliere la natura per ciò che è senza IVA, e nessuna per ciò che ha un'aliquota.";
constexpr const char* look_at_amounts =
    "Gli importi della fattura non tornano: aprirla, rifare il calcolo e salvarla, poi crearla di nuovo.";

constexpr Codes table[] = {
    {"00001", "00001", Group::file,
     "Il nome del file è stato cambiato: creare di nuovo la fattura elettronica."},
    {"00002", "00002", Group::file,
     "Un file con questo nome è già stato inviato. Se per il primo c'è una ricevuta di consegna non serve "
     "altro; se no, "
     "creare di nuovo la fattura: avrà un nome nuovo."},
    {"00003", "00003", Group::file, "Il file è troppo grande: SdI accetta al massimo 5 MB."},
    {"00100", "00107", Group::signature, sign_again},
    {"00200", "00201", Group::schema, create_again},
    {"00300", "00302", Group::parties, look_at_issuer},
    {"00305", "00306", Group::parties, look_at_customer},
    {"00311", "00312", Group::addressee, look_at_code},
    {"00313", "00313", Group::addressee,
     "XXXXXXX è solo per clienti esteri: correggere il codice destinatario o il paese."},
    {"00320", "00323", Group::parties, look_at_issuer},
    {"00324", "00326", Group::parties, look_at_customer},
    {"00330", "00330", Group::addressee,
     "La PEC del cliente è un indirizzo di SdI: chiedere al cliente la sua."},
    {"00398", "00398", Group::addressee,
     "L'amministrazione ha un ufficio solo: indicare il suo codice, che è in IndicePA."},
    {"00399", "00399", Group::addressee,
     "Il cliente è una pubblica amministrazione: segnarlo nei suoi dati, con il codice di sei caratteri "
     "dell'ufficio."},
    {"00400", "00401", Group::content, look_at_exemption},
    {"00403", "00403", Group::content, "La data della fattura è nel futuro."},
    {"00404", "00404", Group::number,
     "SdI ha già una fattura con questo numero e quest'anno. Se è questa, cercare la sua ricevuta e non "
     "inviarla più; se "
     "è un'altra, cambiare il numero."},
    {"00409", "00409", Group::number, "Due fatture inviate insieme hanno lo stesso numero: cambiarne uno."},
    {"00411", "00411", Group::content, create_again},
    {"00413", "00414", Group::content, look_at_exemption},
    {"00415", "00415", Group::content, create_again},
    {"00417", "00417", Group::parties, "Mancano partita IVA e codice fiscale del cliente: ne serve uno."},
    {"00418", "00418", Group::content,
     "La nota di credito ha una data precedente alla fattura a cui si riferisce."},
    {"00419", "00423", Group::content, look_at_amounts},
    {"00424", "00424", Group::content, "Un'aliquota IVA tra 0 e 1 non esiste: correggerla."},
    {"00425", "00425", Group::number, "Il numero della fattura deve contenere almeno una cifra."},
    {"00427", "00427", Group::addressee,
     "Il codice destinatario ha sei caratteri per la pubblica amministrazione e sette per tutti gli altri: "
     "correggerlo "
     "nei dati del cliente."},
    {"00428", "00428", Group::schema, create_again},
    {"00429", "00430", Group::content, look_at_exemption},
    {"00443", "00445", Group::content, look_at_exemption},
    {"00471", "00471", Group::parties,
     "Emittente e cliente sono lo stesso soggetto: con questo tipo di documento non si può."},
    {"00476", "00476", Group::parties,
     "Il paese dell'emittente deve essere l'Italia: correggerlo in «Dati per la fattura "
     "elettronica»."},
    {"00477", "00477", Group::content,
     "La dichiarazione d'intento non risulta valida: chiedere al cliente il protocollo giusto."},
};

const Codes* find(std::string_view code) {
    const auto found = std::find_if(std::begin(table), std::end(table), [&](const Codes& codes) {
        return code >= codes.first && code <= codes.last;
    });
    return found == std::end(table) ? nullptr : found;
}

Group group_of(const ReceiptError& error) {
    const Codes* codes = find(error.code);
    return codes ? codes->group : Group::content;
}

} // namespace

std::vector<ReceiptError> in_helpful_order(std::vector<ReceiptError> errors) {
    std::stable_sort(errors.begin(), errors.end(), [](const ReceiptError& left, const ReceiptError& right) {
        return group_of(left) < group_of(right);
    });
    return errors;
}

std::string_view error_hint(std::string_view code) {
    const Codes* codes = find(code);
    return codes && codes->hint ? codes->hint : "";
}

} // namespace tarvello::e_invoice
