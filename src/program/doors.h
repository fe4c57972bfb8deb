#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

namespace tarvello {

namespace e_invoice {
enum class Field : std::uint8_t;
} // namespace e_invoice

class CustomerTarget;
class Program;
class TextBox;

/// The ways from one room of forms into another. A form opens the windows of its own room itself; those of
/// other rooms it does not know: it asks here, says where the result goes, and the shell opens the window.
/// Each way returns when the window has been closed.
class Doors {
public:
    /// The program finds these doors as long as they are there.
    explicit Doors(Program& program);
    Doors(const Doors&) = delete;
    Doors& operator=(const Doors&) = delete;

    /// Opens the calculator of fiscal codes for a person.
    /// @param caller  who asks, in the calculator's own word for it
    /// @param code    where the code goes
    virtual void calculate_fiscal_code(const std::string& caller, const std::string& surname,
                                       const std::string& name, std::shared_ptr<TextBox> code) = 0;
    /// Opens the calculator by itself.
    /// @param taker  gets the code when the user copies it
    virtual void calculate_fiscal_code(std::function<void(const std::string& code)> taker) = 0;
    /// Lets the user pick a customer, or say that it is a new one.
    virtual void pick_customer(std::shared_ptr<CustomerTarget> target) = 0;
    /// Asks the name of the invoicing person or company.
    virtual void ask_issuer_name() = 0;
    /// Shows the guide of the program.
    virtual void show_guide() = 0;
    /// Shows a page of help.
    virtual void show_help(const std::string& title, const std::string& text) = 0;
    /// Opens what the letterhead does not know of who issues electronic invoices, at a field if one is given.
    virtual void edit_e_invoice_issuer(const e_invoice::Field* field = nullptr) = 0;
    /// Opens what the register does not know of a customer who gets electronic invoices.
    /// @param name  of the customer, for the heading
    virtual void edit_e_invoice_customer(int number, const std::string& name,
                                         const e_invoice::Field* field = nullptr) = 0;
    /// Shows the letterhead, at a field of it.
    virtual void show_letterhead(e_invoice::Field field) = 0;
    /// Opens the electronic invoice of a row of Fatture.
    virtual void open_e_invoice(int invoice) = 0;
    /// Shows a row of Fatture on the invoice form, and leads to a field of it if one is given.
    /// @param line  1 to 5 for a field of a service line
    virtual void show_invoice(int invoice, const e_invoice::Field* field = nullptr, int line = 0) = 0;
    /// The province of a municipality, two letters; empty if it is not known.
    virtual std::string province_of(const std::string& municipality) = 0;

protected:
    ~Doors();

private:
    Program& program_;
};

} // namespace tarvello
