#pragma once

#include <functional>
#include <memory>
#include <string>

namespace tarvello {

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

protected:
    ~Doors();

private:
    Program& program_;
};

} // namespace tarvello
