#include "program/settings.h"

#include "failure.h"
#include "platform/controls.h"
#include "program/program.h"
#include "program/version.h"

namespace tarvello {

namespace {

/// What a missing key reads as. So no setting can hold this text as its real value.
const std::string missing = "False";

std::string read(Program& program, const Control& control, const std::string& key) {
    return program.platform().settings.read(application_name, control.name(), key).value_or(missing);
}

} // namespace

void SaveTextSetting(Program& program, const TextEntry& control) {
    program.platform().settings.write(application_name, control.name(), "text", control.text());
}

void ReadTextSetting(Program& program, TextEntry& control) {
    skip_failures([&] { control.set_text(read(program, control, "text")); });
}

void SaveValueSetting(Program& program, const CheckBox& control) {
    program.platform().settings.write(application_name, control.name(), "value",
                                      control.checked() ? "1" : "0");
}

void ReadValueSetting(Program& program, CheckBox& control) {
    const std::string value = read(program, control, "value");
    if (value != "0" && value != "1") return;
    skip_failures([&] { control.set_checked(value == "1"); });
}

} // namespace tarvello
