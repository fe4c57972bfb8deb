#pragma once

#include "platform/form.h"

namespace tarvello::testing {

/// Runs the acts of a form that belongs to no program, and does nothing else.
struct PlainHost final : FormHost {
    void run(const std::function<void()>& act) override { act(); }
    void show(Form&) override {}
    void show_modal(Form&) override {}
    bool unload(Form&, UnloadReason) override { return true; }
};

} // namespace tarvello::testing
