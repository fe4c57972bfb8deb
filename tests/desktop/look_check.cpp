#include "desktop/look_check.h"

#include "platform/qt/look.h"
#include "platform/qt/qt_text.h"

#include <QAbstractButton>
#include <QAbstractScrollArea>
#include <QAccessible>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QHeaderView>
#include <QImage>
#include <QLabel>
#include <QLineEdit>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QStyle>
#include <QStyleOptionComboBox>
#include <QStyleOptionFrame>
#include <QStyleOptionGroupBox>
#include <QTabBar>
#include <QTextBlock>
#include <QToolButton>

#include <algorithm>
#include <cmath>
#include <map>
#include <utility>

namespace tarvello::testing {

using qt::from_qt;

namespace {

/// Of the smallest screen that the program is made for, without the title of the window.
constexpr QSize smallest_screen(1366, 744);
/// What WCAG 2.1 asks of texts, and of parts that are out of use but still to be made out.
constexpr double readable = 4.5;
constexpr double recognizable = 3;

/// A text on the screen: whose, where in the widget, and how much room it asks for.
struct ShownText {
    QWidget* widget;
    QString text;
    QRect place;
    QSize needed;
};

QSize size_of(const QWidget& widget, const QString& text) {
    return widget.fontMetrics().size(Qt::TextShowMnemonic, text);
}

QRect edit_field(QComboBox& box) {
    QStyleOptionComboBox option;
    option.initFrom(&box);
    option.editable = box.isEditable();
    return box.style()->subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxEditField, &box);
}

QRect title_of(QGroupBox& group) {
    QStyleOptionGroupBox option;
    option.initFrom(&group);
    option.text = group.title();
    option.subControls = QStyle::SC_GroupBoxLabel | QStyle::SC_GroupBoxFrame;
    return group.style()->subControlRect(QStyle::CC_GroupBox, &option, QStyle::SC_GroupBoxLabel, &group);
}

class Look {
public:
    explicit Look(QWidget& window) : window_(window), picture_(window.grab().toImage()) {}

    std::vector<std::string> faults() {
        for (QWidget* widget : window_.findChildren<QWidget*>()) {
            if (is_in_view(*widget)) shown_.push_back(widget);
        }
        for (QWidget* widget : shown_) {
            check_texts(*widget);
            check_place(*widget);
            check_name(*widget);
        }
        check_overlaps();
        const QSize least = window_.minimumSizeHint().expandedTo(window_.minimumSize());
        if (least.expandedTo(smallest_screen) != smallest_screen)
            fault(window_, "needs " + text_of(least) + ", more than a small screen has");
        return faults_;
    }

private:
    static std::string text_of(const QSize& size) {
        return std::to_string(size.width()) + " x " + std::to_string(size.height());
    }

    void fault(const QWidget& widget, const std::string& what) {
        std::string name = from_qt(widget.objectName());
        if (name.empty()) name = widget.metaObject()->className();
        faults_.push_back(name + " " + what);
    }

    /// A window that lies in the main window is looked at by itself.
    bool is_in_view(const QWidget& widget) const {
        if (!widget.isVisibleTo(&window_) || widget.isWindow() || visible_part(widget).isEmpty())
            return false;
        for (const QWidget* it = &widget; it && it != &window_; it = it->parentWidget()) {
            if (qobject_cast<const QMdiSubWindow*>(it)) return false;
        }
        return true;
    }

    QRect visible_part(const QWidget& widget) const {
        QRect part(widget.mapTo(&window_, QPoint(0, 0)), widget.size());
        for (const QWidget* it = widget.parentWidget(); it; it = it->parentWidget()) {
            part &= QRect(it->mapTo(&window_, QPoint(0, 0)), it->size());
            if (it == &window_) break;
        }
        return part;
    }

    /// The texts of one widget with the room that they have.
    std::vector<ShownText> texts_of(QWidget& widget) const {
        std::vector<ShownText> texts;
        const auto add = [&](const QString& text, const QRect& place, const QSize& needed) {
            if (!text.trimmed().isEmpty()) texts.push_back({&widget, text, place, needed});
        };
        if (auto* label = qobject_cast<QLabel*>(&widget)) {
            const int height = label->wordWrap() ? label->heightForWidth(label->width()) : -1;
            add(label->text(), label->rect(),
                height >= 0 ? QSize(label->minimumSizeHint().width(), height) : label->sizeHint());
        } else if (auto* button = qobject_cast<QAbstractButton*>(&widget)) {
            const auto* tool = qobject_cast<QToolButton*>(button);
            if (tool && tool->toolButtonStyle() == Qt::ToolButtonIconOnly) return texts; // shows no words
            // The usual push button is wider than its words; a short one need not be.
            const int icon = button->icon().isNull() ? 0 : button->iconSize().width() + 4;
            const int words = size_of(*button, button->text()).width() + icon + 8;
            QSize needed = button->sizeHint();
            if (qobject_cast<QPushButton*>(button)) needed.setWidth(words);
            add(button->text(), button->rect(), needed);
        } else if (auto* group = qobject_cast<QGroupBox*>(&widget)) {
            add(group->title(), title_of(*group).intersected(group->rect()), size_of(*group, group->title()));
        } else if (auto* combo = qobject_cast<QComboBox*>(&widget)) {
            const QRect field = edit_field(*combo);
            add(combo->currentText(), field, size_of(*combo, combo->currentText()));
            for (int i = 0; i < combo->count(); ++i)
                add(combo->itemText(i), field, size_of(*combo, combo->itemText(i)));
        } else if (auto* line = qobject_cast<QLineEdit*>(&widget)) {
            QStyleOptionFrame option;
            option.initFrom(line);
            const QRect field = line->style()->subElementRect(QStyle::SE_LineEditContents, &option, line);
            const QString text = line->text().isEmpty() ? line->placeholderText() : line->text();
            // What is longer than its box can be scrolled; what the program puts there to be read cannot
            // wait.
            const bool to_be_read = line->isReadOnly() || line->text().isEmpty() || !line->isEnabled();
            add(text, field,
                QSize(to_be_read ? size_of(*line, text).width() : 0, line->fontMetrics().height()));
        } else if (auto* area = qobject_cast<QPlainTextEdit*>(&widget)) {
            add(area->toPlainText(), area->viewport()->geometry(), QSize(0, area->fontMetrics().height()));
        } else if (auto* header = qobject_cast<QHeaderView*>(&widget); header && header->model()) {
            for (int i = 0; i < header->count(); ++i) {
                const QRect place(header->sectionViewportPosition(i), 0, header->sectionSize(i),
                                  header->height());
                add(header->model()->headerData(i, header->orientation()).toString(), place,
                    QSize(header->sectionSizeHint(i), header->sizeHint().height()));
            }
        } else if (auto* bar = qobject_cast<QTabBar*>(&widget)) {
            for (int i = 0; i < bar->count(); ++i)
                add(bar->tabText(i), bar->tabRect(i).intersected(bar->rect()), bar->tabRect(i).size());
        } else if (auto* menu = qobject_cast<QMenuBar*>(&widget)) {
            for (QAction* action : menu->actions()) {
                add(action->text(), menu->actionGeometry(action), size_of(*menu, action->text()));
            }
        }
        return texts;
    }

    void check_texts(QWidget& widget) {
        for (const ShownText& shown : texts_of(widget)) {
            const std::string what = "\"" + from_qt(shown.text) + "\"";
            // Half a line of leading can go without anything being cut.
            const bool cut = shown.needed.width() > shown.place.width() + 1 ||
                             shown.needed.height() > shown.place.height() + 2;
            if (cut)
                fault(widget, what + " is cut off: needs " + text_of(shown.needed) + ", has " +
                                  text_of(shown.place.size()));
            check_contrast(shown, what);
        }
    }

    void check_contrast(const ShownText& shown, const std::string& what) {
        const QWidget& widget = *shown.widget;
        const QRect place =
            QRect(widget.mapTo(&window_, shown.place.topLeft()), shown.place.size()) & visible_part(widget);
        if (place.width() < 3 || place.height() < 3) return;
        const QLineEdit* line = qobject_cast<const QLineEdit*>(&widget);
        auto role = widget.foregroundRole();
        if (line) role = line->text().isEmpty() ? QPalette::PlaceholderText : QPalette::Text;
        const QColor ink = widget.palette().color(role);
        const double seen = contrast(ink, ground(place));
        const double wanted =
            widget.isEnabled() && role != QPalette::PlaceholderText ? readable : recognizable;
        if (seen < wanted) {
            fault(widget, what + " is faint: " + std::to_string(seen) + ", " + from_qt(ink.name()) + " on " +
                              from_qt(ground(place).name()));
        }
    }

    /// The colour of most of the dots. Grounds are drawn with a slight run: near colours count as one.
    QColor ground(const QRect& place) const {
        constexpr QRgb nearness = 0xFFF8F8F8;
        const qreal ratio = picture_.devicePixelRatio();
        const QRect dots = QRect(place.topLeft() * ratio, place.size() * ratio) & picture_.rect();
        std::map<QRgb, int> counted;
        std::pair<int, QRgb> most;
        for (int y = dots.top(); y <= dots.bottom(); ++y) {
            for (int x = dots.left(); x <= dots.right(); ++x) {
                const QRgb dot = picture_.pixel(x, y);
                most = std::max(most, {++counted[dot & nearness], dot});
            }
        }
        return most.second;
    }

    /// Nothing may be half in view, but for what can be scrolled to; and nobody has to scroll across.
    void check_place(QWidget& widget) {
        const auto* scroll = qobject_cast<QScrollArea*>(&widget);
        const bool room = window_.screen()->size().width() >= smallest_screen.width();
        if (scroll && scroll->widgetResizable() && room && is_in_view(*scroll->horizontalScrollBar()))
            fault(widget, "scrolls across");
        if (texts_of(widget).empty() && !is_leaf(widget)) return;
        for (const QWidget* around = widget.parentWidget(); around; around = around->parentWidget()) {
            const auto* area = qobject_cast<const QAbstractScrollArea*>(around->parentWidget());
            if (area && area->viewport() == around) return;
            const QRect place(widget.mapTo(around, QPoint(0, 0)), widget.size());
            if (!around->rect().adjusted(-1, -1, 1, 1).contains(place))
                return fault(widget, "sticks out of " + from_qt(around->objectName()));
            if (around == &window_) return;
        }
    }

    void check_name(QWidget& widget) {
        if (!(widget.focusPolicy() & Qt::TabFocus) || widget.focusProxy()) return;
        const QWidget* around = widget.parentWidget();
        // The edit field of a combo box and the like are told with what they belong to.
        if (qobject_cast<const QComboBox*>(around) || qobject_cast<const QAbstractSpinBox*>(around)) return;
        if (qobject_cast<const QMdiArea*>(&widget) || qobject_cast<const QScrollArea*>(&widget)) return;
        const QString name = told_name(widget);
        if (name.isEmpty() || name == widget.objectName())
            return fault(widget, "has no name for a screen reader");
        if (qobject_cast<QAbstractButton*>(&widget)) return; // two may well do the same
        if (const auto [known, is_new] = names_.emplace(name, &widget); !is_new)
            fault(widget,
                  "is told as \"" + from_qt(name) + "\" like " + from_qt(known->second->objectName()));
    }

    static QString told_name(QWidget& widget) {
        QAccessibleInterface* told = QAccessible::queryAccessibleInterface(&widget);
        if (!told) return {};
        // The toolkit gives the chosen text as the name of a combo box: what it is for, its label tells.
        if (!qobject_cast<QComboBox*>(&widget)) return told->text(QAccessible::Name).trimmed();
        const auto labels = told->relations(QAccessible::Label);
        return labels.isEmpty() ? QString() : labels.first().first->text(QAccessible::Name).trimmed();
    }

    static bool is_leaf(const QWidget& widget) {
        if (const auto* label = qobject_cast<const QLabel*>(&widget))
            return !label->text().isEmpty() || !label->pixmap(Qt::ReturnByValue).isNull();
        return qobject_cast<const QAbstractButton*>(&widget) || qobject_cast<const QLineEdit*>(&widget) ||
               qobject_cast<const QComboBox*>(&widget) || qobject_cast<const QPlainTextEdit*>(&widget) ||
               qobject_cast<const QAbstractItemView*>(&widget);
    }

    void check_overlaps() {
        std::vector<QWidget*> leaves;
        std::copy_if(shown_.begin(), shown_.end(), std::back_inserter(leaves),
                     [](auto* w) { return is_leaf(*w); });
        for (std::size_t i = 0; i < leaves.size(); ++i) {
            for (std::size_t j = i + 1; j < leaves.size(); ++j) {
                if (leaves[i]->isAncestorOf(leaves[j]) || leaves[j]->isAncestorOf(leaves[i])) continue;
                const QRect common = visible_part(*leaves[i]) & visible_part(*leaves[j]);
                if (common.width() > 1 && common.height() > 1)
                    fault(*leaves[i], "lies on " + from_qt(leaves[j]->objectName()));
            }
        }
    }

    QWidget& window_;
    QImage picture_;
    std::vector<QWidget*> shown_;
    std::map<QString, QWidget*> names_;
    std::vector<std::string> faults_;
};

} // namespace

std::vector<std::string> look_faults(QWidget& window) { return Look(window).faults(); }

double contrast(const QColor& text, const QColor& ground) {
    const auto luminance = [](const QColor& color) {
        const auto linear = [](double part) {
            return part <= 0.03928 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
        };
        return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) +
               0.0722 * linear(color.blueF());
    };
    const auto [dark, light] = std::minmax({luminance(text), luminance(ground)});
    return (light + 0.05) / (dark + 0.05);
}

void set_desktop(QApplication& application) {
    if (const int points = qEnvironmentVariableIntValue("TARVELLO_FONT"); points > 0) {
        QFont font = QApplication::font();
        font.setPointSize(points);
        QApplication::setFont(font);
    }
    if (qEnvironmentVariableIsSet("TARVELLO_DARK")) {
        QApplication::setPalette(QPalette(Qt::black));
        qt::apply_look(application);
    }
}

} // namespace tarvello::testing
