#pragma once

#include "platform/entries.h"
#include "platform/qt/widget_view.h"

#include <QString>

class QLineEdit;

namespace tarvello::qt {

/// What line edits, text areas and editable combo boxes share: keys go through the control's filters first,
/// the widget does the editing, the control has the last word on the outcome.
class EntryView : public WidgetView {
public:
    EntryView(WindowBinder& binder, TextEntry& entry, QObject& widget,
              std::initializer_list<Aspect> own = {Aspect::text, Aspect::locked})
        : WidgetView(binder, entry, widget, own), entry_(entry) {}

    bool key_pressed(QKeyEvent& event) override;
    bool text_composed(QInputMethodEvent& event) override;
    void focus_settled() override;

protected:
    virtual QString shown_text() const = 0;
    virtual void show_text(const QString& text) = 0;
    virtual void show_locked(bool locked) = 0;
    /// The caret is the start of the selection. In UTF-16 units.
    virtual int shown_start() const = 0;
    virtual int shown_length() const = 0;
    virtual void show_selection(int start, int length) = 0;
    /// Where the caret stands after the user's editing.
    virtual int caret() const = 0;

    void show(Aspect aspect) override;
    /// Hears what the user does in a line that edits the text.
    void listen_to(QLineEdit& line);
    /// The user has changed the text of the widget.
    void edited();
    /// The user has moved the caret or selected.
    void caret_moved();
    TextEntry& entry() const { return entry_; }

    bool takes_lines_ = false; // line breaks may be entered

private:
    void show_selection_of_control();
    /// Tells the control where the caret of the widget stands.
    void tell_caret();
    /// Offers one key. @return true if the widget goes on with it
    bool passes(int key);
    /// The user's text as the box takes it: what was put in comes in one line and loses its end where it is
    /// too long, what was there stays.
    QString fitted(const QString& text, int& caret) const;

    TextEntry& entry_;
    bool selected_by_code_ = false; // since the focus arrived
};

/// The start of the selection of a line, or else its caret.
int start_in(const QLineEdit& line);
void select_in(QLineEdit& line, int start, int length);

} // namespace tarvello::qt
