#pragma once

#include "platform/control.h"

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

/// The controls into which the user writes.
namespace tarvello {

/// What text boxes and combo boxes share: one text, a caret, the keys.
class TextEntry : public Control {
public:
    using Control::Control;

    const std::string& text() const { return text_; }
    /// Sets the text and puts the caret at its start.
    virtual void set_text(std::string text);
    bool empty() const { return text_.empty(); }
    void clear() { set_text({}); }

    /// The user can select and copy but not change the text.
    bool locked() const { return locked_; }
    void set_locked(bool locked);
    /// Most characters that the user can enter; 0 for no limit. Code may set a longer text.
    std::size_t max_length() const { return max_length_; }
    void set_max_length(std::size_t characters) { max_length_ = characters; }

    /// Caret position, or the start of the selection, in characters from 0.
    std::size_t selection_start() const { return selection_start_; }
    std::size_t selection_length() const { return selection_length_; }
    void select(std::size_t start, std::size_t length);

    bool takes_focus() const override { return true; }

    /// The text has changed, by code or by the user.
    Event on_change;
    /// The user has changed the text, in whatever way: keys, pasting, dropping, undoing.
    Event on_edit;
    /// Asked before an edit of the user counts, also one that comes without a key, such as pasting.
    /// Returns true to refuse it.
    std::function<bool()> on_query_edit;
    /// A character key, before it has any effect.
    KeyEvent on_key_press;

    // User acts.

    /// Reaches the control if need be, and enters the characters one by one at the caret.
    void type(std::string_view characters);
    /// One key with all that it does: a character, Backspace or Enter.
    void press_key(int key);
    /// The Delete key: takes the selection, or the character after the caret.
    void press_delete();
    /// Puts a text in the place of the selection without passing the key filter.
    void paste(std::string_view text);
    /// Puts the caret, or selects.
    void place_caret(std::size_t start, std::size_t length = 0);

    // The steps of a key for a widget that does its own editing.

    /// Offers a key to the form and to the filter. @return the key to go on with, 0 if it was cancelled
    int offer_key(int key);
    /// The user's editing has come to this text and caret. Refused where the user may not change it.
    /// @return false if it was refused: the widget goes back to text()
    bool edit(std::string text, std::size_t caret);

protected:
    virtual bool user_may_edit() const { return !locked_; }
    /// The user is about to enter another text.
    virtual void text_typed() {}
    /// Sets the text without an event. @return true if it is another one
    bool assign_text(std::string text);
    /// Sets the text and raises on_change if it is another one.
    void put_text(std::string text);

private:
    std::string text_;
    bool locked_ = false;
    std::size_t max_length_ = 0;
    std::size_t selection_start_ = 0;
    std::size_t selection_length_ = 0;
};

class TextBox : public TextEntry {
public:
    using TextEntry::TextEntry;

    /// Where Enter leads from here; null: on to the next field.
    Control* enter_leads_to() const { return enter_leads_to_; }
    void lead_enter_to(Control& next) { enter_leads_to_ = &next; }

private:
    Control* enter_leads_to_ = nullptr;
};

/// A text that can be chosen from a list and, unless `list_only`, also typed.
class ComboBox : public TextEntry {
public:
    using TextEntry::TextEntry;

    const std::vector<std::string>& items() const { return items_; }
    void add_item(std::string item);
    /// The chosen item, or -1 when the text was typed or is none of them.
    int list_index() const { return list_index_; }
    /// Chooses an item: its text becomes the text and on_click is raised. -1 chooses none and empties the
    /// text.
    /// @throws Failure if there is no such item
    void set_list_index(int index);
    void set_text(std::string text) override;

    bool list_only() const { return list_only_; }
    void set_list_only(bool list_only) { list_only_ = list_only; }

    /// An item has been chosen.
    Event on_click;

    // User act: chooses an item.
    void choose(int index);

protected:
    bool user_may_edit() const override { return !locked() && !list_only_; }
    void text_typed() override { list_index_ = -1; }

private:
    std::vector<std::string> items_;
    int list_index_ = -1;
    bool list_only_ = false;
};

} // namespace tarvello
