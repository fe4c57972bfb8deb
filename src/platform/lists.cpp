#include "platform/lists.h"

#include "platform/list_index.h"

namespace tarvello {

std::string_view ListRows::cell(std::size_t row, std::size_t column) const {
    if (column >= cells_in(row)) return {};
    const std::size_t index = row_starts_[row] + column;
    const std::size_t start = index == 0 ? 0 : cell_ends_[index - 1];
    return std::string_view(characters_).substr(start, cell_ends_[index] - start);
}

std::size_t ListRows::cells_in(std::size_t row) const {
    const std::size_t end = row + 1 < row_starts_.size() ? row_starts_[row + 1] : cell_ends_.size();
    return end - row_starts_[row];
}

void ListRows::add_cell(std::string_view text) {
    characters_ += text;
    cell_ends_.push_back(static_cast<std::uint32_t>(characters_.size()));
}

void ListRows::clear() {
    characters_.clear();
    cell_ends_.clear();
    row_starts_.clear();
}

void ListView::add_column(ListColumn column) {
    columns_.push_back(std::move(column));
    changed(Aspect::items);
}

void ListView::set_header(std::size_t column, std::string header) {
    columns_.at(column).header = std::move(header);
    changed(Aspect::items);
}

void ListView::rows_added() { changed(Aspect::rows); }

void ListView::add_row(std::span<const std::string> cells) {
    rows_.begin_row();
    for (const std::string& cell : cells) rows_.add_cell(cell);
    changed(Aspect::rows);
}

void ListView::clear() {
    rows_.clear();
    selected_.reset();
    changed(Aspect::rows);
}

void ListView::set_selected(std::optional<std::size_t> row) {
    if (row) check_list_index(static_cast<std::ptrdiff_t>(*row), rows_.size(), "riga");
    if (selected_ == row) return;
    selected_ = row;
    changed(Aspect::value);
    if (row) raise(on_item_click);
}

void ListView::drop_files(const std::vector<std::string>& paths) {
    if (!reachable() || !on_files_dropped) return;
    act([&] { on_files_dropped(paths); });
}

void ListView::select_row(std::size_t row) {
    if (!reachable() || row >= rows_.size()) return;
    act([&] {
        if (!form().move_focus(this)) return;
        if (selected_ == row) {
            raise(on_item_click); // a click on the selected row is a click all the same
        } else {
            set_selected(row);
        }
    });
}

void ListView::deselect() {
    if (!reachable()) return;
    act([&] {
        if (form().move_focus(this)) set_selected(std::nullopt);
    });
}

void ListView::double_click(std::size_t row) {
    if (!reachable() || row >= rows_.size()) return;
    select_row(row);
    if (on_double_click) act(on_double_click);
}

void ListBox::set_items(std::vector<std::string> items) {
    items_ = std::move(items);
    list_index_ = -1;
    changed(Aspect::items);
}

void ListBox::set_list_index(int index) {
    check_list_index(index, items_.size(), "voce");
    if (list_index_ == index) return;
    list_index_ = index;
    changed(Aspect::value);
    if (index >= 0) raise(on_click);
}

std::string ListBox::text() const {
    return list_index_ < 0 ? std::string() : items_[static_cast<std::size_t>(list_index_)];
}

void ListBox::choose(int index) {
    if (!reachable() || index < 0 || index >= static_cast<int>(items_.size())) return;
    act([&] {
        if (!form().move_focus(this)) return;
        if (list_index_ == index) {
            raise(on_click); // a click on the chosen item is a click all the same
        } else {
            set_list_index(index);
        }
    });
}

void ListBox::deselect() {
    if (!reachable()) return;
    act([&] {
        if (form().move_focus(this)) set_list_index(-1);
    });
}

void ListBox::double_click(int index) {
    if (!reachable()) return;
    choose(index);
    if (on_double_click) act(on_double_click);
}

} // namespace tarvello
