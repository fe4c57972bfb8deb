#include "program/settings.h"

#include "failure.h"
#include "platform/controls.h"
#include "program/program.h"
#include "program/version.h"

namespace tarvello {

namespace {

const char* const text_key = "text";
const char* const value_key = "value";
const char* const ticked = "1";
const char* const unticked = "0";

std::string read(Program& program, const std::string& name, const char* key) {
    return program.platform().settings.read(application_name, name, key).value_or(missing_setting);
}

} // namespace

void SaveTextSetting(Program& program, const TextEntry& control) {
    program.platform().settings.write(application_name, control.name(), text_key, control.text());
}

void ReadTextSetting(Program& program, TextEntry& control) {
    skip_failures([&] { control.set_text(read(program, control.name(), text_key)); });
}

void SaveValueSetting(Program& program, const CheckBox& control) {
    program.platform().settings.write(application_name, control.name(), value_key,
                                      control.checked() ? ticked : unticked);
}

void ReadValueSetting(Program& program, CheckBox& control) {
    const std::string value = read(program, control.name(), value_key);
    if (value != ticked && value != unticked) return;
    skip_failures([&] { control.set_checked(value == ticked); });
}

bool stored_as_ticked(Program& program, const std::string& name) {
    return read(program, name, value_key) == ticked;
}

} // namespace tarvello
