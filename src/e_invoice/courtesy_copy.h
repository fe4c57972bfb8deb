#pragma once

#include <string>

namespace tarvello {
class Program;
}

/// The copy of an electronic invoice that people can read: a PDF file, and a mail to the customer with it.
namespace tarvello::e_invoice {

/// Saves the copy where the user says, and tells it. @return false if the user gave up or it failed
bool save_courtesy_copy(Program& program, const std::string& xml);

/// Opens a message to the customer, whose address the register has, with the words that go with the copy.
void write_to_customer(Program& program, int customer, const std::string& xml);

/// The address of a message for the user's mail program, with subject and text (RFC 6068).
std::string mail_address(const std::string& to, const std::string& subject, const std::string& text);

} // namespace tarvello::e_invoice
