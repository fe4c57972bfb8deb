// The printed invoice as a PDF file.

#include "row.h"

#include "documents/print_reports.h"
#include "platform/qt/report_painter.h"

#include <QApplication>

namespace tarvello::bench {
namespace {

Report filled(Report report) {
    for (ReportSection& section : report.sections) {
        for (ReportControl& control : section.controls) {
            auto* label = std::get_if<ReportLabel>(&control.look);
            if (label && label->text.empty()) label->text = "Consulenza tecnica, € 1.234,56";
        }
    }
    return report;
}

void pdf(benchmark::State& state, const Report& report) {
    qt::report_pdf(report); // the fonts are found once in a session
    for (auto _ : state) benchmark::DoNotOptimize(qt::report_pdf(report));
}

void first_report(benchmark::State& state) { pdf(state, filled(DataReport1())); }
void second_report(benchmark::State& state) { pdf(state, filled(DataReport2())); }

} // namespace
} // namespace tarvello::bench

int main(int argc, char** argv) {
    const QApplication application(argc, argv);
    tarvello::bench::row_within("report to PDF, first layout", tarvello::bench::first_report, 20'000);
    tarvello::bench::row_within("report to PDF, second layout", tarvello::bench::second_report, 20'000);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
