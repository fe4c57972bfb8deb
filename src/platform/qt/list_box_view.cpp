#include "platform/lists.h"
#include "platform/qt/keyboard.h"
#include "platform/qt/qt_text.h"
#include "platform/qt/views.h"

#include <QKeyEvent>
#include <QListWidget>

namespace tarvello::qt {

namespace {

/// A plain list of texts.
class ItemsView final : public WidgetView {
public:
    ItemsView(WindowBinder& binder, ListBox& list, QListWidget& view)
        : WidgetView(binder, list, view, {Aspect::items}), list_(list), view_(view) {
        view_.setEditTriggers(QAbstractItemView::NoEditTriggers);
        view_.setTabKeyNavigation(false);
        // The item that is highlighted is the one that is chosen, in whatever way it came to be.
        QObject::connect(&view_, &QListWidget::itemSelectionChanged, &binder, [this] { highlighted(); });
        QObject::connect(&view_, &QListWidget::itemClicked, &binder, [this](QListWidgetItem* item) {
            if (!press_chose_ && list_.list_index() == view_.row(item)) chosen(view_.row(item));
        });
        QObject::connect(&view_, &QListWidget::itemDoubleClicked, &binder,
                         [this](QListWidgetItem* item) { opened(view_.row(item)); });
    }

    bool key_pressed(QKeyEvent& event) override {
        if (is_enter(event)) {
            if (list_.list_index() >= 0) opened(list_.list_index());
            return true;
        }
        // The focus has marked the first row when it came. Nobody has chosen it yet: the first key begins
        // there.
        if (list_.list_index() < 0) follow(list_, Aspect::value);
        static_cast<QObject&>(view_).event(&event);
        return true; // the list has had it
    }

    bool other_event(QObject&, QEvent& event) override {
        if (event.type() == QEvent::MouseButtonPress) press_chose_ = false;
        return false;
    }

protected:
    void show(Aspect aspect) override {
        switch (aspect) {
        case Aspect::items:
            view_.clear();
            for (const std::string& item : list_.items()) view_.addItem(to_qt(item));
            [[fallthrough]];
        case Aspect::value:
            view_.setCurrentRow(list_.list_index());
            if (list_.list_index() < 0) view_.clearSelection();
            break;
        default:
            WidgetView::show(aspect);
        }
    }

private:
    void highlighted() {
        if (!hears_user()) return;
        press_chose_ = true;
        const QList<QListWidgetItem*> items = view_.selectedItems();
        if (!items.isEmpty()) return chosen(view_.row(items.first()));
        by_user([this] { list_.deselect(); }, Aspect::value);
    }

    void chosen(int row) {
        by_user([&] { list_.choose(row); }, Aspect::value);
    }

    void opened(int row) {
        by_user([&] { list_.double_click(row); }, Aspect::value);
    }

    ListBox& list_;
    QListWidget& view_;
    bool press_chose_ = false; // the press of the mouse that is going on has chosen another item
};

} // namespace

std::unique_ptr<WidgetView> make_list_box_view(WindowBinder& binder, Control& control, QObject& widget) {
    return make_if_fits<ItemsView, ListBox, QListWidget>(binder, control, widget);
}

} // namespace tarvello::qt
