#include "shell/about_form.h"
#include "shell/author_form.h"
#include "shell/help_form.h"
#include "support/program_test.h"

#include <gmock/gmock.h>

namespace tarvello::testing {
namespace {

struct Information : ProgramTest {
    MDIForm1& main = program->form<MDIForm1>();
};

TEST_F(Information, EachWindowIsModalAndClosesByItsButton) {
    fake.files.write(fake.program_directory + "/licenze.txt", "Dati dei comuni: ISTAT");
    windows().expect_modal("frmAutore", [](Form& form) {
        EXPECT_THAT(static_cast<frmAutore&>(form).Text1.text(),
                    ::testing::EndsWith("Dati dei comuni: ISTAT"));
        static_cast<frmAutore&>(form).Command1.click();
    });
    main.Autore.click();
    EXPECT_FALSE(program->loaded<frmAutore>());
    windows().expect_modal("frmHelp", [](Form& form) {
        EXPECT_EQ(form.caption(), " Titolo");
        EXPECT_EQ(static_cast<frmHelp&>(form).Text1.text(), "una\ndue");
        static_cast<frmHelp&>(form).Command1.click();
    });
    show_help(*program, " Titolo", "una\ndue");
    EXPECT_FALSE(program->loaded<frmHelp>());
}

TEST_F(Information, TheVersionsCanBeCopiedAndTheGuideOpens) {
    windows().expect_modal("frmAbout", [&](Form& form) {
        static_cast<frmAbout&>(form).cmdCopia.click();
        windows().expect_modal("frmHelp", [](Form& help) {
            EXPECT_EQ(static_cast<frmHelp&>(help).Document1.document(), "guida");
            EXPECT_FALSE(static_cast<frmHelp&>(help).Text1.visible());
        });
        static_cast<frmAbout&>(form).cmdGuida.click();
        static_cast<frmAbout&>(form).cmdOK.click();
    });
    main.AboutTarvello.click();
    EXPECT_THAT(fake.desktop.clipboard,
                ::testing::MatchesRegex("Tarvello: 4.0.0\nSQLite: 3[.0-9]+\nQt: 6.4.2\n"));
}

} // namespace
} // namespace tarvello::testing
