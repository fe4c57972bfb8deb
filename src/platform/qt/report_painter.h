#pragma once

#include "platform/report.h"

#include <QByteArray>
#include <QHash>
#include <QImage>
#include <QSizeF>

#include <string>
#include <vector>

class QPainter;

namespace tarvello::qt {

/// A4 upright, the page of all reports, in twips.
QSizeF report_page();

/// The page of a report, ready to be drawn: its picture is read once.
class ReportPage {
public:
    /// @param report  outlives this
    explicit ReportPage(const Report& report);

    /// The painter's unit must be a twip and its origin the corner of the paper; so preview, printer and PDF
    /// show the same to the hair.
    void draw(QPainter& painter) const;

    /// What of the texts does not fit into its box whole, even at the smallest size: in words for the user.
    std::vector<std::string> cut_texts() const;

private:
    /// Calls `visit(control, box)` for each control, its box on the paper.
    template <typename Visit>
    void each_control(Visit visit) const;

    const Report& report_;
    QHash<const ReportControl*, QImage> pictures_;
};

/// The report as a PDF file.
QByteArray report_pdf(const Report& report);

} // namespace tarvello::qt
