#include "platform/qt/report_painter.h"

#include "platform/qt/qt_text.h"
#include "platform/twips.h"

#include <QBuffer>
#include <QFontDatabase>
#include <QFontMetricsF>
#include <QHash>
#include <QImageReader>
#include <QPainter>
#include <QPainterPath>
#include <QPdfWriter>
#include <QRawFont>
#include <QTextLayout>

namespace tarvello::qt {
namespace {

constexpr qreal line_width = 10;

QColor to_color(const Color& color) { return {color.red, color.green, color.blue}; }

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

QFont to_font(const ReportFont& font) {
    QFont made(family_for(font.family));
    made.setPixelSize(qRound(font.points * twips_per_point)); // the painter's unit is a twip
    made.setBold(font.bold);
    made.setItalic(font.italic);
    // Every device gets the widths of the font itself, not those of its own dots.
    made.setHintingPreference(QFont::PreferNoHinting);
    // Any spacing of its own keeps a font from joining f and i into one sign, which is not found in a PDF
    // again.
    made.setLetterSpacing(QFont::AbsoluteSpacing, 0.02);
    return made;
}

/// From line to line, in parts of the font's size: fonts differ too much in what they say of it.
constexpr qreal line_height = 1.15;

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

/// One text, from the top of its box down. A line that does not fit whole is left out, and the last line that
/// does ends in three dots then; the first one is always drawn.
void paint(const ReportLabel& label, const QRectF& box, QPainter& painter) {
    if (label.text.empty()) return;
    QString text = to_qt(label.text);
    text.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    text.replace(QLatin1Char('\r'), QLatin1Char('\n'));
    const QFont font = to_font(label.font);
    const QFontMetricsF metrics(font, painter.device());
    const qreal line_step = line_height * font.pixelSize();
    const int lines_that_fit = qMax(1, static_cast<int>(box.height() / line_step));

    QTextOption option(to_alignment(label.alignment));
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    painter.setPen(to_color(label.color));
    int drawn = 0;
    const QStringList paragraphs = text.split(QLatin1Char('\n'));
    for (qsizetype p = 0; p < paragraphs.size(); ++p) {
        const auto draw = [&](const QString& content) {
            QTextLayout layout(content, font, painter.device());
            layout.setTextOption(option);
            layout.beginLayout();
            QTextLine line = layout.createLine();
            line.setLineWidth(box.width());
            layout.endLayout();
            const QPointF place(box.left(), box.top() + drawn * line_step);
            draw_line(painter, line, place, font, content.left(line.textLength()));
            ++drawn;
            return line.textLength();
        };
        QString rest = paragraphs[p];
        do {
            const bool last_place = drawn + 1 == lines_that_fit;
            const bool more_below = p + 1 < paragraphs.size();
            const bool too_wide = metrics.horizontalAdvance(rest) > box.width();
            if (last_place && (too_wide || more_below)) {
                const QString cut = more_below && !too_wide ? rest + QStringLiteral(" …") : rest;
                draw(metrics.elidedText(cut, Qt::ElideRight, box.width()));
                return;
            }
            rest = rest.mid(draw(rest));
        } while (!rest.isEmpty());
    }
}

void paint(const ReportImage& image, const QRectF& box, QPainter& painter) {
    if (image.path.empty()) return;
    const QImage picture = QImageReader(to_qt(image.path)).read();
    if (picture.isNull()) return;
    painter.save();
    painter.setClipRect(box);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    const QSizeF own_size = QSizeF(picture.size()) * twips_per_dot;
    const bool stretch = image.size_mode == ReportSizeMode::stretch;
    painter.drawImage(stretch ? box : QRectF(box.topLeft(), own_size), picture);
    painter.restore();
}

void paint(const ReportRectangle& rectangle, const QRectF& box, QPainter& painter) {
    painter.setPen(QPen(to_color(rectangle.border), line_width, Qt::SolidLine, Qt::SquareCap, Qt::MiterJoin));
    painter.setBrush(rectangle.fill ? QBrush(to_color(*rectangle.fill)) : QBrush(Qt::NoBrush));
    painter.drawRect(box);
}

void paint(const ReportLine& line, const QRectF& box, QPainter& painter) {
    painter.setPen(QPen(to_color(line.color), line_width, Qt::SolidLine, Qt::FlatCap));
    painter.drawLine(box.topLeft(), box.bottomRight());
}

} // namespace

QSizeF report_page() { return {11906, 16838}; }

void paint_report(const Report& report, QPainter& painter) {
    painter.setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing);
    int top = report.margin;
    for (const ReportSection& section : report.sections) {
        for (const ReportControl& control : section.controls) {
            const QRectF box(report.margin + control.box.left, top + control.box.top, control.box.width,
                             control.box.height);
            std::visit([&](const auto& look) { paint(look, box, painter); }, control.look);
        }
        top += section.height;
    }
}

QByteArray report_pdf(const Report& report) {
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    QPdfWriter writer(&buffer);
    writer.setCreator(QStringLiteral("Tarvello"));
    writer.setTitle(to_qt(report.document));
    writer.setPageLayout(QPageLayout(QPageSize(QPageSize::A4), QPageLayout::Portrait, QMarginsF()));
    writer.setResolution(twips_per_inch);
    QPainter painter(&writer);
    paint_report(report, painter);
    painter.end();
    return buffer.data();
}

} // namespace tarvello::qt
