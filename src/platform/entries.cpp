#include "platform/entries.h"

#include "platform/list_index.h"
#include "text/utf8.h"

#include <algorithm>

namespace tarvello {

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
        const bool another = text != text_;
        if (another) text_typed();
        put_text(std::move(text));
        if (another) raise(on_edit);
    });
    return true;
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
}

void TextEntry::type(std::string_view characters) {
    for (const char32_t c : utf8::decode(characters)) press_key(static_cast<int>(c));
}

void TextEntry::press_delete() {
    if (!reachable()) return;
    if (!has_focus()) enter();
    if (selection_length_ == 0) place_caret(selection_start_, 1);
    paste({});
}

void TextEntry::paste(std::string_view text) {
    const std::size_t start = selection_start_;
    const std::size_t kept = utf8::length(text_) - selection_length_;
    std::string piece(text);
    if (max_length_ > 0) piece = utf8::left(piece, max_length_ > kept ? max_length_ - kept : 0);
    edit(utf8::left(text_, start) + piece + utf8::mid(text_, start + selection_length_),
         start + utf8::length(piece));
}

void ComboBox::add_item(std::string item) {
    items_.push_back(std::move(item));
    changed(Aspect::items);
}

void ComboBox::set_list_index(int index) {
    check_list_index(index, items_.size(), "voce");
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

} // namespace tarvello
