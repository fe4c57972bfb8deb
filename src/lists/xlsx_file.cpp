#include "lists/xlsx_file.h"

#include "failure.h"
#include "lists/cell_value.h"
#include "text/utf8.h"

#include <algorithm>
#include <array>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>
#include <xlsxwriter.h>

namespace tarvello::lists {
namespace {

Failure not_made(const std::string& why) {
    return Failure(failure_number::file_access, "Esportazione",
                   "Il foglio di calcolo non si può creare: " + why);
}

constexpr const char* no_memory = "non c'è memoria.";

/// A file in memory, for a library that writes to a path.
class MemoryFile {
public:
    MemoryFile() : descriptor_(memfd_create("tarvello.xlsx", MFD_CLOEXEC)) {
        if (descriptor_ < 0) throw not_made(no_memory);
    }
    ~MemoryFile() { close(descriptor_); }
    MemoryFile(const MemoryFile&) = delete;
    MemoryFile& operator=(const MemoryFile&) = delete;

    std::string path() const { return "/proc/self/fd/" + std::to_string(descriptor_); }

    std::string bytes() const {
        struct stat facts {};
        if (fstat(descriptor_, &facts) != 0) throw not_made(no_memory);
        std::string bytes(static_cast<std::size_t>(facts.st_size), '\0');
        std::size_t read = 0;
        while (read < bytes.size()) {
            const ssize_t count =
                pread(descriptor_, bytes.data() + read, bytes.size() - read, static_cast<off_t>(read));
            if (count <= 0) throw not_made(no_memory);
            read += static_cast<std::size_t>(count);
        }
        return bytes;
    }

private:
    int descriptor_;
};

/// Up to 31 characters, without those that the name of a sheet may not have.
std::string sheet_name(std::string_view title) {
    std::string name(title);
    std::erase_if(name,
                  [](char c) { return std::string_view("[]:*?/\\'").find(c) != std::string_view::npos; });
    constexpr std::size_t longest = 31;
    return utf8::left(name, longest);
}

class Writer {
public:
    Writer(lxw_workbook* book, const Table& table, std::string_view title, const RegionalSettings& regional)
        : table_(table), regional_(regional), sheet_(workbook_add_worksheet(book, sheet_name(title).c_str())),
          widths_(table.columns.size()) {
        bold_ = workbook_add_format(book);
        format_set_bold(bold_);
        for (const auto& column : table.columns) formats_.push_back(format_for(book, column.kind));
    }

    bool write() {
        if (!sheet_) return false;
        for (std::size_t column = 0; column < table_.columns.size(); ++column) {
            write_text(0, column, table_.columns[column].header, bold_);
        }
        for (std::size_t row = 0; row < table_.rows; ++row) {
            for (std::size_t column = 0; column < table_.columns.size(); ++column) write_cell(row, column);
        }
        arrange();
        return !failed_;
    }

private:
    static lxw_format* format_for(lxw_workbook* book, ColumnKind kind) {
        // Formats are written as in English; a spreadsheet shows them as the user's country does.
        const char* const text = kind == ColumnKind::amount ? "\"€\" #,##0.00;-\"€\" #,##0.00"
                                 : kind == ColumnKind::date ? "dd/mm/yyyy"
                                                            : nullptr;
        if (!text) return nullptr;
        lxw_format* const format = workbook_add_format(book);
        format_set_num_format(format, text);
        return format;
    }

    void write_cell(std::size_t row, std::size_t column) {
        const std::string_view text = table_.text(row, column);
        const CellValue value = cell_value(text, table_.columns[column].kind, regional_);
        widths_[column] = std::max(widths_[column], utf8::length(text));
        const auto line = static_cast<lxw_row_t>(row + 1);
        const auto place = static_cast<lxw_col_t>(column);
        if (const auto* number = std::get_if<double>(&value)) {
            check(worksheet_write_number(sheet_, line, place, *number, formats_[column]));
        } else if (const auto* date = std::get_if<Date>(&value); date && year_of(*date) >= 1900) {
            lxw_datetime day{
                year_of(*date), static_cast<int>(month_of(*date)), static_cast<int>(day_of(*date)), 0, 0, 0};
            check(worksheet_write_datetime(sheet_, line, place, &day, formats_[column]));
        } else if (!std::holds_alternative<std::monostate>(value)) {
            write_text(line, column, text, nullptr);
        }
    }

    void write_text(lxw_row_t row, std::size_t column, std::string_view text, lxw_format* format) {
        constexpr std::size_t longest = 32767; // characters in a cell
        widths_[column] = std::max(widths_[column], utf8::length(text));
        check(worksheet_write_string(sheet_, row, static_cast<lxw_col_t>(column),
                                     utf8::left(text, longest).c_str(), format));
    }

    void arrange() {
        for (std::size_t column = 0; column < widths_.size(); ++column) {
            constexpr std::size_t widest = 60;
            constexpr std::size_t margin = 3; // for the button of the filter
            const auto place = static_cast<lxw_col_t>(column);
            const auto width = static_cast<double>(std::min(widths_[column], widest) + margin);
            check(worksheet_set_column(sheet_, place, place, width, nullptr));
        }
        worksheet_freeze_panes(sheet_, 1, 0);
        if (!widths_.empty() && table_.rows > 0) {
            check(worksheet_autofilter(sheet_, 0, 0, static_cast<lxw_row_t>(table_.rows),
                                       static_cast<lxw_col_t>(widths_.size() - 1)));
        }
    }

    void check(lxw_error error) { failed_ = failed_ || error != LXW_NO_ERROR; }

    const Table& table_;
    const RegionalSettings& regional_;
    lxw_worksheet* sheet_;
    lxw_format* bold_ = nullptr;
    std::vector<lxw_format*> formats_; // by column
    std::vector<std::size_t> widths_;  // in characters, by column
    bool failed_ = false;
};

} // namespace

std::string xlsx_file(const Table& table, std::string_view title, const RegionalSettings& regional) {
    constexpr std::size_t most_rows = 1'048'575; // and the headers
    if (table.rows > most_rows)
        throw not_made("ha più righe di quante ne tiene un foglio, esportare in .csv.");
    const MemoryFile file;
    lxw_workbook_options options{};
    options.constant_memory = LXW_TRUE;
    lxw_workbook* const book = workbook_new_opt(file.path().c_str(), &options);
    const bool written = book && Writer(book, table, title, regional).write();
    // Frees the book whatever happened.
    const bool closed = book && workbook_close(book) == LXW_NO_ERROR;
    if (!written || !closed) throw not_made("forse il disco è pieno.");
    return file.bytes();
}

} // namespace tarvello::lists
