#pragma once

#include "platform/form.h"

namespace tarvello::testing {

/// Runs the acts of a form that belongs to no program, and does nothing else.
struct PlainHost final : FormHost {
    void run(const std::function<void()>& act) override { act(); }
    void show(Form&) override {}
    void show_modal(Form&) override {}
    bool unload(Form&, UnloadReason) override { return true; }
    const RegionalSettings& regional() const override { return italian; }
    Date today() override { return make_date(2006, 4, 1); }
    void help() override { warnings += "?"; }
    void warn(const std::string& text) override { warnings += text + "|"; }

    RegionalSettings italian;
    std::string warnings;
};

} // namespace tarvello::testing
