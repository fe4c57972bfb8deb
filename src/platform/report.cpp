#include "platform/report.h"

#include "failure.h"

namespace tarvello {
namespace {

template <typename Look>
Look& look_of(Report& report, const std::string& name) {
    for (ReportSection& section : report.sections) {
        for (ReportControl& control : section.controls) {
            if (control.name != name) continue;
            if (Look* look = std::get_if<Look>(&control.look)) return *look;
        }
    }
    throw Failure(failure_number::no_such_element, "Stampa",
                  "La stampa " + report.name + " non ha un elemento " + name + ".");
}

} // namespace

ReportLabel& Report::label(const std::string& name) { return look_of<ReportLabel>(*this, name); }

ReportImage& Report::image(const std::string& name) { return look_of<ReportImage>(*this, name); }

} // namespace tarvello
