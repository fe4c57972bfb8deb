#include "e_invoice/courtesy_copy.h"

#include "e_invoice/readable_view.h"
#include "failure.h"
#include "program/messages.h"
#include "program/net_functions.h"
#include "program/program.h"
#include "store/database.h"
#include "text/letter_case.h"

namespace tarvello::e_invoice {
namespace {

std::string percent_encoded(const std::string& text) {
    static constexpr char digits[] = "0123456789ABCDEF";
    std::string encoded;
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        const bool plain = (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') ||
                           c == '-' || c == '.' || c == '_' || c == '~';
        if (plain) {
            encoded += c;
        } else {
            encoded += {'%', digits[byte / 16], digits[byte % 16]};
        }
    }
    return encoded;
}

} // namespace

bool save_courtesy_copy(Program& program, const std::string& xml) {
    auto path = program.platform().dialogs.save_file(
        {"Salva la copia di cortesia", {{"Documenti PDF (*.pdf)", "*.pdf"}}});
    if (!path) return false;
    if (!lower_case(*path).ends_with(".pdf")) *path += ".pdf";
    if (program.platform().files.exists(*path) && !program.platform().copy_dialog.may_replace(*path)) {
        return false;
    }
    try {
        ReadableView view = readable_view(xml);
        view.title += " - copia di cortesia";
        program.platform().files.write(*path, program.platform().reports.pdf_of(to_html(view), view.title));
    } catch (const Failure& failure) {
        // The user can try again elsewhere.
        program.message(failure.description(), BoxIcon::critical);
        return false;
    }
    program.message("La copia di cortesia è stata salvata in:\n" + *path, BoxIcon::information);
    return true;
}

void write_to_customer(Program& program, int customer, const std::string& xml) {
    Recordset row;
    row.open("SELECT * FROM Clienti WHERE Numero_Cliente=?", program.database().dbConnection,
             {std::int64_t{customer}});
    const std::string address = row.eof() ? std::string() : row.text_or_empty("email");
    if (address.empty()) return program.message(messages::no_mail_address, BoxIcon::information);
    const std::string title = readable_view(xml).title;
    ApriMail(program, mail_address(address, title,
                                   "In allegato la copia di cortesia: " + title +
                                       ".\r\nL'originale è il file trasmesso al Sistema di Interscambio."));
}

std::string mail_address(const std::string& to, const std::string& subject, const std::string& text) {
    return to + "?subject=" + percent_encoded(subject) + "&body=" + percent_encoded(text);
}

} // namespace tarvello::e_invoice
