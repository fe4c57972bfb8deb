#include "platform/qt/report_painter.h"

#include "platform/qt/qt_text.h"
#include "platform/qt/report_text.h"
#include "platform/twips.h"

#include <QBuffer>
#include <QImageReader>
#include <QPageLayout>
#include <QPainter>
#include <QPdfWriter>

namespace tarvello::qt {
namespace {

constexpr qreal line_width = 10;
/// The finest print, in dots to the inch: a picture that has more is made smaller once, and not at each
/// drawing.
constexpr int finest_print = 600;

QColor to_color(const Color& color) { return {color.red, color.green, color.blue}; }

/// A picture as it is to be drawn into a box of this size: what of it will be seen.
QImage read_picture(const ReportImage& image, const QSizeF& box) {
    QImage picture = QImageReader(to_qt(image.path)).read();
    if (picture.isNull()) return picture;
    if (image.size_mode == ReportSizeMode::clip) {
        const QSize seen = (box / twips_per_dot).toSize().boundedTo(picture.size());
        return picture.copy(QRect(QPoint(), seen));
    }
    const QSize finest = (box * finest_print / twips_per_inch).toSize();
    if (picture.width() <= finest.width() && picture.height() <= finest.height()) return picture;
    return picture.scaled(picture.size().boundedTo(finest), Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}

void paint(const ReportImage& image, const QImage& picture, const QRectF& box, QPainter& painter) {
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

ReportPage::ReportPage(const Report& report) : report_(report) {
    each_control([this](const ReportControl& control, const QRectF& box) {
        const auto* image = std::get_if<ReportImage>(&control.look);
        if (image && !image->path.empty()) pictures_.insert(&control, read_picture(*image, box.size()));
    });
}

template <typename Visit>
void ReportPage::each_control(Visit visit) const {
    int top = report_.margin;
    for (const ReportSection& section : report_.sections) {
        for (const ReportControl& control : section.controls) {
            visit(control, QRectF(report_.margin + control.box.left, top + control.box.top, control.box.width,
                                  control.box.height));
        }
        top += section.height;
    }
}

void ReportPage::draw(QPainter& painter) const {
    painter.setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing);
    each_control([&](const ReportControl& control, const QRectF& box) {
        if (const auto* label = std::get_if<ReportLabel>(&control.look)) {
            if (label->text.empty()) return;
            painter.setPen(to_color(label->color));
            ReportText(*label, box.size(), painter.device()).draw(painter, box.topLeft());
        } else if (const auto* image = std::get_if<ReportImage>(&control.look)) {
            paint(*image, pictures_.value(&control), box, painter);
        } else if (const auto* rectangle = std::get_if<ReportRectangle>(&control.look)) {
            paint(*rectangle, box, painter);
        } else if (const auto* line = std::get_if<ReportLine>(&control.look)) {
            paint(*line, box, painter);
        }
    });
}

std::vector<std::string> ReportPage::cut_texts() const {
    std::vector<std::string> cut;
    each_control([&](const ReportControl& control, const QRectF& box) {
        const auto* label = std::get_if<ReportLabel>(&control.look);
        if (!label || !ReportText(*label, box.size()).is_cut()) return;
        cut.push_back(label->subject.empty() ? control.name : label->subject);
    });
    return cut;
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
    ReportPage(report).draw(painter);
    painter.end();
    return buffer.data();
}

} // namespace tarvello::qt
