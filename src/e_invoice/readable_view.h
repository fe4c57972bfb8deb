#pragma once

#include <string>
#include <string_view>
#include <vector>

/// An electronic invoice as its addressee sees it: made from the file itself, not from what it was made of.
namespace tarvello::e_invoice {

struct ViewRow {
    std::string label;
    std::string value;
};

struct ViewColumn {
    std::string header;
    bool amount = false; ///< right-aligned
};

struct ViewSection {
    std::string title;
    std::vector<ViewRow> rows;
    // A table below the rows; without columns there is none.
    std::vector<ViewColumn> columns;
    std::vector<std::vector<std::string>> lines;
};

struct ReadableView {
    std::string title; ///< "Parcella (TD06) n. 7/2026 del 10/03/2026"
    std::vector<ViewSection> sections;
};

/// @throws Failure if the XML is no electronic invoice
ReadableView readable_view(std::string_view xml);

/// The view as simple HTML: headings, paragraphs and tables, as a text view or a printed page takes it.
std::string to_html(const ReadableView& view);

/// A text as HTML shows it.
std::string html_text(std::string_view text);

} // namespace tarvello::e_invoice
