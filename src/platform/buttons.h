#pragma once

#include "platform/control.h"

#include <string>

/// The controls that are pressed.
namespace tarvello {

/// What the buttons of a form and those of its tool bars share: words, a picture, or both.
class PictureButton : public Captioned {
public:
    using Captioned::Captioned;

    /// Name of a picture of the program, shown in place of the caption or beside it; empty for none.
    const std::string& picture() const { return picture_; }
    void set_picture(std::string picture);
    bool takes_focus() const override { return true; }
    bool is_command() const override { return true; }

    /// Keys that press it wherever the focus is, such as Ctrl+S; empty for none. The tool tip names them.
    const std::string& shortcut() const { return shortcut_; }
    void set_shortcut(std::string shortcut);
    /// What the tool tip names: the shortcut, or that of another button with the same task.
    const std::string& told_shortcut() const { return shortcut_.empty() ? other_shortcut_ : shortcut_; }
    void tell_shortcut(std::string of_another);
    /// The command gives up what has been entered: it runs also where that could not be read.
    bool cancels() const { return cancels_; }
    void set_cancels() { cancels_ = true; }

private:
    std::string picture_;
    std::string shortcut_;
    std::string other_shortcut_;
    bool cancels_ = false;
};

class CommandButton : public PictureButton {
public:
    using PictureButton::PictureButton;

    Event on_click;

    // User act. The button takes the focus first; if the control left keeps it, the press is lost.
    void click();
    void press() override { click(); }
};

class CheckBox : public Captioned {
public:
    using Captioned::Captioned;

    bool checked() const { return checked_; }
    void set_checked(bool checked);
    bool takes_focus() const override { return true; }

    /// The box has been ticked or unticked, by code or by the user.
    Event on_click;
    KeyEvent on_key_press;

    // User acts.
    void click();
    void press_key(int key);
    /// Offers a key to the form and to the box. @return the key to go on with
    int offer_key(int key);

private:
    bool checked_ = false;
};

/// One of the option buttons that lie in the same frame: choosing one frees the others.
class OptionButton : public Captioned {
public:
    using Captioned::Captioned;

    bool selected() const { return selected_; }
    void set_selected(bool selected);
    bool takes_focus() const override { return true; }

    /// The button has been chosen.
    Event on_click;
    /// The user has clicked it although it is the chosen one.
    Event on_click_again;

    // User act.
    void click();

private:
    bool selected_ = false;
};

} // namespace tarvello
