#pragma once

#include "invoices/exemption_form.h"
#include "invoices/invoice_form.h"
#include "support/program_test.h"

#include <map>
#include <string>

namespace tarvello::testing {

/// The invoice form, opened on the rows that the test has put into the tables before its first use.
struct InvoiceFormTest : ProgramTest {
    using Row = std::map<std::string, std::string>;

    frmTarvello& form() { return program->form<frmTarvello>(); }
    SessionFields& settings() { return program->session(); }

    void press(const std::string& key) { form().Toolbar1.press(key); }

    /// What stands in a field or a label, or "Sì" for a tick.
    std::string shown(const std::string& name) {
        const Control* control = form().find(name);
        if (auto* entry = dynamic_cast<const TextEntry*>(control)) return entry->text();
        if (auto* box = dynamic_cast<const CheckBox*>(control)) return box->checked() ? "Sì" : "";
        auto* label = dynamic_cast<const Label*>(control);
        return label ? label->caption() : "no " + name;
    }
    /// @param texts  what each must show, as "txtNome=Ugo; txtIVA=€ 1,00"
    void expect_shown(const std::string& texts) {
        for (const auto& [name, text] : as_row(texts)) EXPECT_EQ(shown(name), text) << name;
    }

    /// Types over what stands in a field and leaves it.
    void fill(TextEntry& field, const std::string& text) {
        field.enter();
        field.place_caret(0, 1000);
        field.press_delete();
        field.type(text);
        field.leave();
    }

    /// Starts a new invoice for a customer of the register, as the picker leaves it.
    void start_invoice(int customer = 1) {
        press("Nuova Fattura");
        fill_customer(customer);
        form().ComboIVAApplicata.set_text("20");
    }

    void fill_customer(int number) {
        form().customer.ComboNumeroCliente.set_text(std::to_string(number));
        form().customer.txtAnagrafica[0].set_text("RSSMRA80A01H501U");
        form().customer.txtAnagrafica[1].set_text("Via Roma 1");
        form().customer.txtAnagrafica[2].set_text("00100");
        form().customer.txtAnagrafica[3].set_text("RM");
        form().customer.txtAnagrafica[4].set_text("Roma");
        form().customer.txtAnagrafica[5].set_text("Rossi");
        form().customer.txtNome.set_text("Mario");
        form().SbloccaAnagrafica();
    }

    void fill_line(std::size_t line, const std::string& description, const std::string& amount) {
        fill(form().PrestazioneSingola[line], description);
        fill(form().txtImportoPrestazioni[line], amount);
    }

    /// Saves what stands there, with the question answered Yes.
    void save() {
        boxes().expect(question("\nSalvare la fattura?"), Answer::yes);
        press("Nuova Fattura");
        boxes().expect_none_left();
    }

    Row newest() { return sql("SELECT TOP 1 * FROM Fatture ORDER BY ID DESC").at(0); }
    Row stored(int id) { return sql("SELECT * FROM Fatture WHERE ID=" + std::to_string(id)).at(0); }

    MessageBox warning(const std::string& text) {
        return {text, "Tarvello 4", BoxIcon::exclamation, BoxButtons::ok, 1};
    }
    MessageBox information(const std::string& text) {
        return {text, "Tarvello 4", BoxIcon::information, BoxButtons::ok, 1};
    }
    MessageBox question(const std::string& text) {
        return {text, "Tarvello 4", BoxIcon::information, BoxButtons::yes_no, 2};
    }
};

} // namespace tarvello::testing
