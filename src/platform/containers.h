#pragma once

#include "platform/control.h"

/// The controls that hold others.
namespace tarvello {

/// Holds other controls. Disabled or hidden, it stops the user on all of them.
class Frame : public Captioned {
public:
    using Captioned::Captioned;

    /// Height in twips for a frame that folds; 0 leaves it to the layout.
    int height() const { return height_; }
    void set_height(int height);

private:
    int height_ = 0;
};

/// Pages of which one is in view.
class TabControl : public Control {
public:
    using Control::Control;

    int tab() const { return tab_; }
    void set_tab(int tab);
    bool takes_focus() const override { return true; }

    // User act.
    void choose(int tab);

private:
    int tab_ = 0;
};

} // namespace tarvello
