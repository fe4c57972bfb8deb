#include "program/maker_site.h"
#include "support/program_test.h"
#include "update/update_reminder.h"
#include "update/update_wait.h"
#include "update/web_service.h"

namespace tarvello::testing {
namespace {

struct Update : ProgramTest {
    MDIForm1& main = program->form<MDIForm1>();

    /// Expects the reminder to come on a day, or not to come.
    void expect_reminder(bool comes, const Date& today) {
        fake.clock.now = today;
        if (comes) windows().expect_modal("DialogAggiornamento");
        ControllaAggiornamenti(*program);
        windows().expect_none_left();
    }
};

TEST_F(Update, TheReminderCountsCalendarDays) {
    struct {
        const char* what;
        const char* last;
        const char* extra;
        Date today;
        bool comes;
    } const cases[] = {
        {"30 days", "01/03/2006", "0", make_date(2006, 3, 31), false},
        {"31 days", "01/03/2006", "0", make_date(2006, 4, 1), true},
        {"37 days", "01/03/2006", "7", make_date(2006, 4, 7), false},
        {"38 days", "01/03/2006", "7", make_date(2006, 4, 8), true},
        {"loose texts", "1/3/06", "7 giorni", make_date(2006, 4, 8), true},
        {"a date to come", "01/01/2030", "0", make_date(2006, 3, 5), false},
        {"that date and 31 days", "01/01/2030", "0", make_date(2030, 2, 1), true},
        {"no date", "32/01/2006", "0", make_date(2026, 3, 5), false},
        {"extra days past the range count none", "01/01/2006", "99999", make_date(2006, 2, 1), true},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        fake.settings.set("txtDataUltimoAggiornamento", "text", c.last);
        fake.settings.set("txtGiorniTraCuiAvvisare", "text", c.extra);
        expect_reminder(c.comes, c.today);
        EXPECT_EQ(fake.settings.get("txtDataUltimoAggiornamento"), c.last);
        EXPECT_EQ(fake.settings.get("txtGiorniTraCuiAvvisare"), c.extra);
    }
}

TEST_F(Update, AFreshInstallation) {
    expect_reminder(false, make_date(2005, 1, 31));
    EXPECT_EQ(fake.settings.get("txtDataUltimoAggiornamento"), "01/01/2005");
    EXPECT_EQ(fake.settings.get("txtGiorniTraCuiAvvisare"), "0");
    expect_reminder(true, make_date(2005, 2, 1));
}

TEST_F(Update, AChoiceOfDaysIsStoredAndLeavesTheDate) {
    windows().expect_modal("DialogAggiornamento", [&](Form& form) {
        auto& dialog = static_cast<DialogAggiornamento&>(form);
        dialog.Combo1.choose(1);
        dialog.CancelButton.click();
    });
    ControllaAggiornamenti(*program);
    EXPECT_EQ(fake.settings.get("txtGiorniTraCuiAvvisare"), "7");
    EXPECT_EQ(fake.settings.get("txtDataUltimoAggiornamento"), "01/01/2005");
    EXPECT_TRUE(windows().shown.empty());
}

TEST_F(Update, LookingAtThePageStartsTheDaysAnew) {
    main.session.txtGiorniTraCuiAvvisare.set_text("7");
    windows().expect_modal("DialogAggiornamento",
                           [&](Form& form) { static_cast<DialogAggiornamento&>(form).OKButton.click(); });
    ControllaAggiornamenti(*program);
    EXPECT_EQ(windows().shown, std::vector<std::string>{"frmWebService"});
    EXPECT_EQ(program->form<frmWebService>().WebBrowser1.address(),
              "https://" + maker_host() + "/it/software/tarvello/aggiornamenti/index.asp");
    EXPECT_TRUE(program->form<frmWebService>().WebBrowser1.silent());
    EXPECT_EQ(fake.settings.get("txtDataUltimoAggiornamento"), "05/03/2006");
    EXPECT_EQ(fake.settings.get("txtGiorniTraCuiAvvisare"), "0");
}

TEST_F(Update, FromTheMenuAfterTheQuestionAndTheWait) {
    const MessageBox question{
        "Per verificare la disponibilità di aggiornamenti è necessario essere collegati a internet. \n"
        "Se si è collegati a internet premere 'OK' altrimenti premere 'Annulla'",
        "Tarvello 4", BoxIcon::none, BoxButtons::ok_cancel, 1};
    boxes().expect(question, Answer::cancel);
    main.mnuScaricaAggiornamenti.click();
    EXPECT_TRUE(windows().shown.empty());
    boxes().expect(question, Answer::ok);
    windows().expect_modal("frmAttesaControlloAggiornamenti", [&](Form& form) {
        auto& wait = static_cast<frmAttesaControlloAggiornamenti&>(form);
        EXPECT_EQ(wait.Label1.caption(), "Collegamento a " + maker_host());
        for (int i = 0; i < 50; ++i) wait.Timer1.tick();
        EXPECT_EQ(wait.ProgressBar1.value(), 100);
        EXPECT_TRUE(program->loaded<frmAttesaControlloAggiornamenti>());
        wait.Timer1.tick();
        EXPECT_FALSE(program->loaded<frmAttesaControlloAggiornamenti>());
    });
    main.Label2[side_command::updates].click();
    EXPECT_EQ(windows().shown, std::vector<std::string>{"frmWebService"});
}

TEST_F(Update, TheBannerIsTypedOnceASession) {
    auto& page = program->form<frmWebService>();
    EXPECT_EQ(page.labelVersion.caption(), "Versione corrente");
    page.TimerBannerVersion.tick();
    EXPECT_EQ(page.labelVersion.caption(), "");
    for (int i = 0; i < 11; ++i) page.TimerBannerVersion.tick();
    EXPECT_EQ(page.labelVersion.caption(), "Versione in");
    for (int i = 0; i < 28; ++i) page.TimerBannerVersion.tick();
    EXPECT_EQ(page.labelVersion.caption(), "Versione installata: 4.0.0");
    EXPECT_TRUE(page.TimerBannerVersion.enabled());
    page.TimerBannerVersion.tick();
    EXPECT_FALSE(page.TimerBannerVersion.enabled());
    page.unload();
    auto& again = program->form<frmWebService>();
    again.TimerBannerVersion.tick();
    EXPECT_EQ(again.labelVersion.caption(), "Versione corrente");
    EXPECT_FALSE(again.TimerBannerVersion.enabled());
}

TEST_F(Update, TheToolBarDrivesTheBrowser) {
    struct Browser final : BrowserView {
        std::vector<std::string> told;
        void navigate(const std::string& address) override { told.push_back(address); }
        void go_back() override { told.push_back("back"); }
        void go_forward() override { told.push_back("forward"); }
        void refresh() override { told.push_back("refresh"); }
    } browser;
    auto& page = program->form<frmWebService>();
    page.show();
    page.Toolbar1.press("Indietro"); // no browser on the screen yet: nothing happens
    page.WebBrowser1.browser = &browser;
    for (const char* key : {"Verifica", "Indietro", "Aggiorna", "Avanti"}) page.Toolbar1.press(key);
    EXPECT_EQ(browser.told,
              (std::vector<std::string>{"https://" + maker_host() + "/it/Tarvello/webServ/ws_home.htm",
                                        "back", "refresh", "forward"}));
    page.Toolbar1.press("Chiudi");
    EXPECT_FALSE(program->loaded<frmWebService>());
}

} // namespace
} // namespace tarvello::testing
