#include "platform/date_picker.h"
#include "platform/qt/keyboard.h"
#include "platform/qt/qt_text.h"
#include "platform/qt/views.h"

#include <QDateEdit>
#include <QKeyEvent>
#include <QLineEdit>

namespace tarvello::qt {

namespace {

/// A date that is typed or picked from a calendar. While it is being typed the form hears nothing: the date
/// counts when the field is left, on Enter, and at once when it comes from the calendar or the arrows.
class DateView final : public WidgetView {
public:
    DateView(WindowBinder& binder, DatePicker& picker, QDateEdit& edit)
        : WidgetView(binder, picker, edit, {Aspect::value}), picker_(picker), edit_(edit) {
        edit_.setKeyboardTracking(false);
        edit_.setCalendarPopup(true);
        edit_.setDateRange(QDate(100, 1, 1), QDate(9999, 12, 31));
        edit_.setDisplayFormat(to_qt(binder.regional().short_date));
        QObject::connect(&edit_, &QDateEdit::dateChanged, &binder, [this] { changed(); });
    }

    bool rolls() const override { return true; }

    void commit() override {
        edit_.interpretText();
        leaving_ = false;
        hand_over();
    }

    bool key_pressed(QKeyEvent& event) override {
        int code = key_code(event);
        if (code == 0) return false;
        if (takes_separator(code)) return true;
        picker_.form().host().run([&] { FormLife::preview(picker_.form(), picker_, code); });
        if (code == keys::enter && !binder().parted()) commit();
        return binder().parted() || code == 0;
    }

    bool other_event(QObject& watched, QEvent& event) override {
        // Leaving it, the toolkit reports the typed date before the next control is reached: it waits for
        // commit(), so that a box which the form shows does not come in the midst of the change of the focus.
        if (&watched == &edit_ && event.type() == QEvent::FocusOut) leaving_ = true;
        if (&watched == &edit_ && event.type() == QEvent::FocusIn) {
            leaving_ = false;
            typed_section_ = -1;
        }
        if (event.type() == QEvent::MouseButtonRelease) {
            // What is typed takes the place of the day, month or year that was clicked.
            QMetaObject::invokeMethod(
                &edit_, [this] { edit_.setSelectedSection(edit_.currentSection()); }, Qt::QueuedConnection);
        }
        return false;
    }

protected:
    void show(Aspect aspect) override {
        if (aspect != Aspect::value) return WidgetView::show(aspect);
        const Date& date = picker_.date();
        edit_.setDate(QDate(year_of(date), static_cast<int>(month_of(date)), static_cast<int>(day_of(date))));
    }

private:
    /// The field moves on by itself when a day, month or year is full. Who then types the separator all the
    /// same means that very step and not another one.
    bool takes_separator(int code) {
        if (code >= '0' && code <= '9') {
            const auto* line = edit_.findChild<QLineEdit*>();
            if (line && line->selectedText() == line->text()) edit_.setSelectedSection(edit_.sectionAt(0));
            typed_section_ = edit_.currentSectionIndex();
            return false;
        }
        if (code != '/' && code != '-' && code != '.') return false;
        const int section = edit_.currentSectionIndex();
        const bool spent = typed_section_ >= 0 && section == typed_section_ + 1;
        typed_section_ = -1;
        if (!spent && section + 1 < edit_.sectionCount())
            edit_.setSelectedSection(edit_.sectionAt(section + 1));
        return true;
    }

    void changed() {
        if (!leaving_) hand_over();
    }

    void hand_over() {
        const QDate date = edit_.date();
        const Date picked =
            make_date(date.year(), static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()));
        if (picked != picker_.date()) by_user([&] { picker_.pick(picked); }, Aspect::value);
    }

    DatePicker& picker_;
    QDateEdit& edit_;
    bool leaving_ = false;
    int typed_section_ = -1; // where the last digit went; -1 after a separator
};

} // namespace

std::unique_ptr<WidgetView> make_date_view(WindowBinder& binder, Control& control, QObject& widget) {
    return make_if_fits<DateView, DatePicker, QDateEdit>(binder, control, widget);
}

} // namespace tarvello::qt
