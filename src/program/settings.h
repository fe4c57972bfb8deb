#pragma once

#include <string>

namespace tarvello {

class CheckBox;
class Program;
class TextEntry;

/// A control and its setting are one idea: the control's own name is the section, "text" the key of a text
/// and "value" that of a check box. Two controls of one name on two forms share one setting. The store never
/// fails: what cannot be read counts as missing.

/// What a missing key reads as. So no setting can hold this text as its real value.
inline constexpr const char* missing_setting = "False";

/// Stores the text of a control.
void SaveTextSetting(Program& program, const TextEntry& control);

/// Gives a control its stored text, with all that a change of it does; a missing key gives "False".
void ReadTextSetting(Program& program, TextEntry& control);

/// Stores the state of a check box, as "0" or "1".
void SaveValueSetting(Program& program, const CheckBox& control);

/// Gives a check box its stored state, with all that a click on it does. A missing key, or a text that is no
/// state, leaves the box as it is.
void ReadValueSetting(Program& program, CheckBox& control);

/// True if the check box of that name is stored as ticked.
bool stored_as_ticked(Program& program, const std::string& name);

} // namespace tarvello
