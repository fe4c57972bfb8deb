#include "desktop/desktop_test.h"
#include "platform/qt/qt_text.h"
#include "program/version.h"
#include "update/web_service.h"

#include <QDir>
#include <QFile>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QProcess>
#include <QProgressBar>
#include <QTest>

#include <csignal>

#include <sys/prctl.h>

namespace tarvello::testing {
namespace {

using qt::from_qt;
using qt::to_qt;

/// A site on this computer, of pages whose title is their name.
class Site {
public:
    explicit Site(const QStringList& pages) {
        for (const QString& page : pages) put(page, page);
        // It ends with this process, however that ends.
        server_.setChildProcessModifier([] { ::prctl(PR_SET_PDEATHSIG, SIGKILL); });
        server_.start("python3",
                      {"-u", "-m", "http.server", "0", "--bind", "127.0.0.1", "--directory", folder_.path()});
        EXPECT_TRUE(server_.waitForReadyRead(longest_wait)) << "no server";
        const QString started = QString::fromUtf8(server_.readAllStandardOutput());
        port_ = started.section(" port ", 1).section(' ', 0, 0);
    }
    ~Site() {
        server_.kill();
        server_.waitForFinished();
    }
    void put(const QString& page, const QString& title) const {
        QFile file(folder_.filePath(page + ".html"));
        EXPECT_TRUE(file.open(QFile::WriteOnly));
        file.write("<html lang=it><title>" + title.toUtf8() + "</title><script>missing.call()</script>");
    }
    std::string address(const QString& page) const {
        return "http://127.0.0.1:" + from_qt(port_) + "/" + from_qt(page) + ".html";
    }

private:
    QTemporaryDir folder_;
    QProcess server_;
    QString port_;
};

struct UpdateWindows : DesktopTest {
    /// The windows inside the main one, the active one first.
    std::vector<std::string> children() {
        auto* area = user.window("MDIForm1")->findChild<QMdiArea*>("ui_mdi");
        std::vector<std::string> names;
        for (QMdiSubWindow* child : area->subWindowList(QMdiArea::StackingOrder))
            names.insert(names.begin(), from_qt(child->widget()->objectName()));
        return names;
    }
    /// The title of the page in the web window becomes this.
    bool page_becomes(const QString& title) {
        QWidget* frame = user.widget("frmWebService", "WebBrowser1");
        return QTest::qWaitFor(
            [&] {
                for (QWidget* page : frame->findChildren<QWidget*>())
                    if (page->property("title").toString() == title) return true;
                return false;
            },
            longest_wait);
    }
};

TEST_F(UpdateWindows, AtTheFirstStartTheReminderComesFirstAndItsPageStandsInTheMainWindow) {
    user.expect_modal("DialogAggiornamento", [&] {
        user.take_picture("DialogAggiornamento", "promemoria");
        user.choose("DialogAggiornamento", "Combo1", 1);
        user.click("DialogAggiornamento", "OKButton");
    });
    answer_first_run();
    start_with_splash();
    user.expect_none_left();
    EXPECT_EQ(children(), std::vector<std::string>{"frmWebService"});
    EXPECT_GE(user.window("frmWebService")->parentWidget()->x(), 0) << "all of it is in view";
    const std::string banner = "Versione installata: " + version_text();
    EXPECT_TRUE(
        QTest::qWaitFor([&] { return user.shown("frmWebService", "labelVersion") == banner; }, longest_wait));
    finish();

    start_with_splash(); // without a reminder
    EXPECT_EQ(children(), std::vector<std::string>{});
    finish();
}

TEST_F(UpdateWindows, ThePageOpensAfterTheWaitAndTheButtonsTurnItsPages) {
    const Site site({"uno", "due"});
    start();
    user.expect_box(
        "Per verificare la disponibilità di aggiornamenti è necessario essere collegati a internet. \n"
        "Se si è collegati a internet premere 'OK' altrimenti premere 'Annulla'",
        Answer::ok);
    user.expect_modal("frmAttesaControlloAggiornamenti", [&] {
        auto* bar = user.widget<QProgressBar>("frmAttesaControlloAggiornamenti", "ProgressBar1");
        EXPECT_TRUE(QTest::qWaitFor([&] { return bar->value() > 50; }, longest_wait));
        user.take_picture("frmAttesaControlloAggiornamenti", "attesa");
        EXPECT_TRUE(
            QTest::qWaitFor([&] { return !user.is_shown("frmAttesaControlloAggiornamenti"); }, longest_wait));
    });
    user.choose_menu("MDIForm1", "mnuScaricaAggiornamenti");
    auto& form = program().form<frmWebService>();
    form.WebBrowser1.navigate(site.address("uno"));
    ASSERT_TRUE(page_becomes("uno"));
    user.take_picture("MDIForm1", "aggiornamenti");
    form.WebBrowser1.navigate(site.address("due"));
    EXPECT_TRUE(page_becomes("due"));
    user.click("frmWebService", "Toolbar1_2");
    EXPECT_TRUE(page_becomes("uno")) << "back";
    user.click("frmWebService", "Toolbar1_4");
    EXPECT_TRUE(page_becomes("due")) << "forward";
    site.put("due", "due di nuovo");
    user.click("frmWebService", "Toolbar1_3");
    EXPECT_TRUE(page_becomes("due di nuovo")) << "refreshed";
    user.click("frmWebService", "Toolbar1_5");
    EXPECT_FALSE(program().loaded<frmWebService>());
    user.choose_menu("MDIForm1", "mnuFatture");
    EXPECT_EQ(children(), std::vector<std::string>{"frmTarvello"});
    finish();
}

} // namespace
} // namespace tarvello::testing
