#include "platform/report_file.h"

#include "failure.h"
#include "text/letter_case.h"

namespace tarvello {
namespace {

bool has_its_extension(const std::string& path) {
    constexpr std::string_view extension = ".pdf";
    return path.size() >= extension.size() &&
           equal_ignoring_case(std::string_view(path).substr(path.size() - extension.size()), extension);
}

} // namespace

void save_as_pdf(const ReportFileSurroundings& around, const std::function<std::string()>& pdf) {
    auto path = around.dialogs.save_file({"Salva la fattura in PDF", {{"Documenti PDF (*.pdf)", "*.pdf"}}});
    if (!path) return;
    if (!has_its_extension(*path)) *path += ".pdf";
    if (around.files.exists(*path) && !around.copy_dialog.may_replace(*path)) return;
    try {
        around.files.write(*path, pdf());
        around.boxes.show({"La fattura è stata salvata in:\n" + *path, program_title, BoxIcon::information});
    } catch (const Failure& failure) { // the preview stays, for another try
        around.boxes.show({failure.description(), program_title, BoxIcon::critical});
    }
}

} // namespace tarvello
