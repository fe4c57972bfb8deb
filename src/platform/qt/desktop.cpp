#include "platform/qt/desktop.h"

#include "failure.h"
#include "platform/qt/qt_text.h"
#include "platform/twips.h"

#include <QClipboard>
#include <QDate>
#include <QDesktopServices>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QGuiApplication>
#include <QImageReader>
#include <QProcess>
#include <QScreen>
#include <QSettings>
#include <QStandardPaths>
#include <QSysInfo>
#include <QUrl>

#include <cerrno>

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

namespace tarvello::qt {

Date SystemClock::today() {
    const QDate today = QDate::currentDate();
    return make_date(today.year(), static_cast<unsigned>(today.month()), static_cast<unsigned>(today.day()));
}

PictureSize QtPictureFiles::size(const std::string& path) {
    // Read whole: what has the head of a picture need not be one.
    const QSize size = QImageReader(to_qt(path)).read().size();
    if (size.isEmpty()) {
        throw Failure(481, "Immagini", "Il file " + path + " non è un'immagine valida.");
    }
    return {static_cast<float>(size.width()) * twips_per_dot,
            static_cast<float>(size.height()) * twips_per_dot};
}

QtDesktop::~QtDesktop() {
    if (lock_ >= 0) ::close(lock_);
}

bool QtDesktop::open_address(const std::string& address) {
    const QUrl url(to_qt(address), QUrl::TolerantMode);
    return url.isValid() && !url.scheme().isEmpty() && QDesktopServices::openUrl(url);
}

bool QtDesktop::find_files() {
    for (const char* program : {"catfish", "kfind", "gnome-search-tool"}) {
        const QString found = QStandardPaths::findExecutable(QLatin1String(program));
        if (!found.isEmpty() && QProcess::startDetached(found, {})) return true;
    }
    // The file manager has a search of its own.
    return QDesktopServices::openUrl(QUrl::fromLocalFile(QDir::homePath()));
}

bool QtDesktop::is_another_copy_running() {
    if (lock_ >= 0) return false; // this copy holds it
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation);
    const QByteArray path = QFile::encodeName(folder + "/tarvello.lock");
    // Programs that this one starts must not keep the lock: it closes when they begin.
    lock_ = ::open(path.constData(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600);
    if (lock_ < 0) return false; // without a place for the lock the program starts all the same
    if (::flock(lock_, LOCK_EX | LOCK_NB) == 0) return false;
    const bool held = errno == EWOULDBLOCK;
    ::close(lock_);
    lock_ = -1;
    return held;
}

namespace {

/// Name and version of the word processor, as its installation states them; empty if there is none.
QString word_processor() {
    const QFileInfo program(QStandardPaths::findExecutable(QStringLiteral("soffice")));
    if (!program.exists()) return {};
    const QString folder = QFileInfo(program.canonicalFilePath()).path();
    return QSettings(folder + "/bootstraprc", QSettings::IniFormat)
        .value(QStringLiteral("Bootstrap/ProductKey"))
        .toString();
}

} // namespace

std::vector<SystemFact> QtDesktop::system_facts() {
    const QString office = word_processor();
    std::vector<SystemFact> facts{
        {"Qt", qVersion()},
        {"Elaboratore di testi", office.isEmpty() ? "non installato" : from_qt(office)},
        {"Sistema operativo", from_qt(QSysInfo::prettyProductName())},
        {"Nucleo", from_qt(QSysInfo::kernelType() + " " + QSysInfo::kernelVersion())},
        {"Architettura", from_qt(QSysInfo::currentCpuArchitecture())},
    };
    if (const QScreen* screen = QGuiApplication::primaryScreen()) {
        facts.push_back({"Schermo", from_qt(QStringLiteral("%1 × %2, scala %3 %")
                                                .arg(screen->geometry().width())
                                                .arg(screen->geometry().height())
                                                .arg(qRound(screen->devicePixelRatio() * 100)))});
    }
    return facts;
}

void QtDesktop::copy_to_clipboard(const std::string& text) {
    QGuiApplication::clipboard()->setText(to_qt(text));
}

} // namespace tarvello::qt
