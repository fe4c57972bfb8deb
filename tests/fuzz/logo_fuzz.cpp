// Logo pictures: each is measured and printed, or is no picture.
#include "failure.h"
#include "platform/qt/desktop.h"
#include "platform/qt/report_painter.h"

#include <QGuiApplication>
#include <QImage>
#include <QPainter>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <fstream>

#include <unistd.h>

using namespace tarvello;

extern "C" int LLVMFuzzerInitialize(int* count, char*** arguments) {
    setenv("QT_QPA_PLATFORM", "offscreen", 1);
    static QGuiApplication application(*count, *arguments);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const std::string path = "/dev/shm/tarvello-fuzz-logo-" + std::to_string(getpid());
    std::ofstream(path, std::ios::binary).write(reinterpret_cast<const char*>(data), std::streamsize(size));
    try {
        const PictureSize measured = qt::QtPictureFiles().size(path);
        if (measured.width <= 0 || measured.height <= 0) std::abort();
        Report report;
        for (const ReportSizeMode mode : {ReportSizeMode::clip, ReportSizeMode::stretch}) {
            report.sections = {
                {"Intestazione", 1440, {{"ImageLogo", {0, 0, 2880, 1440}, ReportImage{path, mode}}}}};
            QImage paper(120, 80, QImage::Format_RGB32);
            QPainter painter(&paper);
            painter.scale(1 / 24.0, 1 / 24.0);
            qt::ReportPage(report).draw(painter);
        }
    } catch (const Failure& failure) {
        if (failure.description().empty()) std::abort();
    }
    unlink(path.c_str());
    return 0;
}
