#pragma once

#include <string>

namespace tarvello {

class Program;

/// Opens an address in the user's browser, and keeps it in Program::opened_address. A failure is told in a
/// box.
void ApriBrowser(Program& program, const std::string& address);

/// Starts a message to a mail address in the user's mail program. A failure is not told.
void ApriMail(Program& program, const std::string& address);

} // namespace tarvello
