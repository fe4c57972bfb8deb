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
        QObject::connect(&view_, &QListWidget::itemClicked, &binder,
                         [this](QListWidgetItem* item) { clicked(view_.row(item)); });
        QObject::connect(&view_, &QListWidget::itemDoubleClicked, &binder,
                         [this](QListWidgetItem* item) { opened(view_.row(item)); });
    }

    bool key_pressed(QKeyEvent& event) override {
        if (is_enter(event)) {
            if (view_.currentRow() >= 0) opened(view_.currentRow());
            return true;
        }
        // The focus has marked the first row when it came. Nobody has chosen it yet: the first key begins
        // there.
        if (list_.list_index() < 0) view_.setCurrentRow(-1);
        const int before = view_.currentRow();
        static_cast<QObject&>(view_).event(&event);
        if (view_.currentRow() >= 0 && view_.currentRow() != before) clicked(view_.currentRow());
        return true; // the list has had it
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
            break;
        default:
            WidgetView::show(aspect);
        }
    }

private:
    void clicked(int row) {
        by_user([&] { list_.choose(row); }, Aspect::value);
    }

    void opened(int row) {
        by_user([&] { list_.double_click(row); }, Aspect::value);
    }

    ListBox& list_;
    QListWidget& view_;
};

} // namespace

std::unique_ptr<WidgetView> make_list_box_view(WindowBinder& binder, Control& control, QObject& widget) {
    return make_if_fits<ItemsView, ListBox, QListWidget>(binder, control, widget);
}

} // namespace tarvello::qt
