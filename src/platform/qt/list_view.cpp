#include "platform/lists.h"
#include "platform/qt/keyboard.h"
#include "platform/qt/look.h"
#include "platform/qt/qt_text.h"
#include "platform/qt/scale.h"
#include "platform/qt/views.h"

#include <QAbstractTableModel>
#include <QDropEvent>
#include <QHeaderView>
#include <QKeyEvent>
#include <QMimeData>
#include <QRegularExpression>
#include <QTreeView>
#include <QUrl>

#include <algorithm>

namespace tarvello::qt {

namespace {

/// A text whose line breaks are marks in its line.
QString in_one_row(QString text) {
    static const QRegularExpression breaks(QStringLiteral("\\s*[\\r\\n]+\\s*"));
    return text.replace(breaks, QStringLiteral(" \u21B5 "));
}

/// The rows of a list as the toolkit sees them. It holds no text of its own: a cell is read when it is drawn.
class RowsModel final : public QAbstractTableModel {
public:
    explicit RowsModel(const ListView& list) : list_(list) {}

    int rowCount(const QModelIndex& parent) const override { return parent.isValid() ? 0 : rows_; }
    int columnCount(const QModelIndex& parent) const override { return parent.isValid() ? 0 : columns_; }

    QVariant data(const QModelIndex& index, int role) const override {
        const auto row = static_cast<std::size_t>(index.row());
        const auto column = static_cast<std::size_t>(index.column());
        if (row >= list_.rows().size() || column >= list_.columns().size()) return {};
        // A row is as high as any other, whatever stands in it.
        if (role == Qt::DisplayRole) return in_one_row(to_qt(list_.rows().cell(row, column)));
        if (role == Qt::ToolTipRole) return plain_tool_tip(std::string(list_.rows().cell(row, column)));
        if (role == Qt::TextAlignmentRole) return alignment(column);
        return {};
    }

    QVariant headerData(int section, Qt::Orientation orientation, int role) const override {
        const auto column = static_cast<std::size_t>(section);
        if (orientation != Qt::Horizontal || column >= list_.columns().size()) return {};
        if (role == Qt::DisplayRole) return to_qt(list_.columns()[column].header);
        if (role == Qt::TextAlignmentRole) return alignment(column);
        return {};
    }

    void reread() {
        beginResetModel();
        rows_ = static_cast<int>(list_.rows().size());
        columns_ = static_cast<int>(list_.columns().size());
        endResetModel();
    }
    bool is_up_to_date() const {
        return rows_ == static_cast<int>(list_.rows().size()) &&
               columns_ == static_cast<int>(list_.columns().size());
    }

private:
    int alignment(std::size_t column) const {
        return int(list_.columns()[column].right_aligned ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter;
    }

    const ListView& list_;
    int rows_ = 0;
    int columns_ = 0;
};

class RowsView final : public WidgetView {
public:
    RowsView(WindowBinder& binder, ListView& list, QTreeView& view)
        : WidgetView(binder, list, view, {Aspect::items, Aspect::value}), list_(list), view_(view),
          header_(*view.header()), model_(list) {
        view_.setSelectionBehavior(QAbstractItemView::SelectRows);
        view_.setSelectionMode(QAbstractItemView::SingleSelection);
        view_.setEditTriggers(QAbstractItemView::NoEditTriggers);
        view_.setAlternatingRowColors(true);
        view_.setTabKeyNavigation(false);
        view_.setRootIsDecorated(false);
        view_.setUniformRowHeights(true); // what makes a hundred thousand rows as quick as ten
        header_.setSectionResizeMode(QHeaderView::Interactive);
        header_.setTextElideMode(Qt::ElideRight);
        header_.setStretchLastSection(true);
        view_.viewport()->setAcceptDrops(static_cast<bool>(list_.on_files_dropped));
        view_.setModel(&model_);
        // The row that is highlighted is the one that is selected, in whatever way it came to be.
        QObject::connect(view_.selectionModel(), &QItemSelectionModel::selectionChanged, &binder,
                         [this] { highlighted(); });
        QObject::connect(&view_, &QAbstractItemView::clicked, &binder, [this](const QModelIndex& index) {
            if (!press_selected_ && view_.selectionModel()->isSelected(index)) select(index.row());
        });
        QObject::connect(&view_, &QAbstractItemView::doubleClicked, &binder,
                         [this](const QModelIndex& index) { double_clicked(index.row()); });
    }

    bool key_pressed(QKeyEvent& event) override {
        if (is_enter(event)) {
            if (list_.selected()) double_clicked(static_cast<int>(*list_.selected()));
            return true;
        }
        // The focus has put a frame around the first row when it came, which nobody has chosen yet: the first
        // key begins there.
        if (!list_.selected()) show_selection();
        static_cast<QObject&>(view_).event(&event);
        return true; // the list has had it
    }

    bool other_event(QObject& watched, QEvent& event) override {
        if (event.type() == QEvent::MouseButtonPress) press_selected_ = false;
        const bool drags = event.type() == QEvent::DragEnter || event.type() == QEvent::DragMove ||
                           event.type() == QEvent::Drop;
        if (!drags || &watched != view_.viewport() || !list_.on_files_dropped) return false;
        auto& drop = static_cast<QDropEvent&>(event);
        if (!drop.mimeData()->hasUrls()) return false;
        drop.acceptProposedAction();
        if (event.type() != QEvent::Drop) return true;
        std::vector<std::string> paths;
        for (const QUrl& address : drop.mimeData()->urls()) {
            if (address.isLocalFile()) paths.push_back(from_qt(address.toLocalFile()));
        }
        by_user([&] { list_.drop_files(paths); }, Aspect::value);
        return true;
    }

    void flush() override { refresh(); }
    void part() override { view_.setModel(nullptr); }

protected:
    void show(Aspect aspect) override {
        switch (aspect) {
        case Aspect::rows:
            // Rows mostly come one after the other: the screen follows when the last is in.
            if (stale_) break;
            stale_ = true;
            QMetaObject::invokeMethod(
                &model_, [this] { refresh(); }, Qt::QueuedConnection);
            break;
        case Aspect::items:
            stale_ = true;
            refresh();
            break;
        case Aspect::value:
            show_selection();
            break;
        default:
            WidgetView::show(aspect);
        }
    }

private:
    void refresh() {
        if (!stale_ || binder().parted()) return;
        stale_ = false;
        const WindowBinder::Following following(binder());
        const bool new_columns = model_.columnCount({}) != static_cast<int>(list_.columns().size());
        model_.reread();
        if (new_columns) {
            for (std::size_t i = 0; i < list_.columns().size(); ++i) {
                const int section = static_cast<int>(i);
                // The words above a column stay whole, whatever the font of the desktop.
                header_.resizeSection(section, std::max(pixels(view_, list_.columns()[i].width),
                                                        header_.sectionSizeHint(section)));
            }
        }
        show_selection();
    }

    void show_selection() {
        if (binder().parted()) return;
        if (!model_.is_up_to_date()) {
            stale_ = true;
            return refresh();
        }
        const WindowBinder::Following following(binder());
        if (!list_.selected()) {
            view_.clearSelection();
            view_.setCurrentIndex({});
        } else if (const auto index = model_.index(static_cast<int>(*list_.selected()), 0);
                   index != view_.currentIndex() || !view_.selectionModel()->isSelected(index)) {
            view_.setCurrentIndex(index);
            view_.scrollTo(index);
        }
    }

    void highlighted() {
        if (!hears_user()) return;
        press_selected_ = true;
        const QModelIndexList rows = view_.selectionModel()->selectedRows();
        if (!rows.isEmpty()) return select(rows.first().row());
        by_user([this] { list_.deselect(); }, Aspect::value);
    }

    void select(int row) {
        by_user([&] { list_.select_row(static_cast<std::size_t>(row)); }, Aspect::value);
    }

    void double_clicked(int row) {
        by_user([&] { list_.double_click(static_cast<std::size_t>(row)); }, Aspect::value);
    }

    ListView& list_;
    QTreeView& view_;
    QHeaderView& header_;
    RowsModel model_;
    bool stale_ = false;
    bool press_selected_ = false; // the press of the mouse that is going on has selected another row
};

} // namespace

std::unique_ptr<WidgetView> make_list_view(WindowBinder& binder, Control& control, QObject& widget) {
    return make_if_fits<RowsView, ListView, QTreeView>(binder, control, widget);
}

} // namespace tarvello::qt
