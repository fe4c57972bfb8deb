#pragma once

#include "platform/control.h"
#include "platform/twips.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

/// The controls that show many rows of texts.
namespace tarvello {

/// The texts of a list, kept close together: a hundred thousand rows cost little more than their characters.
class ListRows {
public:
    std::size_t size() const { return row_starts_.size(); }
    /// The cell, or an empty text where the row is shorter.
    std::string_view cell(std::size_t row, std::size_t column) const;
    std::size_t cells_in(std::size_t row) const;
    /// Starts a new row.
    void begin_row() { row_starts_.push_back(cell_ends_.size()); }
    /// Adds a cell at the end of the last row.
    void add_cell(std::string_view text);
    void clear();

private:
    std::string characters_;
    std::vector<std::uint32_t> cell_ends_;
    std::vector<std::size_t> row_starts_;
};

/// A plain list of texts, one of which can be chosen: a list box, or the files of a folder.
class ListBox : public Control {
public:
    using Control::Control;

    const std::vector<std::string>& items() const { return items_; }
    void set_items(std::vector<std::string> items);
    /// The chosen item, -1 for none.
    int list_index() const { return list_index_; }
    /// Chooses an item and raises on_click if it is another one.
    /// @throws Failure if there is no such item
    void set_list_index(int index);
    /// The chosen text; empty if none is.
    std::string text() const;
    bool takes_focus() const override { return true; }

    /// An item has been chosen, or clicked again.
    Event on_click;

    /// An item has been opened.
    Event on_double_click;

    // User acts.
    /// Clicks an item, or moves to it with the keyboard.
    void choose(int index);
    /// Takes the choice away.
    void deselect();
    /// Double click, or Enter, on an item.
    void double_click(int index);

private:
    std::vector<std::string> items_;
    int list_index_ = -1;
};

struct ListColumn {
    std::string header;
    std::string key;
    bool right_aligned = false;
    int width = twips_per_inch; ///< twips
};

/// A list in report view: rows of texts under headers, one of which can be selected.
class ListView : public Control {
public:
    using Control::Control;

    const std::vector<ListColumn>& columns() const { return columns_; }
    void add_column(ListColumn column);
    void set_header(std::size_t column, std::string header);

    const ListRows& rows() const { return rows_; }
    /// Fills without a word to the screen; call rows_added() when all are in.
    ListRows& fill() { return rows_; }
    void rows_added();
    void add_row(std::span<const std::string> cells);
    void clear();

    /// The selected row, from 0; none at the start.
    std::optional<std::size_t> selected() const { return selected_; }
    void set_selected(std::optional<std::size_t> row);
    bool takes_focus() const override { return true; }

    /// The user has clicked a row, or moved to it with the keyboard.
    Event on_item_click;
    Event on_double_click;
    /// Files were dropped on the list; without it none can be.
    std::function<void(const std::vector<std::string>& paths)> on_files_dropped;

    // User acts.
    void drop_files(const std::vector<std::string>& paths);
    void select_row(std::size_t row);
    /// Takes the selection away.
    void deselect();
    /// Double click, or Enter, on a row.
    void double_click(std::size_t row);

private:
    std::vector<ListColumn> columns_;
    ListRows rows_;
    std::optional<std::size_t> selected_;
};

} // namespace tarvello
