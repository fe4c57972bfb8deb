#include "platform/qt/qt_text.h"
#include "platform/qt/text_views.h"
#include "platform/qt/views.h"

#include <QComboBox>
#include <QKeyEvent>
#include <QLineEdit>

namespace tarvello::qt {

namespace {

class ComboView final : public EntryView {
public:
    ComboView(WindowBinder& binder, ComboBox& combo, QComboBox& box)
        : EntryView(binder, combo, box, {Aspect::items, Aspect::text, Aspect::locked}), combo_(combo),
          box_(box) {
        box_.setEditable(!combo_.list_only());
        box_.setInsertPolicy(QComboBox::NoInsert);
        if (QLineEdit* line = box_.lineEdit()) {
            box_.setCompleter(nullptr); // it would write more than the user has typed
            // The toolkit would report a typed text that happens to stand in the list as chosen.
            QObject::disconnect(line, &QLineEdit::editingFinished, &box_, nullptr);
            listen_to(*line);
        }
        QObject::connect(&box_, &QComboBox::activated, &binder,
                         [this](int index) { by_user([&] { combo_.choose(index); }, Aspect::value); });
    }

    bool rolls() const override { return true; }

protected:
    void show(Aspect aspect) override {
        switch (aspect) {
        case Aspect::items:
            show_items();
            break;
        case Aspect::value:
            show_text(to_qt(combo_.text()));
            break;
        default:
            EntryView::show(aspect);
        }
    }

private:
    void show_items() {
        const auto& items = combo_.items();
        // Items are mostly added one by one at the end.
        if (box_.count() > static_cast<int>(items.size())) box_.clear();
        for (int i = 0; i < box_.count(); ++i) box_.setItemText(i, to_qt(items[static_cast<std::size_t>(i)]));
        for (std::size_t i = static_cast<std::size_t>(box_.count()); i < items.size(); ++i)
            box_.addItem(to_qt(items[i]));
        show_text(to_qt(combo_.text()));
    }

    QString shown_text() const override {
        return box_.isEditable() || box_.currentIndex() >= 0 ? box_.currentText() : box_.placeholderText();
    }
    void show_text(const QString& text) override {
        box_.setCurrentIndex(combo_.list_index());
        if (box_.isEditable()) {
            if (box_.lineEdit()->text() != text) box_.setEditText(text);
        } else if (combo_.list_index() < 0) {
            box_.setPlaceholderText(text); // a text that is not in the list, set by the program
        }
    }
    void show_locked(bool locked) override {
        if (box_.lineEdit()) box_.lineEdit()->setReadOnly(locked);
    }
    int shown_start() const override { return box_.lineEdit() ? start_in(*box_.lineEdit()) : 0; }
    int shown_length() const override { return box_.lineEdit() ? box_.lineEdit()->selectionLength() : 0; }
    void show_selection(int start, int length) override {
        if (box_.lineEdit()) select_in(*box_.lineEdit(), start, length);
    }
    int caret() const override { return box_.lineEdit() ? box_.lineEdit()->cursorPosition() : 0; }

    ComboBox& combo_;
    QComboBox& box_;
};

} // namespace

std::unique_ptr<WidgetView> make_combo_view(WindowBinder& binder, Control& control, QObject& widget) {
    return make_if_fits<ComboView, ComboBox, QComboBox>(binder, control, widget);
}

} // namespace tarvello::qt
