#pragma once

#include "platform/report.h"

#include <QByteArray>
#include <QSizeF>

class QPainter;

namespace tarvello::qt {

/// A4 upright, the page of all reports, in twips.
QSizeF report_page();

/// Draws the page of a report. The painter's unit must be a twip and its origin the corner of the paper; so
/// preview, printer and PDF show the same to the hair.
void paint_report(const Report& report, QPainter& painter);

/// The report as a PDF file.
QByteArray report_pdf(const Report& report);

} // namespace tarvello::qt
