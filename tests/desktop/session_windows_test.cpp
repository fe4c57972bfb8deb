#include "customers/customer_form.h"
#include "desktop/desktop_test.h"
#include "documents/wait_form.h"
#include "invoices/invoice_form.h"
#include "platform/qt/qt_text.h"

#include <QLineEdit>
#include <QMdiArea>
#include <QMdiSubWindow>

namespace tarvello::testing {
namespace {

using SessionWindows = DesktopTest;

TEST_F(SessionWindows, TheFirstStartAsksAndTheSecondDoesNot) {
    user.expect_modal("DialogAggiornamento", [&] { user.click("DialogAggiornamento", "CancelButton"); });
    answer_first_run();
    start_with_splash();
    user.expect_none_left();
    EXPECT_FALSE(user.is_shown("frmSplash"));
    EXPECT_EQ(program().NomeIntestatario, "Studio Rossi");
    EXPECT_TRUE(program().session().mnuChiudiDatabase.enabled()) << "the shipped database is open";
    EXPECT_EQ(qt::from_qt(user.window("MDIForm1")->windowTitle()),
              "Tarvello 4 - [" + program_folder() + "/tarvello.mdb]");
    user.take_picture("MDIForm1", "finestra-principale");
    finish();

    user.expect_modal("DialogAggiornamento"); // put off, it comes again
    start_with_splash();
    user.expect_none_left();
    EXPECT_EQ(program().session().txtContatoreAccessi.text(), "2");
    finish();
}

TEST_F(SessionWindows, WindowsThatAreShownLiveInTheMainWindowAndGoWithIt) {
    start();
    user.choose_menu("MDIForm1", "mnuFatture");
    user.choose_menu("MDIForm1", "Impostazioni");
    auto* area = user.window("MDIForm1")->findChild<QMdiArea*>("ui_mdi");
    ASSERT_TRUE(area);
    EXPECT_EQ(area->subWindowList().size(), 2);
    user.choose_menu("MDIForm1", "mnuFatture");
    EXPECT_EQ(area->subWindowList().size(), 2) << "a window that is there comes to the front";
    EXPECT_EQ(area->activeSubWindow()->widget()->objectName(), "frmTarvello");
    user.close_window("frmTarvello");
    EXPECT_FALSE(user.is_shown("frmTarvello"));
    EXPECT_FALSE(program().loaded<frmTarvello>());
    user.choose_menu("MDIForm1", "mnuFatture");
    EXPECT_TRUE(user.is_shown("frmTarvello"));
    user.take_picture("MDIForm1", "fatture");
    finish();
}

TEST_F(SessionWindows, AModalWindowReturnsWhenItIsClosedByItsBoxOrItsButton) {
    start();
    user.expect_modal("frmClienti", [&] { user.take_picture("frmClienti", "clienti"); });
    user.choose_menu("MDIForm1", "mnuAnagrafica_Clienti");
    EXPECT_FALSE(program().loaded<frmClienti>());
    user.expect_modal("frmClienti", [&] {
        user.press(Qt::Key_Escape);
        EXPECT_TRUE(user.is_shown("frmClienti")) << "Escape closes nothing that could be lost";
    });
    user.click("MDIForm1", "Label2_0");
    finish();
}

TEST_F(SessionWindows, AWindowThatWasClosedUnderABoxIsGoneAfterIt) {
    start();
    std::weak_ptr<Form> closed;
    user.expect_box("Fatto.");
    program().run([&] {
        auto& notice = program().form<frmAttesa>();
        closed = notice.weak_from_this();
        notice.show();
        notice.unload();
        program().message("Fatto.", BoxIcon::none);
    });
    user.settle();
    EXPECT_TRUE(closed.expired());
    finish();
}

TEST_F(SessionWindows, ThePanelFoldsAndUnfolds) {
    start();
    QWidget* panel = user.widget("MDIForm1", "Picture11");
    const int height = panel->height();
    // The desktop may believe its pointer to be elsewhere and call the quiet arrow back.
    const auto press_arrow = [&](const char* quiet, const char* hover) {
        user.click("MDIForm1", user.widget("MDIForm1", hover)->isVisible() ? hover : quiet);
    };
    press_arrow("imgApn2", "imgApS2");
    EXPECT_FALSE(panel->isVisible());
    press_arrow("imgChN2", "imgChS2");
    EXPECT_TRUE(panel->isVisible());
    EXPECT_EQ(panel->height(), height);
    finish();
}

TEST_F(SessionWindows, TheCommandsFollowTheConnectionUnderThePointer) {
    start();
    const std::string database = program_folder() + "/tarvello.mdb";
    user.expect_box("Chiudere: " + database + "?", Answer::yes);
    user.choose_menu("MDIForm1", "mnuChiudiDatabase");
    EXPECT_TRUE(user.widget("MDIForm1", "Label2_0")->isEnabled()) << "until the pointer moves";
    user.move_mouse_over("MDIForm1", "Image1");
    EXPECT_FALSE(user.widget("MDIForm1", "Label2_0")->isEnabled());
    user.expect_file_dialog(database);
    user.expect_box("Database caricato correttamente.");
    user.choose_menu("MDIForm1", "mnuApri");
    user.move_mouse_over("MDIForm1", "Label2_3");
    EXPECT_TRUE(user.widget("MDIForm1", "Label2_0")->isEnabled());
    finish();
}

} // namespace
} // namespace tarvello::testing
