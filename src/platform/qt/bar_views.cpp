#include "platform/bars.h"
#include "platform/qt/qt_text.h"
#include "platform/qt/views.h"

#include <QAction>
#include <QMenu>

namespace tarvello::qt {

namespace {

/// The bar itself: its buttons have views of their own.
class ToolbarView final : public WidgetView {
public:
    using WidgetView::WidgetView;
};

/// An entry of a menu, or a whole menu.
class MenuView final : public WidgetView {
public:
    MenuView(WindowBinder& binder, MenuItem& item, QAction& entry) : MenuView(binder, item, entry, entry) {}
    MenuView(WindowBinder& binder, MenuItem& item, QMenu& menu)
        : MenuView(binder, item, menu, *menu.menuAction()) {
        QObject::connect(&menu, &QMenu::aboutToShow, &binder, [this] { item_.open(); });
    }

protected:
    void show(Aspect aspect) override {
        switch (aspect) {
        case Aspect::caption:
            action_.setText(to_qt(item_.caption()));
            break;
        case Aspect::enabled:
            action_.setEnabled(item_.enabled());
            break;
        case Aspect::visible:
            action_.setVisible(item_.visible());
            break;
        default:
            break;
        }
    }

private:
    MenuView(WindowBinder& binder, MenuItem& item, QObject& object, QAction& action)
        : WidgetView(binder, item, object), item_(item), action_(action) {
        QObject::connect(&action_, &QAction::triggered, &binder, [this] { item_.click(); });
    }

    MenuItem& item_;
    QAction& action_;
};

} // namespace

std::unique_ptr<WidgetView> make_bar_view(WindowBinder& binder, Control& control, QObject& widget) {
    static constexpr MakeView makers[] = {
        make_if_fits<ToolbarView, Toolbar, QWidget>,
        make_if_fits<MenuView, MenuItem, QAction>,
        make_if_fits<MenuView, MenuItem, QMenu>,
    };
    return first_that_fits(makers, binder, control, widget);
}

} // namespace tarvello::qt
