#include "platform/date_picker.h"
#include "platform/qt/keyboard.h"
#include "platform/qt/pictures.h"
#include "platform/qt/qt_text.h"
#include "platform/qt/views.h"
#include "text/letter_case.h"

#include <QAction>
#include <QCalendarWidget>
#include <QFocusEvent>
#include <QFrame>
#include <QKeyEvent>
#include <QLineEdit>
#include <QScreen>
#include <QStyle>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

namespace tarvello::qt {

namespace {

QDate to_qt_date(const Date& date) {
    return {year_of(date), static_cast<int>(month_of(date)), static_cast<int>(day_of(date))};
}

Date from_qt_date(const QDate& date) {
    return make_date(date.year(), static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()));
}

/// A calendar under the field, which goes when a day has been picked, or with Escape or a click elsewhere.
/// @return the calendar; its window deletes itself when it is closed
QCalendarWidget& open_calendar(QLineEdit& field, const QDate& date) {
    auto* window = new QFrame(&field, Qt::Popup);
    window->setAttribute(Qt::WA_DeleteOnClose);
    window->setFrameShape(QFrame::StyledPanel);
    auto* calendar = new QCalendarWidget;
    calendar->setVerticalHeaderFormat(QCalendarWidget::NoVerticalHeader);
    calendar->setDateEditEnabled(false);
    calendar->setDateRange(QDate(100, 1, 1), QDate(9999, 12, 31));
    calendar->setSelectedDate(date);
    auto* layout = new QVBoxLayout(window);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(calendar);
    window->adjustSize();

    const QRect room = field.screen()->availableGeometry();
    QPoint place = field.mapToGlobal(QPoint(0, field.height()));
    if (place.y() + window->height() > room.bottom())
        place.setY(field.mapToGlobal(QPoint(0, 0)).y() - window->height());
    place.setX(std::clamp(place.x(), room.left(), std::max(room.left(), room.right() - window->width())));
    window->move(place);
    window->show();
    calendar->setFocus();
    return *calendar;
}

/// A date that is typed as one likes, or picked from a calendar. See DatePicker for when it counts.
class DateView final : public WidgetView {
public:
    DateView(WindowBinder& binder, DatePicker& picker, QLineEdit& field)
        : WidgetView(binder, picker, field, {Aspect::value}), picker_(picker), field_(field) {
        QAction* calendar = field_.addAction(picture_icon("calendario"), QLineEdit::TrailingPosition);
        calendar->setText(QStringLiteral("Calendario"));
        calendar->setToolTip(QStringLiteral("Apri il calendario (F4)"));
        const QFontMetrics metrics = field_.fontMetrics();
        const int icon = field_.style()->pixelMetric(QStyle::PM_SmallIconSize, nullptr, &field_);
        field_.setMinimumWidth(std::max(
            field_.minimumWidth(), metrics.horizontalAdvance(QStringLiteral("00/00/0000")) + 2 * icon + 8));
        QObject::connect(calendar, &QAction::triggered, &binder, [this] { show_calendar(); });
        QObject::connect(&field_, &QLineEdit::textEdited, &binder, [this] {
            by_user([this] { picker_.type(one_line(from_qt(field_.text()))); }, Aspect::value);
        });
    }

    void focus_settled() override {
        // What is typed takes the place of the whole date; a text that is half typed stays as it is.
        if (!picker_.typing()) field_.selectAll();
    }

    bool key_pressed(QKeyEvent& event) override {
        const Qt::KeyboardModifiers held = event.modifiers() & ~(Qt::KeypadModifier | Qt::ShiftModifier);
        const bool today = held ? held == Qt::ControlModifier && event.key() == Qt::Key_O
                                : event.text() == QLatin1String("+");
        if (today) return acts([this] { picker_.pick_today(); });
        if (event.key() == Qt::Key_F4 || (event.key() == Qt::Key_Down && held == Qt::AltModifier)) {
            show_calendar();
            return true;
        }
        if (held || event.modifiers() & Qt::ShiftModifier) return false;
        if (is_enter(event)) return acts([this] { picker_.press_enter(); });
        switch (event.key()) {
        case Qt::Key_Up:
            return acts([this] { picker_.step(1, 0); });
        case Qt::Key_Down:
            return acts([this] { picker_.step(-1, 0); });
        case Qt::Key_PageUp:
            return acts([this] { picker_.step(0, 1); });
        case Qt::Key_PageDown:
            return acts([this] { picker_.step(0, -1); });
        default:
            return false;
        }
    }

    bool other_event(QObject& watched, QEvent& event) override {
        if (&watched != &field_) return false;
        if (event.type() == QEvent::FocusIn) {
            arrived_by_mouse_ = static_cast<QFocusEvent&>(event).reason() == Qt::MouseFocusReason;
        }
        // The press that has brought the focus puts the caret somewhere: all is selected when it is over.
        if (event.type() == QEvent::MouseButtonRelease && std::exchange(arrived_by_mouse_, false) &&
            !field_.hasSelectedText()) {
            field_.selectAll();
        }
        return false;
    }

protected:
    void show(Aspect aspect) override {
        if (aspect != Aspect::value) return WidgetView::show(aspect);
        const QString text = to_qt(picker_.text());
        if (field_.text() == text) return;
        field_.setText(text);
        if (field_.hasFocus() && !picker_.typing()) field_.selectAll();
    }

private:
    template <typename Act>
    bool acts(Act act) {
        by_user(act, Aspect::value);
        return true;
    }

    void show_calendar() {
        if (!picker_.reachable() || !picker_.has_focus()) return;
        arrived_by_mouse_ = false;
        const auto typed = read_typed_date(picker_.text(), binder().regional());
        QCalendarWidget& calendar =
            open_calendar(field_, to_qt_date(typed && typed->ok() ? *typed : picker_.date()));
        const auto pick = [this, &calendar](const QDate& date) {
            if (!calendar.window()->close()) return;
            // The form may have a question about it: when the calendar is gone.
            QMetaObject::invokeMethod(
                &binder(), [this, date] { acts([&] { picker_.pick(from_qt_date(date)); }); },
                Qt::QueuedConnection);
        };
        QObject::connect(&calendar, &QCalendarWidget::clicked, &binder(), pick);
        QObject::connect(&calendar, &QCalendarWidget::activated, &binder(), pick);
    }

    DatePicker& picker_;
    QLineEdit& field_;
    bool arrived_by_mouse_ = false;
};

} // namespace

std::unique_ptr<WidgetView> make_date_view(WindowBinder& binder, Control& control, QObject& widget) {
    return make_if_fits<DateView, DatePicker, QLineEdit>(binder, control, widget);
}

} // namespace tarvello::qt
