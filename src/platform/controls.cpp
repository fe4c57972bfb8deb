#include "platform/controls.h"

#include "failure.h"
#include "text/utf8.h"

#include <algorithm>

namespace tarvello {

// Control

Control::Control(Form& form, std::string name) : form_(form), name_(std::move(name)) {
    form_.controls_.push_back(this);
}

Control::Control(Frame& frame, std::string name)
    : form_(frame.form()), frame_(&frame), name_(std::move(name)) {
    form_.controls_.push_back(this);
}

void Control::changed(Aspect aspect) {
    if (view) view->follow(*this, aspect);
}

void Control::act(const std::function<void()>& event) {
    const auto alive = form_.shared_from_this();
    form_.host().run(event);
}

void Control::set_enabled(bool enabled) {
    if (enabled_ == enabled) return;
    enabled_ = enabled;
    changed(Aspect::enabled);
}

void Control::set_visible(bool visible) {
    if (visible_ == visible) return;
    visible_ = visible;
    changed(Aspect::visible);
}

void Control::set_tool_tip(std::string tool_tip) {
    tool_tip_ = std::move(tool_tip);
    changed(Aspect::look);
}

void Control::set_back_color(std::optional<Color> color) {
    if (back_color_ == color) return;
    back_color_ = color;
    changed(Aspect::look);
}

void Control::set_fore_color(std::optional<Color> color) {
    if (fore_color_ == color) return;
    fore_color_ = color;
    changed(Aspect::look);
}

bool Control::reachable() const { return enabled_ && visible_ && (!frame_ || frame_->reachable()); }

void Control::enter() {
    act([&] { form_.move_focus(this); });
}

void Control::leave() {
    if (!has_focus()) return;
    act([&] { form_.move_focus(nullptr); });
}

void Control::move_mouse() {
    if (on_mouse_move) act(on_mouse_move);
}

// Frame, Label

void Frame::set_caption(std::string caption) {
    caption_ = std::move(caption);
    changed(Aspect::caption);
}

void Frame::set_height(int height) {
    if (height_ == height) return;
    height_ = height;
    changed(Aspect::size);
}

void Label::set_caption(std::string caption) {
    if (caption_ == caption) return;
    caption_ = std::move(caption);
    changed(Aspect::caption);
}

void Label::set_underline(bool underline) {
    if (underline_ == underline) return;
    underline_ = underline;
    changed(Aspect::look);
}

void Label::click() {
    if (!reachable() || !on_click) return;
    act([&] {
        if (form().move_focus(this)) on_click();
    });
}

// TextEntry

bool TextEntry::assign_text(std::string text) {
    if (text_ == text) return false;
    text_ = std::move(text);
    changed(Aspect::text);
    return true;
}

void TextEntry::put_text(std::string text) {
    if (assign_text(std::move(text))) raise(on_change);
}

void TextEntry::set_text(std::string text) {
    if (text_ == text) return;
    selection_start_ = 0;
    selection_length_ = 0;
    put_text(std::move(text));
}

void TextEntry::set_locked(bool locked) {
    if (locked_ == locked) return;
    locked_ = locked;
    changed(Aspect::locked);
}

void TextEntry::select(std::size_t start, std::size_t length) {
    const std::size_t size = utf8::length(text_);
    selection_start_ = std::min(start, size);
    selection_length_ = std::min(length, size - selection_start_);
    changed(Aspect::selection);
}

void TextEntry::place_caret(std::size_t start, std::size_t length) {
    const std::size_t size = utf8::length(text_);
    selection_start_ = std::min(start, size);
    selection_length_ = std::min(length, size - selection_start_);
}

int TextEntry::offer_key(int key) {
    act([&] {
        FormLife::preview(form(), *this, key);
        if (key != 0 && on_key_press) on_key_press(key);
    });
    return key;
}

bool TextEntry::edit(std::string text, std::size_t caret) {
    if (!reachable() || !user_may_edit()) return false;
    bool refused = false;
    if (on_query_edit) act([&] { refused = on_query_edit(); });
    if (refused) return false;
    const std::size_t size = utf8::length(text);
    if (max_length_ > 0 && size > max_length_ && size > utf8::length(text_)) return false;
    act([&] {
        selection_start_ = std::min(caret, size);
        selection_length_ = 0;
        if (text != text_) text_typed();
        put_text(std::move(text));
    });
    return true;
}

void TextEntry::release_key() {
    if (on_key_up) act(on_key_up);
}

void TextEntry::press_key(int key) {
    if (!reachable()) return;
    if (!has_focus()) enter();
    key = offer_key(key);
    if (key == keys::backspace) {
        if (selection_length_ > 0) {
            paste({});
        } else if (selection_start_ > 0) {
            const std::size_t start = selection_start_ - 1;
            edit(utf8::left(text_, start) + utf8::mid(text_, start + 1), start);
        }
    } else if (key >= ' ') {
        std::string character;
        utf8::append(character, static_cast<char32_t>(key));
        paste(character);
    }
    release_key();
}

void TextEntry::type(std::string_view characters) {
    for (const char32_t c : utf8::decode(characters)) press_key(static_cast<int>(c));
}

void TextEntry::press_delete() {
    if (!reachable()) return;
    if (!has_focus()) enter();
    if (selection_length_ == 0) place_caret(selection_start_, 1);
    paste({});
    release_key();
}

void TextEntry::paste(std::string_view text) {
    const std::size_t start = selection_start_;
    const std::size_t kept = utf8::length(text_) - selection_length_;
    std::string piece(text);
    if (max_length_ > 0) piece = utf8::left(piece, max_length_ > kept ? max_length_ - kept : 0);
    edit(utf8::left(text_, start) + piece + utf8::mid(text_, start + selection_length_),
         start + utf8::length(piece));
}

// ComboBox

void ComboBox::add_item(std::string item) {
    items_.push_back(std::move(item));
    changed(Aspect::items);
}

void ComboBox::clear_items() {
    items_.clear();
    list_index_ = -1;
    changed(Aspect::items);
}

void ComboBox::set_list_index(int index) {
    if (index < -1 || index >= static_cast<int>(items_.size())) {
        throw Failure(380, "Controlli", "L'elenco non ha una voce numero " + std::to_string(index + 1) + ".");
    }
    if (index == list_index_) return;
    list_index_ = index;
    assign_text(index < 0 ? std::string() : items_[static_cast<std::size_t>(index)]);
    changed(Aspect::value);
    raise(on_click);
}

void ComboBox::set_text(std::string text) {
    const auto found = std::find(items_.begin(), items_.end(), text);
    list_index_ = found == items_.end() ? -1 : static_cast<int>(found - items_.begin());
    TextEntry::set_text(std::move(text));
}

void ComboBox::choose(int index) {
    if (!reachable() || locked()) return;
    act([&] {
        if (!form().move_focus(this)) return;
        if (index == list_index_) {
            raise(on_click); // a click on the chosen item is a click all the same
        } else {
            set_list_index(index);
        }
    });
}

// Buttons and boxes

void CommandButton::set_caption(std::string caption) {
    if (caption_ == caption) return;
    caption_ = std::move(caption);
    changed(Aspect::caption);
}

void CommandButton::set_picture(std::string picture) {
    picture_ = std::move(picture);
    changed(Aspect::look);
}

void CommandButton::click() {
    if (!reachable()) return;
    act([&] {
        if (form().move_focus(this) && reachable()) raise(on_click);
    });
}

void CheckBox::set_caption(std::string caption) {
    if (caption_ == caption) return;
    caption_ = std::move(caption);
    changed(Aspect::caption);
}

void CheckBox::set_checked(bool checked) {
    if (checked_ == checked) return;
    checked_ = checked;
    changed(Aspect::value);
    raise(on_click);
}

void CheckBox::click() {
    if (!reachable()) return;
    act([&] {
        if (form().move_focus(this) && reachable()) set_checked(!checked_);
    });
}

int CheckBox::offer_key(int key) {
    act([&] {
        FormLife::preview(form(), *this, key);
        if (key != 0 && on_key_press) on_key_press(key);
    });
    return key;
}

void CheckBox::press_key(int key) {
    if (!reachable()) return;
    enter();
    if (offer_key(key) == ' ') set_checked(!checked_);
}

void OptionButton::set_caption(std::string caption) {
    if (caption_ == caption) return;
    caption_ = std::move(caption);
    changed(Aspect::caption);
}

void OptionButton::set_selected(bool selected) {
    if (selected_ == selected) return;
    selected_ = selected;
    changed(Aspect::value);
    if (!selected) return;
    for (Control* other : form().controls()) {
        auto* option = dynamic_cast<OptionButton*>(other);
        if (option && option != this && option->frame() == frame()) option->set_selected(false);
    }
    raise(on_click);
}

void OptionButton::click() {
    if (!reachable()) return;
    act([&] {
        if (!form().move_focus(this) || !reachable()) return;
        if (selected_) raise(on_click_again);
        set_selected(true);
    });
}

// Date picker

void DatePicker::set_date(const Date& date) {
    if (date_ == date) return;
    date_ = date;
    changed(Aspect::value);
    raise(on_change);
}

void DatePicker::pick(const Date& date) {
    if (!reachable()) return;
    act([&] {
        if (has_focus() || form().move_focus(this)) set_date(date);
    });
}

// The rest

void Picture::set_picture(std::string picture) {
    if (picture_ == picture && !painted_) return;
    picture_ = std::move(picture);
    painted_.reset();
    changed(Aspect::look);
}

void Picture::paint_picture(std::string picture, const PictureBox& box) {
    picture_ = std::move(picture);
    painted_ = box;
    changed(Aspect::look);
}

void Picture::set_size(float width, float height) {
    width_ = width;
    height_ = height;
    changed(Aspect::size);
}

void Picture::click() {
    if (reachable() && on_click) act(on_click);
}

Timer::Timer(Form& form, std::string name, int interval_ms)
    : Control(form, std::move(name)), interval_ms_(interval_ms) {
    set_enabled(false);
}

void Timer::tick() {
    if (enabled() && on_timer) act(on_timer);
}

void ProgressBar::set_value(int value) {
    value_ = std::clamp(value, 0, 100);
    changed(Aspect::value);
}

std::string StatusBar::panel(std::size_t place) const {
    return place >= 1 && place <= panels_.size() ? panels_[place - 1] : std::string();
}

void StatusBar::set_panel(std::size_t place, std::string text) {
    if (panels_.size() < place) panels_.resize(place);
    panels_.at(place - 1) = std::move(text);
    changed(Aspect::text);
}

void WebBrowser::navigate(std::string address) {
    address_ = std::move(address);
    if (browser) browser->navigate(address_);
}

void WebBrowser::go_back() {
    if (browser) browser->go_back();
}

void WebBrowser::go_forward() {
    if (browser) browser->go_forward();
}

void WebBrowser::refresh() {
    if (browser) browser->refresh();
}

void Document::set_document(std::string document) {
    if (document_ == document) return;
    document_ = std::move(document);
    changed(Aspect::text);
}

void TabControl::set_tab(int tab) {
    if (tab_ == tab) return;
    tab_ = tab;
    changed(Aspect::value);
}

void TabControl::choose(int tab) {
    if (!reachable()) return;
    act([&] {
        if (form().move_focus(this)) set_tab(tab);
    });
}

} // namespace tarvello
