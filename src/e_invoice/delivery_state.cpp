#include "e_invoice/delivery_state.h"

#include <algorithm>

namespace tarvello::e_invoice {
namespace {

using S = DeliveryState;
using Act = DeliveryAct;

constexpr struct {
    S now;
    Act act;
    S then;
} acts[] = {
    {S::to_create, Act::create, S::created},
    {S::to_create, Act::create_to_sign, S::to_sign},
    {S::to_sign, Act::create, S::created},
    {S::to_sign, Act::create_to_sign, S::to_sign},
    {S::to_sign, Act::sign, S::created},
    {S::created, Act::create, S::created},
    {S::created, Act::create_to_sign, S::to_sign},
    {S::created, Act::sign, S::created},
    {S::created, Act::send, S::sent},
    {S::sent, Act::take_back, S::created},
    {S::rejected, Act::create, S::created},
    {S::rejected, Act::create_to_sign, S::to_sign},
    {S::refused, Act::create, S::created},
    {S::refused, Act::create_to_sign, S::to_sign},
};

S told_by(ReceiptKind receipt) {
    switch (receipt) {
    case ReceiptKind::rejected:
        return S::rejected;
    case ReceiptKind::not_delivered:
        return S::not_delivered;
    case ReceiptKind::attested:
        return S::attested;
    case ReceiptKind::made_available:
        return S::made_available;
    case ReceiptKind::delivered:
        return S::delivered;
    case ReceiptKind::lapsed:
        return S::lapsed;
    case ReceiptKind::accepted:
        return S::accepted;
    case ReceiptKind::refused:
        break;
    }
    return S::refused;
}

/// In the order of the states.
constexpr struct {
    const char* text;
    const char* advice;
} words[] = {
    {"da creare", "La fattura elettronica non è ancora stata creata."},
    {"da firmare",
     "Firmare il file con il proprio programma di firma e scegliere qui il file firmato: la pubblica "
     "amministrazione non riceve file senza firma."},
    {"creata",
     "Inviare il file a SdI, per posta certificata o dal sito Fatture e Corrispettivi, e segnare la fattura "
     "come inviata."},
    {"inviata", "SdI risponde entro cinque giorni: quando la ricevuta arriva, aprirla qui."},
    {"scartata",
     "La fattura non è emessa: correggerla, crearla di nuovo con lo stesso numero e la stessa data e "
     "inviarla entro cinque giorni."},
    {"mancata consegna",
     "SdI non è ancora riuscito a consegnarla e riprova per dieci giorni: non inviarla di nuovo."},
    {"attestata",
     "La fattura è emessa, ma SdI non ha potuto consegnarla: mandarla all'amministrazione per altra via, "
     "con l'attestazione."},
    {"messa a disposizione", "La fattura è emessa: avvisare il cliente che la trova nella sua area riservata "
                             "dell'Agenzia delle Entrate. Non inviarla di nuovo."},
    {"consegnata", "La fattura è emessa e il cliente l'ha ricevuta."},
    {"decorsi i termini",
     "La fattura è emessa: l'amministrazione non ha risposto entro quindici giorni, e SdI non "
     "manda altri messaggi."},
    {"accettata", "La fattura è emessa e il cliente l'ha accettata."},
    {"rifiutata",
     "Il cliente ha rifiutato la fattura: leggere il motivo, poi correggerla e inviarla di nuovo, oppure "
     "emettere una nota di credito."},
};
static_assert(std::size(words) == static_cast<std::size_t>(S::refused) + 1);

} // namespace

std::optional<DeliveryState> state_after(DeliveryState now, DeliveryAct act) {
    for (const auto& possible : acts) {
        if (possible.now == now && possible.act == act) return possible.then;
    }
    return std::nullopt;
}

DeliveryState state_after(DeliveryState now, ReceiptKind receipt) { return std::max(now, told_by(receipt)); }

DeliveryState invoice_state(std::span<const DeliveryState> files) {
    if (files.empty()) return S::to_create;
    const auto taken = std::find_if(files.rbegin(), files.rend(), is_issued);
    return taken != files.rend() && *taken != S::refused ? *taken : files.back();
}

bool is_issued(DeliveryState state) { return state > S::rejected; }

std::optional<int> days_left(DeliveryState state, const Date& invoice_date,
                             const std::optional<Date>& rejected_on, const Date& today) {
    if (state == S::sent || is_issued(state)) return std::nullopt;
    constexpr int days_to_send = 12;
    constexpr int days_after_rejection = 5;
    return rejected_on ? days_after_rejection - days_between(*rejected_on, today)
                       : days_to_send - days_between(invoice_date, today);
}

std::string_view state_text(DeliveryState state) { return words[static_cast<std::size_t>(state)].text; }

std::string_view state_advice(DeliveryState state) { return words[static_cast<std::size_t>(state)].advice; }

} // namespace tarvello::e_invoice
