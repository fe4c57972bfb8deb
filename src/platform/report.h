#pragma once

#include "platform/color.h"

#include <cstdint>
#include <optional>
#include <string>
#include <variant>
#include <vector>

/// A printed page as plain data: sections one below the other, with controls at exact places. All measures
/// are twips (1440 to the inch) from the left edge of the page's print area and the top of the section.
namespace tarvello {

enum class ReportAlignment : std::uint8_t { left, right, centre };

struct ReportFont {
    std::string family;
    double points = 8.25;
    bool bold = false;
    bool italic = false;
    bool operator==(const ReportFont&) const = default;
};

struct ReportBox {
    int left = 0;
    int top = 0;
    int width = 0;
    int height = 0;
    int right() const { return left + width; }
    int bottom() const { return top + height; }
    bool operator==(const ReportBox&) const = default;
};

/// A text in a box: broken between words where it is too wide; set smaller where it would not fit whole, and
/// cut off with an ellipsis where that does not help.
struct ReportLabel {
    std::string text;
    ReportFont font;
    ReportAlignment alignment = ReportAlignment::left;
    Color color{0, 0, 0};
    /// What the text is, in words for the user; empty where the control's name says it.
    std::string subject{};
};

/// How a picture takes its box.
enum class ReportSizeMode : std::uint8_t {
    clip = 0,   ///< at its own size from the top left corner, cut off at the box
    stretch = 1 ///< to the whole box
};

struct ReportImage {
    /// A picture file; empty leaves the box blank.
    std::string path;
    ReportSizeMode size_mode = ReportSizeMode::clip;
};

struct ReportRectangle {
    Color border;
    std::optional<Color> fill;
};

/// From the top left corner of the box to the opposite one.
struct ReportLine {
    Color color;
};

struct ReportControl {
    std::string name;
    ReportBox box;
    std::variant<ReportLabel, ReportImage, ReportRectangle, ReportLine> look;
};

struct ReportSection {
    std::string name;
    int height = 0;
    /// Drawn in this order.
    std::vector<ReportControl> controls;
};

struct Report {
    std::string name;
    std::string caption;
    /// What is printed, as a name for the print job and the PDF file.
    std::string document;
    int width = 0;
    int margin = 0; ///< on all four sides
    std::vector<ReportSection> sections;

    /// The preview window.
    ReportBox window;

    /// A control, in whatever section it stands.
    /// @throws Failure if there is none of that name and kind
    ReportLabel& label(const std::string& name);
    ReportImage& image(const std::string& name);
};

/// What the user reads when a page does not get onto paper.
inline constexpr const char* cannot_print = "Impossibile eseguire la stampa.";

/// Shows and prints reports.
class ReportViewer {
public:
    /// Shows a report in a window from which it can be printed or made a PDF file. Returns when the user has
    /// closed it. @throws Failure if its picture cannot be drawn
    virtual void show_modal(const Report& report) = 0;
    /// A text in simple HTML (headings, paragraphs, tables) as a PDF file of A4 pages. @return its bytes
    virtual std::string pdf_of(const std::string& html, const std::string& title) = 0;

protected:
    ~ReportViewer() = default;
};

} // namespace tarvello
