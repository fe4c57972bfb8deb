#pragma once

#include "platform/report.h"

#include <QFont>
#include <QPointF>
#include <QSizeF>
#include <QStringList>

class QPaintDevice;
class QPainter;

namespace tarvello::qt {

/// A text of a report, laid out in its box. One that does not fit is set smaller, down to 6 points, then
/// broken into lines; what still does not fit ends in an ellipsis.
class ReportText {
public:
    /// @param box     in twips, the unit of the painter that will draw it
    /// @param device  where it will be drawn; null for the screen
    ReportText(const ReportLabel& label, const QSizeF& box, QPaintDevice* device = nullptr);

    /// Part of the text is left out.
    bool is_cut() const { return cut_; }
    /// @param corner  the top left one of the box
    void draw(QPainter& painter, const QPointF& corner) const;

private:
    QFont font_at(double points) const;
    /// Lays the text out at this size, from line to line so many parts of it.
    /// @return false if it does not fit
    bool fits_at(double points, double line_height, bool within_words);
    void cut();
    qreal height_of_lines() const { return line_step_ * static_cast<qreal>(lines_.size()); }

    const ReportLabel& label_;
    QSizeF box_;
    QPaintDevice* device_;
    QStringList paragraphs_;
    QFont font_;
    qreal line_step_ = 0;
    QStringList lines_;
    bool cut_ = false;
};

} // namespace tarvello::qt
