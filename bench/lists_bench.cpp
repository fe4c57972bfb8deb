// What lists share: the order of rows, narrowing, export.

#include "row.h"

#include "lists/cell_value.h"
#include "lists/letters.h"
#include "lists/narrowing.h"
#include "lists/row_order.h"
#include "lists/xlsx_file.h"
#include "text/currency.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <numeric>
#include <random>
#include <string>
#include <unistd.h>
#include <vector>
#include <xlsxwriter.h>

namespace tarvello::bench {
namespace {

const RegionalSettings italian;

constexpr std::size_t columns = 5;

/// A register of invoices as it is shown.
struct Register {
    explicit Register(std::size_t count) {
        const char* const surnames[] = {"Rossi",  "D'Angelo", "De Luca", "Bianchi",
                                        "Müller", "Nicolò",   "Zamboni", "Alò"};
        const char* const names[] = {"Mario", "Maria Teresa", "Niccolò", "Anna", "Jürgen", "Giosuè", "Ugo"};
        std::mt19937 random(7); // NOLINT: the same rows each time
        cells.reserve(count * columns);
        for (std::size_t i = 0; i < count; ++i) {
            const auto day =
                std::chrono::sys_days(make_date(2010, 1, 1)) + std::chrono::days(random() % 6000);
            cells.push_back(std::to_string(random() % 1000));
            cells.push_back(short_date_text(Date(day), italian));
            cells.push_back(std::string(surnames[random() % 8]) + " " + names[random() % 7] + " " +
                            std::to_string(random() % 10'000));
            cells.push_back("Via dell'Orso, " + std::to_string(random() % 200));
            cells.push_back(currency_text(static_cast<double>(random() % 1'000'000) / 100, italian));
        }
        using lists::ColumnKind;
        table = {{{"Numero", ColumnKind::number},
                  {"Data", ColumnKind::date},
                  {"Cliente", ColumnKind::text},
                  {"Indirizzo", ColumnKind::text},
                  {"Totale", ColumnKind::amount}},
                 count,
                 [this](std::size_t row, std::size_t column) {
                     return std::string_view(cells[row * columns + column]);
                 }};
    }

    std::vector<std::string> cells;
    lists::Table table;
};

const Register& invoices() {
    static const Register all(100'000);
    return all;
}

template <std::size_t Column>
void sort_rows(benchmark::State& state) {
    const lists::Table& table = invoices().table;
    for (auto _ : state) benchmark::DoNotOptimize(lists::sorted_rows(table, {Column, false}, italian));
}

/// std::stable_sort of the keys, which are there already.
template <typename Key>
void sort_keys(benchmark::State& state, const std::vector<Key>& keys) {
    for (auto _ : state) {
        std::vector<std::size_t> rows(keys.size());
        std::iota(rows.begin(), rows.end(), std::size_t{0});
        std::stable_sort(rows.begin(), rows.end(),
                         [&](std::size_t a, std::size_t b) { return keys[a] < keys[b]; });
        benchmark::DoNotOptimize(rows);
    }
}

void sort_text_keys(benchmark::State& state) {
    std::vector<std::string> keys;
    for (std::size_t row = 0; row < invoices().table.rows; ++row) {
        lists::append_order_key(keys.emplace_back(), invoices().table.text(row, 2));
    }
    sort_keys(state, keys);
}

template <std::size_t Column>
void sort_values(benchmark::State& state) {
    std::vector<lists::CellValue> keys;
    for (std::size_t row = 0; row < invoices().table.rows; ++row) {
        keys.push_back(lists::cell_value(invoices().table.text(row, Column),
                                         invoices().table.columns[Column].kind, italian));
    }
    sort_keys(state, keys);
}

void narrow(benchmark::State& state) {
    const Register customers(10'000);
    const lists::Narrowing narrowing(customers.table);
    for (auto _ : state) benchmark::DoNotOptimize(narrowing.rows("niccolo orso"));
}

void xlsx(benchmark::State& state) {
    for (auto _ : state) benchmark::DoNotOptimize(lists::xlsx_file(invoices().table, "Fatture", italian));
}

/// The library fed from memory, with values that are there already, as it writes fastest.
void xlsx_library(benchmark::State& state) {
    std::vector<lists::CellValue> values;
    const lists::Table& table = invoices().table;
    for (std::size_t row = 0; row < table.rows; ++row) {
        for (std::size_t column = 0; column < columns; ++column) {
            values.push_back(lists::cell_value(table.text(row, column), table.columns[column].kind, italian));
        }
    }
    const std::string path = "/dev/shm/tarvello-bench-" + std::to_string(getpid()) + ".xlsx";
    for (auto _ : state) {
        lxw_workbook_options options{};
        options.constant_memory = LXW_TRUE;
        lxw_workbook* const book = workbook_new_opt(path.c_str(), &options);
        lxw_worksheet* const sheet = workbook_add_worksheet(book, "Fatture");
        lxw_format* const days = workbook_add_format(book);
        format_set_num_format(days, "dd/mm/yyyy");
        for (std::size_t i = 0; i < values.size(); ++i) {
            const auto row = static_cast<lxw_row_t>(i / columns + 1);
            const auto column = static_cast<lxw_col_t>(i % columns);
            if (const auto* number = std::get_if<double>(&values[i])) {
                worksheet_write_number(sheet, row, column, *number, nullptr);
            } else if (const auto* date = std::get_if<Date>(&values[i])) {
                lxw_datetime day{year_of(*date),
                                 static_cast<int>(month_of(*date)),
                                 static_cast<int>(day_of(*date)),
                                 0,
                                 0,
                                 0};
                worksheet_write_datetime(sheet, row, column, &day, days);
            } else if (const auto* text = std::get_if<std::string_view>(&values[i])) {
                worksheet_write_string(sheet, row, column, text->data(), nullptr); // cells end with a null
            }
        }
        if (workbook_close(book) != LXW_NO_ERROR) std::abort();
    }
    std::remove(path.c_str());
}

const bool registered = [] {
    row("register of 100,000 rows sorted by a text", sort_rows<2>, sort_text_keys, 2);
    row("register of 100,000 rows sorted by a date", sort_rows<1>, sort_values<1>, 2);
    row("register of 100,000 rows sorted by an amount", sort_rows<4>, sort_values<4>, 2);
    row_within("narrowing of 10,000 customers at a key", narrow, 5000);
    row(".xlsx of 100,000 rows", xlsx, xlsx_library, 1.3);
    return true;
}();

} // namespace
} // namespace tarvello::bench
