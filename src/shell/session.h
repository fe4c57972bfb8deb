#pragma once

#include "platform/form.h"

namespace tarvello {

class Program;

/// A session, from the first window to the last setting written. Its state lies in the main window: whether a
/// database is connected in mnuChiudiDatabase, the route of the database in txtDatabaseRoute.

/// Begins the process: shows the splash window, which goes on from there. A second copy of the program ends
/// here, silently.
void start_program(Program& program);

/// Brings a session to life before the main window is shown: the settings with their defaults, the reminder
/// of updates, the name of the invoicing person at the first run, and the database last. Failures of the
/// settings and of the database are silent.
void load_session(Program& program);

/// What the closing of the main window does: closes the windows, writes the settings that are saved at
/// closing, counts the session, closes the database and backs it up. A failing step is skipped.
void close_session(Program& program, UnloadReason reason);

/// The user's desktop ends while the program runs: the main window closes as it always does, but waits for no
/// answer. A session whose settings have not been read yet has nothing to save and ends as it is.
void end_with_desktop(Program& program);

/// Reads the name of the invoicing person or company.
void LeggiNomeIntestatario(Program& program);

/// Closes the windows of the program in their order, those that are open.
void UnloadAllForms(Program& program, UnloadReason reason = UnloadReason::main_window);

} // namespace tarvello
