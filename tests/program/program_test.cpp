#include "program/program.h"

#include "failure.h"
#include "support/program_test.h"

namespace tarvello::testing {
namespace {

/// A form whose load does what the test says.
struct Loading : Form {
    explicit Loading(Program& program) : Form(program, "Loading") {}
    void on_load() override { at_load(*this); }
    inline static std::function<void(Loading&)> at_load;
};

using Forms = ProgramTest;

TEST_F(Forms, OneThatIsUnloadedByItsLoadLivesUntilTheActIsOver) {
    std::weak_ptr<Form> made;
    Loading::at_load = [&](Loading& form) {
        made = form.weak_from_this();
        form.unload();
    };
    program->run([&] {
        Loading& form = program->form<Loading>();
        program->run([] {}); // an act inside, as of a modal window, ends nothing
        ASSERT_FALSE(made.expired());
        EXPECT_EQ(form.name(), "Loading");
        EXPECT_EQ(program->loaded<Loading>(), nullptr);
    });
    EXPECT_TRUE(made.expired());
}

TEST_F(Forms, OneWhoseLoadFailsIsNotLoadedAndTheNextUseLoadsItAgain) {
    int loads = 0;
    Loading::at_load = [&](Loading&) {
        if (++loads == 1) throw Failure(1, "test", "no");
    };
    boxes().expect({"Un'operazione non è riuscita.\nControllare quanto indicato qui sotto e ripetere.\n\nno",
                    "Tarvello 4", BoxIcon::critical});
    program->run([&] { program->form<Loading>(); });
    EXPECT_EQ(program->loaded<Loading>(), nullptr);
    program->form<Loading>();
    EXPECT_EQ(loads, 2);
    EXPECT_NE(program->loaded<Loading>(), nullptr);
}

TEST_F(Forms, WordsComeBeforeTheDescriptionOfAnEnd) {
    for (const auto& [number, word] : {std::pair{failure_number::overflow, "troppo grande"},
                                       {failure_number::type_mismatch, "un importo"},
                                       {failure_number::statement, "apostrofo"},
                                       {failure_number::invalid_use_of_null, "manca un dato"},
                                       {failure_number::no_such_element, "colonna"},
                                       {failure_number::object_closed, "Nessun database connesso"},
                                       {failure_number::file_access, "disco"},
                                       {481, "ripetere"}}) {
        expect_process_end([&] { program->run([&] { throw Failure(number, "test", "Perché."); }); },
                           "Perché.");
        EXPECT_NE(boxes().last().text.find(word), std::string::npos) << boxes().last().text;
    }
}

} // namespace
} // namespace tarvello::testing
