#include "platform/qt/browser/browser.h"

#include <QAction>
#include <QDesktopServices>
#include <QMenu>
#include <QPointer>
#include <QQuickWindow>
#include <QWebEngineDownloadRequest>
#include <QWebEngineNewWindowRequest>
#include <QWebEnginePage>
#include <QWebEngineProfile>
#include <QWebEngineView>

#include <sched.h>
#include <sys/wait.h>
#include <unistd.h>

namespace tarvello::qt {

namespace {

/// The engine keeps each page in a sandbox, and ends the whole program where the system does not give it one.
/// So this is tried out before, in a child process.
bool system_gives_sandbox() {
    const pid_t child = ::fork();
    if (child == 0) ::_exit(::unshare(CLONE_NEWUSER | CLONE_NEWPID) == 0 ? 0 : 1);
    int status = 1;
    return child > 0 && ::waitpid(child, &status, 0) == child && status == 0;
}

class Page final : public QWebEnginePage {
public:
    using QWebEnginePage::QWebEnginePage;

protected:
    /// Errors in the scripts of a page are nobody's business here.
    void javaScriptConsoleMessage(JavaScriptConsoleMessageLevel, const QString&, int,
                                  const QString&) override {}
};

struct Command {
    QWebEnginePage::WebAction action;
    const char* caption;
};

/// The engine has no Italian words of its own for these.
constexpr Command commands[] = {
    {QWebEnginePage::Back, "&Indietro"},
    {QWebEnginePage::Forward, "&Avanti"},
    {QWebEnginePage::Reload, "A&ggiorna"},
    {QWebEnginePage::Cut, "&Taglia"},
    {QWebEnginePage::Copy, "&Copia"},
    {QWebEnginePage::Paste, "I&ncolla"},
    {QWebEnginePage::SelectAll, "&Seleziona tutto"},
};

class WebEngineBrowser final : public Browser {
public:
    explicit WebEngineBrowser(QWidget* parent) : page_(&profile_), view_(new QWebEngineView(parent)) {
        profile_.setHttpAcceptLanguage(QStringLiteral("it-IT,it;q=0.9"));
        view_->setPage(&page_);
        view_->setContextMenuPolicy(Qt::CustomContextMenu);
        QObject::connect(view_, &QWidget::customContextMenuRequested,
                         [this](const QPoint& at) { show_menu(at); });
        QObject::connect(&page_, &QWebEnginePage::newWindowRequested,
                         [this](QWebEngineNewWindowRequest& request) {
                             if (request.isUserInitiated()) page_.setUrl(request.requestedUrl());
                         });
        // A file is for the user's own browser, which has a place for it.
        QObject::connect(
            &profile_, &QWebEngineProfile::downloadRequested,
            [](const QWebEngineDownloadRequest* file) { QDesktopServices::openUrl(file->url()); });
    }

    ~WebEngineBrowser() override { delete view_.data(); }

    QWidget& widget() override { return *view_; }
    void navigate(const std::string& address) override {
        page_.setUrl(QUrl(QString::fromStdString(address)));
    }
    void go_back() override { page_.triggerAction(QWebEnginePage::Back); }
    void go_forward() override { page_.triggerAction(QWebEnginePage::Forward); }
    void refresh() override { page_.triggerAction(QWebEnginePage::Reload); }

private:
    void show_menu(const QPoint& at) {
        auto* menu = new QMenu(view_);
        menu->setAttribute(Qt::WA_DeleteOnClose);
        for (const Command& command : commands) {
            QAction* action = page_.action(command.action);
            action->setText(QString::fromUtf8(command.caption));
            menu->addAction(action);
        }
        menu->popup(view_->mapToGlobal(at));
    }

    // Each is used by those that follow: they go in the reverse order. The view may have gone with its
    // window.
    QWebEngineProfile profile_; // without a name: it leaves nothing on the disk
    Page page_;
    QPointer<QWebEngineView> view_;
};

/// What stands before the first browser of a process.
/// @return false if the system gives no sandbox
bool prepare_engine() {
    // Pages of text and pictures need no graphics driver.
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    constexpr const char* without_sandbox = "QTWEBENGINE_DISABLE_SANDBOX";
    if (::geteuid() == 0) qputenv(without_sandbox, "1"); // the engine has none for the superuser
    return qEnvironmentVariableIsSet(without_sandbox) || system_gives_sandbox();
}

} // namespace

} // namespace tarvello::qt

extern "C" Q_DECL_EXPORT tarvello::qt::Browser* tarvello_make_browser(QWidget* parent) {
    static const bool ready = tarvello::qt::prepare_engine();
    return ready ? new tarvello::qt::WebEngineBrowser(parent) : nullptr;
}
