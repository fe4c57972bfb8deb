#include "customers/customer_form.h"
#include "desktop/desktop_test.h"
#include "documents/wait_form.h"
#include "invoices/invoice_form.h"

#include <QMdiArea>
#include <QMdiSubWindow>

namespace tarvello::testing {
namespace {

struct SessionWindows : DesktopTest {
    SessionWindows() { start(); }
    ~SessionWindows() override { finish(); }
};

TEST_F(SessionWindows, WindowsThatAreShownLiveInTheMainWindowAndGoWithIt) {
    user.take_picture("MDIForm1", "finestra-principale");
    user.choose_menu("MDIForm1", "mnuFatture");
    user.choose_menu("MDIForm1", "Impostazioni");
    auto* area = user.window("MDIForm1")->findChild<QMdiArea*>("ui_mdi");
    ASSERT_TRUE(area);
    user.choose_menu("MDIForm1", "mnuFatture");
    EXPECT_EQ(area->subWindowList().size(), 2) << "a window that is there comes to the front";
    EXPECT_EQ(area->activeSubWindow()->widget()->objectName(), "frmTarvello");
    user.close_window("frmTarvello");
    EXPECT_FALSE(user.is_shown("frmTarvello"));
    EXPECT_FALSE(program().loaded<frmTarvello>());
    user.choose_menu("MDIForm1", "mnuFatture");
    user.take_picture("MDIForm1", "fatture");
}

TEST_F(SessionWindows, AModalWindowReturnsWhenItIsClosed) {
    user.expect_modal("frmClienti", [&] {
        user.take_picture("frmClienti", "clienti");
        user.press(Qt::Key_Escape);
        EXPECT_TRUE(user.is_shown("frmClienti")) << "Escape closes nothing that could be lost";
    });
    user.click("MDIForm1", "Label2_0");
    EXPECT_FALSE(program().loaded<frmClienti>());
}

TEST_F(SessionWindows, AWindowThatWasClosedUnderABoxIsGoneAfterIt) {
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
}

TEST_F(SessionWindows, ThePanelFoldsAndItsCommandsFollowTheConnectionUnderThePointer) {
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

    const std::string database = program_folder() + "/tarvello.mdb";
    QWidget* command = user.widget("MDIForm1", "Label2_0");
    user.expect_box("Chiudere: " + database + "?", Answer::yes);
    user.choose_menu("MDIForm1", "mnuChiudiDatabase");
    user.move_mouse_over("MDIForm1", "Image1");
    EXPECT_FALSE(command->isEnabled());
    user.expect_file_dialog(database);
    user.expect_box("Database caricato correttamente.");
    user.choose_menu("MDIForm1", "mnuApri");
    EXPECT_FALSE(command->isEnabled()) << "until the pointer moves";
    user.move_mouse_over("MDIForm1", "Label2_3");
    EXPECT_TRUE(command->isEnabled());
}

} // namespace
} // namespace tarvello::testing
