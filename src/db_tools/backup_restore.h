#pragma once

namespace tarvello {

class Program;

/// The automatic backup at the end of a session: copies the database file, which must be closed, to the
/// destination that the user chose, over an older backup. One whose content would be lost by that is put
/// aside under a dated name. A missing destination and a failed copy are told in a box, also a database that
/// has stopped to open.
/// @return false if the copy failed
bool EseguiBackupAutomatico(Program& program);

} // namespace tarvello
