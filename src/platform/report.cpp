#include "platform/report.h"

#include "failure.h"

namespace tarvello {
namespace {

template <typename Look>
Look& look_of(ReportSection& section, const std::string& name) {
    for (ReportControl& control : section.controls) {
        if (control.name != name) continue;
        if (Look* look = std::get_if<Look>(&control.look)) return *look;
    }
    throw Failure(failure_number::no_such_element, "Stampa",
                  "La sezione " + section.name + " non ha un elemento " + name + ".");
}

} // namespace

ReportLabel& ReportSection::label(const std::string& name) { return look_of<ReportLabel>(*this, name); }

ReportImage& ReportSection::image(const std::string& name) { return look_of<ReportImage>(*this, name); }

} // namespace tarvello
