#include "platform/qt/text_views.h"

#include "platform/qt/keyboard.h"
#include "platform/qt/qt_text.h"
#include "platform/qt/views.h"
#include "text/letter_case.h"
#include "text/utf8.h"

#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPlainTextEdit>

#include <algorithm>
#include <limits>

namespace tarvello::qt {

// EntryView

void EntryView::show(Aspect aspect) {
    switch (aspect) {
    case Aspect::text: {
        const QString text = to_qt(entry_.text());
        if (shown_text() == text) break;
        show_text(text);
        show_selection_of_control();
        break;
    }
    case Aspect::locked:
        show_locked(entry_.locked());
        break;
    case Aspect::selection:
        selected_by_code_ = true;
        show_selection_of_control();
        break;
    default:
        WidgetView::show(aspect);
    }
}

void EntryView::show_selection_of_control() {
    const QString text = shown_text();
    const int start = units_of(text, entry_.selection_start());
    const int end = units_of(text, entry_.selection_start() + entry_.selection_length());
    show_selection(start, end - start);
}

void EntryView::focus_settled() {
    // A box that is reached with the keyboard shows its text selected, unless the program has selected
    // itself.
    if (selected_by_code_) show_selection_of_control();
    selected_by_code_ = false;
    tell_caret();
}

void EntryView::tell_caret() {
    const QString text = shown_text();
    const std::size_t start = characters_of(text, shown_start());
    entry_.place_caret(start, characters_of(text, shown_start() + shown_length()) - start);
}

void EntryView::caret_moved() {
    // In the midst of an editing the text is another one, and its end brings the caret along.
    if (hears_user() && shown_text() == to_qt(entry_.text())) tell_caret();
}

bool EntryView::passes(int key) {
    caret_moved();
    const int go_on = entry_.offer_key(key);
    if (binder().parted() || go_on == 0) return false;
    if (go_on == key) return true;
    if (go_on >= ' ') { // the filter has put another character in its place
        std::string character;
        utf8::append(character, static_cast<char32_t>(go_on));
        entry_.paste(character);
    }
    return false;
}

bool EntryView::key_pressed(QKeyEvent& event) {
    const int code = key_code(event);
    return code != 0 && !passes(code);
}

bool EntryView::text_composed(QInputMethodEvent& event) {
    if (event.commitString().isEmpty()) return false;
    const auto characters = event.commitString().toUcs4();
    QString accepted;
    for (const char32_t character : characters) {
        if (passes(static_cast<int>(character))) accepted += QString::fromUcs4(&character, 1);
        if (binder().parted()) return true;
    }
    event.setCommitString(accepted, event.replacementStart(), event.replacementLength());
    return false;
}

QString EntryView::fitted(const QString& text, int& caret) const {
    // What was put in ends at the caret; it starts where the old text and the new one part.
    const QString before = to_qt(entry_.text());
    const QString tail = text.mid(caret);
    int start = 0;
    const int furthest =
        std::min(caret, static_cast<int>(before.size() - std::min(before.size(), tail.size())));
    while (start < furthest && before.at(start) == text.at(start)) ++start;
    QString put_in = text.mid(start, caret - start);
    if (!takes_lines_) put_in = to_qt(one_line(from_qt(put_in)));
    const std::size_t limit = entry_.max_length();
    const std::size_t kept = characters_of(text, start) + characters_of(tail, static_cast<int>(tail.size()));
    const std::size_t length = characters_of(put_in, static_cast<int>(put_in.size()));
    if (limit > 0 && kept + length > limit)
        put_in = put_in.left(units_of(put_in, limit > kept ? limit - kept : 0));
    caret = start + static_cast<int>(put_in.size());
    return text.left(start) + put_in + tail;
}

void EntryView::listen_to(QLineEdit& line) {
    // The longest text is a matter of the control: it stops the user and not the program.
    line.setMaxLength(std::numeric_limits<int>::max());
    QObject::connect(&line, &QLineEdit::textEdited, &binder(), [this] { edited(); });
    QObject::connect(&line, &QLineEdit::cursorPositionChanged, &binder(), [this] { caret_moved(); });
    QObject::connect(&line, &QLineEdit::selectionChanged, &binder(), [this] { caret_moved(); });
}

int start_in(const QLineEdit& line) {
    return line.hasSelectedText() ? line.selectionStart() : line.cursorPosition();
}

void select_in(QLineEdit& line, int start, int length) {
    if (length == 0) line.setCursorPosition(start);
    if (length == 0) line.deselect();
    if (length > 0) line.setSelection(start, length);
}

void EntryView::edited() {
    by_user(
        [this] {
            int place = caret();
            const QString text = fitted(shown_text(), place);
            entry_.edit(from_qt(text), characters_of(text, place)); // may refuse it, or the form change it
        },
        Aspect::text);
}

namespace {

/// A text box of one line.
class LineView final : public EntryView {
public:
    LineView(WindowBinder& binder, TextEntry& entry, QLineEdit& line)
        : EntryView(binder, entry, line), line_(line) {
        listen_to(line_);
    }

private:
    QString shown_text() const override { return line_.text(); }
    void show_text(const QString& text) override { line_.setText(text); }
    void show_locked(bool locked) override { line_.setReadOnly(locked); }
    int shown_start() const override { return start_in(line_); }
    int shown_length() const override { return line_.selectionLength(); }
    void show_selection(int start, int length) override { select_in(line_, start, length); }
    int caret() const override { return line_.cursorPosition(); }

    QLineEdit& line_;
};

/// A text box of several lines.
class AreaView final : public EntryView {
public:
    AreaView(WindowBinder& binder, TextEntry& entry, QPlainTextEdit& area)
        : EntryView(binder, entry, area), area_(area) {
        area_.setTabChangesFocus(true);
        area_.document()->setDocumentMargin(2); // as near to the edge as the text of a box of one line
        // Without scroll bars it looks like a box of one line, whatever stands in it.
        const bool one_line = area_.verticalScrollBarPolicy() == Qt::ScrollBarAlwaysOff;
        if (one_line) area_.setFixedHeight(QLineEdit().sizeHint().height());
        takes_lines_ = !one_line;
        QObject::connect(&area_, &QPlainTextEdit::textChanged, &binder, [this] { edited(); });
        QObject::connect(&area_, &QPlainTextEdit::cursorPositionChanged, &binder, [this] { caret_moved(); });
        QObject::connect(&area_, &QPlainTextEdit::selectionChanged, &binder, [this] { caret_moved(); });
    }

    bool key_pressed(QKeyEvent& event) override {
        // Enter alone moves on.
        if (!is_enter(event) || event.modifiers() != Qt::ControlModifier || !takes_lines_)
            return EntryView::key_pressed(event);
        if (!area_.isReadOnly()) area_.insertPlainText(QStringLiteral("\n"));
        return true;
    }

private:
    QString shown_text() const override { return area_.toPlainText(); }
    void show_text(const QString& text) override { area_.setPlainText(text); }
    void show_locked(bool locked) override {
        area_.setReadOnly(locked);
        // A text that cannot be changed still has a caret, to read and copy with the keyboard.
        if (locked) area_.setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    }
    int shown_start() const override { return area_.textCursor().selectionStart(); }
    int shown_length() const override {
        const QTextCursor cursor = area_.textCursor();
        return cursor.selectionEnd() - cursor.selectionStart();
    }
    void show_selection(int start, int length) override {
        QTextCursor cursor = area_.textCursor();
        cursor.setPosition(start);
        cursor.setPosition(start + length, QTextCursor::KeepAnchor);
        area_.setTextCursor(cursor);
    }
    int caret() const override { return area_.textCursor().position(); }

    QPlainTextEdit& area_;
};

} // namespace

std::unique_ptr<WidgetView> make_text_view(WindowBinder& binder, Control& control, QObject& widget) {
    static constexpr MakeView makers[] = {
        make_if_fits<LineView, TextBox, QLineEdit>,
        make_if_fits<AreaView, TextBox, QPlainTextEdit>,
    };
    return first_that_fits(makers, binder, control, widget);
}

} // namespace tarvello::qt
