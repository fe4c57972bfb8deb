#include "platform/qt/application.h"

#include "platform/platform.h"
#include "platform/qt/look.h"
#include "platform/qt/pictures.h"
#include "platform/qt/qt_text.h"

#include <QLibraryInfo>
#include <QLocale>
#include <QLoggingCategory>
#include <QMessageBox>
#include <QTranslator>

#include <cstdlib>
#include <exception>

namespace tarvello::qt {

namespace {

constexpr const char* x11_graphics = "QT_XCB_GL_INTEGRATION";

/// What must stand before the application object comes. The browser, whose library is loaded later, asks for
/// a graphics context that the toolkit shares, and draws its pages without it. So there is one, and nothing
/// behind it: a real one would cost every start the graphics driver, 60 MB, and the main window would be
/// made anew before the user's eyes when the first page comes into it.
int& prepare(int& argc) {
    QCoreApplication::setAttribute(Qt::AA_ShareOpenGLContexts);
    qputenv(x11_graphics, "none");
    QLoggingCategory::setFilterRules(QStringLiteral("default.warning=false")); // that it is missing
    return argc;
}

} // namespace

Application::Application(int& argc, char** argv) : QApplication(prepare(argc), argv) {
    QLoggingCategory::setFilterRules({});
    qunsetenv(x11_graphics); // programs that this one opens draw as they like
    setApplicationName(QStringLiteral("tarvello"));
    setApplicationDisplayName(QString());
    setWindowIcon(program_icon());
    setDesktopFileName(QStringLiteral("tarvello"));
    setQuitOnLastWindowClosed(false); // the session ends the program, not the splash that goes
    QLocale::setDefault(QLocale(QLocale::Italian, QLocale::Italy));
    auto* translator = new QTranslator(this);
    if (translator->load(QStringLiteral("qtbase_it"), QLibraryInfo::path(QLibraryInfo::TranslationsPath))) {
        installTranslator(translator);
    }
    apply_look(*this);
}

bool Application::notify(QObject* receiver, QEvent* event) {
    try {
        return QApplication::notify(receiver, event);
    } catch (const std::exception& defect) {
        // Failures have been shown and have ended the process before they come here: this is a defect or the
        // end of the memory, and nothing is certain any more.
        QMessageBox::critical(nullptr, QString::fromLatin1(program_title),
                              QStringLiteral("Errore imprevisto. Il programma viene chiuso.\n\n") +
                                  QString::fromLocal8Bit(defect.what()));
        std::_Exit(EXIT_FAILURE);
    }
}

} // namespace tarvello::qt
