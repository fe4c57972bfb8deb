#pragma once

namespace tarvello {

class Program;

/// Opens the database on the route of the session and sets the connected flag accordingly.
/// @return false if it could not be opened, or another one is open; nothing is shown
bool ApriDatabase(Program& program);

/// Closes the shared recordsets and the connection, whatever is open of them. The connected flag stays: who
/// means a lasting close clears it.
void ChiudiDatabase(Program& program);

} // namespace tarvello
