#include "program/settings.h"

#include "failure.h"
#include "program/net_functions.h"
#include "support/program_test.h"

namespace tarvello::testing {
namespace {

struct Settings : ProgramTest {
    MDIForm1& main = program->form<MDIForm1>();
};

TEST_F(Settings, TextsLiveUnderTheNameOfTheControl) {
    main.session.txt_IVA_default.set_text("");
    SaveTextSetting(*program, main.session.txt_IVA_default);
    EXPECT_EQ(fake.settings.get("txt_IVA_default"), "");
    main.session.txt_IVA_default.set_text("20");
    ReadTextSetting(*program, main.session.txt_IVA_default);
    EXPECT_EQ(main.session.txt_IVA_default.text(), "") << "a stored empty text is no missing one";
    ReadTextSetting(*program, main.session.txt_Ritenuta_default);
    EXPECT_EQ(main.session.txt_Ritenuta_default.text(), "False");
}

TEST_F(Settings, ReadingATextIsAChangeWhoseFailureIsSilent) {
    fake.settings.set("txtProfessione", "text", "Cassa");
    int changes = 0;
    main.session.txtProfessione.on_change = [&] {
        ++changes;
        throw Failure(5, "test", "ignorata");
    };
    ReadTextSetting(*program, main.session.txtProfessione);
    EXPECT_EQ(changes, 1);
    EXPECT_EQ(main.session.txtProfessione.text(), "Cassa");
}

TEST_F(Settings, AMissingOrStrangeValueLeavesTheBoxAsItIs) {
    CheckBox& box = main.session.CheckBoxBackup;
    box.set_checked(true);
    for (const char* stored : {"", "False", "True", "2", "1 1"}) {
        if (*stored) fake.settings.set("CheckBoxBackup", "value", stored);
        ReadValueSetting(*program, box);
        EXPECT_TRUE(box.checked()) << stored;
    }
    fake.settings.set("CheckBoxBackup", "value", "0");
    ReadValueSetting(*program, box);
    EXPECT_FALSE(box.checked());
    box.set_checked(true);
    SaveValueSetting(*program, box);
    EXPECT_EQ(fake.settings.get("CheckBoxBackup", "value"), "1");
}

TEST_F(Settings, TheBrowserThatCannotBeOpenedIsToldAndTheMailIsNot) {
    ApriBrowser(*program, "https://example.org/");
    ApriMail(*program, "a@example.org");
    EXPECT_EQ(fake.desktop.opened,
              (std::vector<std::string>{"https://example.org/", "mailto:a@example.org"}));
    fake.desktop.can_open = false;
    ApriMail(*program, "b@example.org");
    boxes().expect("Errore imprevisto. Impossibile aprire Internet Explorer.");
    ApriBrowser(*program, "https://example.net/");
    EXPECT_EQ(program->opened_address, "https://example.net/");
}

} // namespace
} // namespace tarvello::testing
