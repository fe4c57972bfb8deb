#include "platform/qt/report_text.h"

#include "platform/qt/qt_text.h"
#include "platform/twips.h"

#include <QFontDatabase>
#include <QFontMetricsF>
#include <QHash>
#include <QPainter>
#include <QPainterPath>
#include <QRawFont>
#include <QRegularExpression>
#include <QTextLayout>

#include <algorithm>

namespace tarvello::qt {
namespace {

constexpr double smallest_points = 6;
constexpr double points_step = 0.25;
/// From line to line, in parts of the font's size: fonts differ too much in what they say of it.
constexpr double line_height = 1.15;
/// The least at which the letters of two lines do not touch: two of the smallest fit into a box of one line.
constexpr double tight_line_height = 1.06;

/// The family that stands for one that the reports name. Liberation Sans has the widths of Arial; a Tahoma
/// comes with the fonts of Wine, in a folder where the desktop does not look.
QString family_for(const std::string& name) {
    static const bool tahoma = [] {
        if (QFontDatabase::hasFamily(QStringLiteral("Tahoma"))) return true;
        bool loaded = false;
        for (const char* file : {"tahoma.ttf", "tahomabd.ttf"}) {
            loaded |= QFontDatabase::addApplicationFont(QStringLiteral("/usr/share/wine/fonts/") +
                                                        QLatin1String(file)) >= 0;
        }
        return loaded;
    }();
    if (name == "Tahoma") return tahoma ? QStringLiteral("Tahoma") : QStringLiteral("DejaVu Sans Condensed");
    const QString wanted = to_qt(name);
    return QFontDatabase::hasFamily(wanted) ? wanted : QStringLiteral("Liberation Sans");
}

/// True for a bold font that is drawn no heavier than its regular one, as Wine's Tahoma is: it has the widths
/// of a bold font, so that it keeps the lines, but not its look.
bool is_bold_by_name_only(const QFont& font) {
    if (!font.bold()) return false;
    static QHash<QString, bool> known;
    const auto found = known.constFind(font.family());
    if (found != known.constEnd()) return *found;
    const auto stem = [&font](bool bold) {
        QFont sample(font.family());
        sample.setPixelSize(1000);
        sample.setBold(bold);
        const QRawFont raw = QRawFont::fromFont(sample);
        const QList<quint32> glyphs = raw.glyphIndexesForString(QStringLiteral("l"));
        return glyphs.isEmpty() ? 0.0 : raw.pathForGlyph(glyphs[0]).boundingRect().width();
    };
    return *known.insert(font.family(), stem(true) < 1.2 * stem(false));
}

/// Draws a line of text, and once more beside itself where only that makes it bold: as a shape, so that the
/// text is not there twice for whoever copies or searches it.
void draw_line(QPainter& painter, const QTextLine& line, const QPointF& at, const QFont& font,
               const QString& text) {
    line.draw(&painter, at);
    if (!is_bold_by_name_only(font)) return;
    constexpr qreal heavier = 0.06; // of the font's size
    QPainterPath shape;
    shape.addText(at + QPointF(line.cursorToX(0) + heavier * font.pixelSize(), line.y() + line.ascent()),
                  font, text);
    painter.fillPath(shape, painter.pen().brush());
}

Qt::Alignment to_alignment(ReportAlignment alignment) {
    switch (alignment) {
    case ReportAlignment::right:
        return Qt::AlignRight;
    case ReportAlignment::centre:
        return Qt::AlignHCenter;
    default:
        return Qt::AlignLeft;
    }
}

/// The lines as the user has broken them, whatever sign breaks them; without blank ones at the end.
QStringList paragraphs_of(const std::string& text) {
    QString plain = to_qt(text);
    static const QRegularExpression breaks(QStringLiteral("\r\n|[\r\v\f\\x{0085}\\x{2028}\\x{2029}]"));
    static const QRegularExpression others(QStringLiteral("[\\x00-\\x09\\x0E-\\x1F]"));
    plain.replace(breaks, QStringLiteral("\n")).replace(others, QStringLiteral(" "));
    while (!plain.isEmpty() && plain.back().isSpace()) plain.chop(1);
    return plain.split(QLatin1Char('\n'));
}

/// Breaks a paragraph into lines of this width. @return false if a line is wider all the same
bool break_lines(const QString& paragraph, const QFont& font, QPaintDevice* device, qreal width,
                 QTextOption::WrapMode mode, QStringList& lines) {
    QTextOption option;
    option.setWrapMode(mode);
    QTextLayout layout(paragraph, font, device);
    layout.setTextOption(option);
    layout.beginLayout();
    bool fits = true;
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(width);
        fits = fits && line.naturalTextWidth() <= width;
        lines << paragraph.mid(line.textStart(), line.textLength());
    }
    layout.endLayout();
    return fits;
}

} // namespace

ReportText::ReportText(const ReportLabel& label, const QSizeF& box, QPaintDevice* device)
    : label_(label), box_(box), device_(device), paragraphs_(paragraphs_of(label.text)) {
    double points = label.font.points;
    while (points > smallest_points && !fits_at(points, line_height, false)) points -= points_step;
    if (points > smallest_points) return;
    if (fits_at(smallest_points, line_height, false) || fits_at(smallest_points, tight_line_height, false) ||
        fits_at(smallest_points, tight_line_height, true)) {
        return;
    }
    cut();
}

QFont ReportText::font_at(double points) const {
    QFont made(family_for(label_.font.family));
    made.setPixelSize(qRound(points * twips_per_point)); // the painter's unit is a twip
    made.setBold(label_.font.bold);
    made.setItalic(label_.font.italic);
    // Every device gets the widths of the font itself, not those of its own dots.
    made.setHintingPreference(QFont::PreferNoHinting);
    // Any spacing of its own keeps a font from joining f and i into one sign, which is not found in a PDF
    // again.
    made.setLetterSpacing(QFont::AbsoluteSpacing, 0.02);
    return made;
}

bool ReportText::fits_at(double points, double line_height, bool within_words) {
    font_ = font_at(points);
    line_step_ = line_height * font_.pixelSize();
    lines_.clear();
    const auto mode = within_words ? QTextOption::WrapAtWordBoundaryOrAnywhere : QTextOption::WordWrap;
    bool fits = true;
    for (const QString& paragraph : paragraphs_) {
        fits &= break_lines(paragraph, font_, device_, box_.width(), mode, lines_);
    }
    return fits && (lines_.size() <= 1 || height_of_lines() <= box_.height());
}

void ReportText::cut() {
    cut_ = true;
    const auto room = std::max<qsizetype>(1, static_cast<qsizetype>(box_.height() / line_step_));
    const QString next = lines_.value(room); // of the same paragraph or of the next one
    lines_ = lines_.mid(0, room);
    const QFontMetricsF metrics(font_, device_);
    const QString ellipsis = QStringLiteral(" …");
    QString& last = lines_.back();
    last = metrics.horizontalAdvance(last + ellipsis) <= box_.width()
               ? last + ellipsis
               : metrics.elidedText(last + ' ' + next, Qt::ElideRight, box_.width());
}

void ReportText::draw(QPainter& painter, const QPointF& corner) const {
    // A smaller text stands on the line of the words beside it.
    const qreal lower =
        QFontMetricsF(font_at(label_.font.points), device_).ascent() - QFontMetricsF(font_, device_).ascent();
    QPointF place = corner + QPointF(0, std::clamp(box_.height() - height_of_lines(), 0.0, lower));
    QTextOption option(to_alignment(label_.alignment));
    option.setWrapMode(QTextOption::NoWrap);
    for (const QString& text : lines_) {
        QTextLayout layout(text, font_, device_);
        layout.setTextOption(option);
        layout.beginLayout();
        QTextLine line = layout.createLine();
        if (line.isValid()) line.setLineWidth(box_.width());
        layout.endLayout();
        if (line.isValid()) draw_line(painter, line, place, font_, text);
        place.ry() += line_step_;
    }
}

} // namespace tarvello::qt
