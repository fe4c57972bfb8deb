#include "platform/bars.h"
#include "platform/controls.h"
#include "platform/lists.h"

#include "failure.h"
#include "support/plain_host.h"

#include <gtest/gtest.h>

namespace tarvello {
namespace {

struct SampleForm : Form {
    explicit SampleForm(FormHost& host) : Form(host, "SampleForm") {}

    TextBox first{*this, "first"};
    Frame frame{*this, "frame"};
    TextBox second{frame, "second"};
    CheckBox check{frame, "check"};
    OptionButton one{frame, "one"};
    OptionButton two{frame, "two"};
    ComboBox combo{*this, "combo"};
    CommandButton button{*this, "button"};
    ListView list{*this, "list"};
    DatePicker date{*this, "date"};
    ControlArray<TextBox, 3> boxes{*this, "boxes"};
};

struct Controls : ::testing::Test {
    testing::PlainHost host;
    std::shared_ptr<SampleForm> form = std::make_shared<SampleForm>(host);
    int events = 0;
    Event counting = [this] { ++events; };
};

TEST_F(Controls, TypingHonoursFilterLockAndLength) {
    TextBox& box = form->first;
    box.on_change = counting;
    box.set_max_length(4);
    box.on_key_press = [](int& key) {
        if (key == 'x') key = 0;
    };
    box.type("axbèc€");
    EXPECT_EQ(box.text(), "abèc");
    EXPECT_EQ(events, 4);
    box.place_caret(1);
    box.press_key(keys::backspace);
    EXPECT_EQ(box.text(), "bèc");
    box.press_delete();
    EXPECT_EQ(box.text(), "èc");
    box.place_caret(0, 2);
    box.type("z");
    EXPECT_EQ(box.text(), "z");
    box.paste("xxxxxxxx");
    EXPECT_EQ(box.text(), "zxxx") << "pasting passes the filter, not the length";
    box.set_locked(true);
    box.type("b");
    EXPECT_EQ(box.text(), "zxxx");
    box.set_text("set by code, longer");
    EXPECT_EQ(box.text(), "set by code, longer");
    const int before = events;
    box.set_text(box.text());
    EXPECT_EQ(events, before) << "no event without a change";
}

TEST_F(Controls, EnterMovesOnInTextBoxesOnly) {
    form->first.enter();
    form->first.press_key(keys::enter);
    EXPECT_EQ(form->focus(), &form->second);
    form->frame.set_enabled(false);
    form->first.enter();
    form->focus_next();
    EXPECT_EQ(form->focus(), &form->combo) << "what lies in a disabled frame cannot be reached";
    form->combo.press_key(keys::enter);
    EXPECT_EQ(form->focus(), &form->combo);
    form->boxes[2].enter();
    form->focus_next();
    EXPECT_EQ(form->focus(), &form->first);
}

TEST_F(Controls, EnterAndEscapeGoWhereTheyAreWanted) {
    form->button.on_click = counting;
    form->combo.set_enabled(false);
    form->second.enter();
    form->second.press_key(keys::enter);
    form->two.enter();
    form->focus_next_field();
    EXPECT_EQ(form->focus(), &form->list) << "past the button, which the next blank would press";
    form->boxes[2].enter();
    EXPECT_FALSE(form->press_enter() || form->press_escape());
    form->set_keys(&form->button, &form->button);
    form->boxes[2].press_key(keys::enter);
    EXPECT_EQ(form->focus(), &form->button) << "after the last field comes the command of Enter";
    form->first.lead_enter_to(form->boxes[1]);
    form->first.enter();
    form->first.press_key(keys::enter);
    EXPECT_EQ(form->focus(), &form->boxes[1]);
    form->boxes[1].on_lost_focus = [this] {
        if (!form->cancelling()) form->boxes[1].set_focus();
    };
    EXPECT_TRUE(form->press_escape());
    EXPECT_EQ(events, 1) << "it gives up what cannot be read";
    form->button.set_enabled(false);
    EXPECT_FALSE(form->press_enter());
}

TEST_F(Controls, AFieldCanTakeTheFocusBackAndThePressIsLost) {
    form->button.on_click = counting;
    form->first.enter();
    form->first.on_lost_focus = [this] { form->first.set_focus(); };
    form->button.click();
    EXPECT_EQ(form->focus(), &form->first);
    EXPECT_EQ(events, 0);
    form->first.on_lost_focus = [this] { form->second.set_focus(); };
    form->button.click();
    EXPECT_EQ(form->focus(), &form->second);
    form->button.click();
    EXPECT_EQ(events, 1);
}

TEST_F(Controls, DisabledStopsTheUserNotTheCode) {
    form->check.on_click = counting;
    form->frame.set_enabled(false);
    form->check.click();
    EXPECT_FALSE(form->check.checked());
    form->check.set_checked(true);
    EXPECT_EQ(events, 1);
    form->combo.add_item("a");
    form->combo.set_enabled(false);
    form->combo.choose(0);
    EXPECT_EQ(form->combo.list_index(), -1);
}

TEST_F(Controls, ATypedDateIsReadWhenItIsLeftAndNeverBecomesAnother) {
    DatePicker& date = form->date;
    date.set_date(make_date(2006, 3, 5));
    date.on_change = counting;
    date.type("31/12/1980");
    EXPECT_EQ(date.date(), make_date(2006, 3, 5)) << "while it is being typed the form hears nothing";
    form->button.click();
    EXPECT_EQ(date.date(), make_date(1980, 12, 31));
    EXPECT_EQ(events, 1);
    form->button.on_click = counting;
    for (const char* typed : {"31042026", "30/2/26", "abc", " "}) {
        date.type(typed);
        form->button.click();
        EXPECT_EQ(form->focus(), &date) << typed;
        EXPECT_EQ(date.text(), "31/12/1980");
    }
    EXPECT_EQ(events, 1) << "neither is the date another one nor has the command run";
    EXPECT_EQ(host.warnings, "La data \"31/04/2026\" non esiste.|La data \"30/02/2026\" non esiste.|"
                             "La data \"abc\" non esiste.|Manca la data. Scriverla come 31/12/1980.|");
    form->button.set_cancels();
    date.type("abc");
    form->button.click();
    EXPECT_EQ(events, 2) << "what gives the entry up need not read it";
    EXPECT_EQ(date.text(), "31/12/1980");
    date.type("abc");
    date.set_date(date.date());
    EXPECT_FALSE(date.typing()) << "the program puts its date in the place of what is typed";
    date.type("1/2/80");
    date.press_enter();
    EXPECT_EQ(date.date(), make_date(1980, 2, 1));
    EXPECT_EQ(form->focus(), &form->boxes[0]);
    date.on_no_date = counting;
    date.type("0");
    date.press_enter();
    EXPECT_EQ(events, 4) << "the form may tell it in words of its own";
    EXPECT_EQ(form->focus(), &date);
}

TEST_F(Controls, ADateIsSteppedThroughAndTodayIsOneKey) {
    DatePicker& date = form->date;
    const auto after = [&](int days, int months) {
        date.step(days, months);
        return date.text();
    };
    date.type("31/1/2008");
    EXPECT_EQ(after(1, 0), "01/02/2008") << "what is typed counts first";
    EXPECT_EQ(after(-1, 0), "31/01/2008");
    EXPECT_EQ(after(0, 1), "29/02/2008");
    EXPECT_EQ(after(0, -3), "29/11/2007");
    date.pick_today();
    EXPECT_EQ(date.text(), "01/04/2006");
}

TEST_F(Controls, OneOptionOfAFrame) {
    form->one.on_click = counting;
    form->one.click();
    form->two.click();
    EXPECT_FALSE(form->one.selected());
    EXPECT_TRUE(form->two.selected());
    EXPECT_EQ(events, 1);
}

TEST_F(Controls, ComboChoosesAndTypes) {
    form->combo.add_item("20");
    form->combo.add_item("10");
    int clicks = 0;
    form->combo.on_click = [&] { ++clicks; };
    form->combo.on_change = counting;
    form->combo.choose(1);
    EXPECT_EQ(form->combo.text(), "10");
    EXPECT_EQ(clicks, 1);
    EXPECT_EQ(events, 0);
    form->combo.set_text("22");
    EXPECT_EQ(form->combo.list_index(), -1);
    EXPECT_EQ(events, 1);
    form->combo.set_list_index(1);
    clicks = 0;
    form->combo.choose(1);
    EXPECT_EQ(clicks, 1) << "a click on the chosen item is a click all the same";
    EXPECT_THROW(form->combo.set_list_index(2), Failure);
    form->combo.choose(1);
    form->combo.type("5");
    EXPECT_EQ(form->combo.text(), "510");
    EXPECT_EQ(form->combo.list_index(), -1) << "a typed text is no item";
    form->combo.choose(1);
    EXPECT_EQ(form->combo.text(), "10") << "the item can be chosen again";
    form->combo.set_text("22");
    form->combo.set_list_only(true);
    form->combo.type("5");
    EXPECT_EQ(form->combo.text(), "22");
}

TEST_F(Controls, ListKeepsShortRows) {
    const std::string cells[] = {"1", "due"};
    form->list.add_row(cells);
    form->list.fill().begin_row();
    form->list.fill().add_cell("");
    form->list.fill().add_cell("x");
    form->list.fill().add_cell("y");
    EXPECT_EQ(form->list.rows().cell(0, 1), "due");
    EXPECT_EQ(form->list.rows().cell(0, 2), "");
    EXPECT_EQ(form->list.rows().cell(1, 2), "y");
    EXPECT_THROW(form->list.set_selected(2), Failure);
    form->list.on_item_click = counting;
    form->list.select_row(1);
    form->list.select_row(1);
    EXPECT_EQ(events, 2);
}

TEST_F(Controls, ArraysAndTabOrder) {
    struct Ordered : SampleForm {
        explicit Ordered(FormHost& host) : SampleForm(host) { order_tabs({&boxes[2], &boxes[0], &boxes[1]}); }
    };
    const auto ordered = std::make_shared<Ordered>(host);
    EXPECT_EQ(ordered->find("boxes_1"), &ordered->boxes[1]);
    ordered->date.enter();
    ordered->focus_next();
    EXPECT_EQ(ordered->focus(), &ordered->boxes[2]);
    ordered->focus_next();
    EXPECT_EQ(ordered->focus(), &ordered->boxes[0]);
}

} // namespace
} // namespace tarvello
