#include "desktop/desktop_test.h"
#include "failure.h"
#include "platform/bars.h"
#include "platform/lists.h"
#include "platform/qt/binder.h"
#include "platform/qt/qt_text.h"
#include "support/plain_host.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QCalendarWidget>
#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QInputMethodEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTest>
#include <QTimer>
#include <QToolButton>
#include <QTreeView>
#include <QVBoxLayout>

namespace tarvello::testing {
namespace {

using qt::to_qt;

/// One control of each kind whose behaviour at the keyboard or the mouse is the binder's work.
struct frmProva : Form {
    explicit frmProva(FormHost& host) : Form(host, "frmProva") {
        bar.add_button("Uno", "Uno", "");
        label.on_click = [this] { presses += 'l'; };
        button.on_click = [this] { presses += 'b'; };
        bar.on_button_click = [this](ToolButton&) { presses += 't'; };
        for (const char* item : {"20", "10", "Esente"}) combo.add_item(item);
        for (const char* item : {"uno", "due"}) choice.add_item(item);
        choice.set_list_only(true);
        list.add_column({"Nome", "nome"});
        list.add_column({"Importo", "importo", true});
    }

    TextBox text{*this, "text"};
    TextBox area{*this, "area"};
    ComboBox combo{*this, "combo"};
    ComboBox choice{*this, "choice"};
    CheckBox check{*this, "check"};
    Frame frame{*this, "frame"};
    OptionButton one{frame, "one"};
    OptionButton two{frame, "two"};
    DatePicker date{*this, "date"};
    ListView list{*this, "list"};
    CommandButton button{*this, "button"};
    Toolbar bar{*this, "bar"};
    Label label{*this, "label"};
    std::string presses;
};

struct Binder : ::testing::Test {
    Binder() {
        auto* layout = new QVBoxLayout(&window);
        const auto add = [&](QWidget* widget, const char* name) {
            widget->setObjectName(QString::fromLatin1(name));
            layout->addWidget(widget);
        };
        add(new QLineEdit, "text");
        add(new QPlainTextEdit, "area");
        add(new QComboBox, "combo");
        add(new QComboBox, "choice");
        add(new QCheckBox, "check");
        auto* frame = new QWidget;
        add(frame, "frame");
        auto* options = new QVBoxLayout(frame);
        for (const char* name : {"one", "two"}) {
            auto* option = new QRadioButton;
            option->setObjectName(QString::fromLatin1(name));
            options->addWidget(option);
        }
        add(new QLineEdit, "date");
        add(new QTreeView, "list");
        add(new QPushButton, "button");
        auto* bar = new QWidget;
        add(bar, "bar");
        auto* tools = new QVBoxLayout(bar);
        auto* tool = new QToolButton;
        tool->setObjectName("bar_1");
        tools->addWidget(tool);
        add(new QLabel, "label");
    }
    ~Binder() override { QObject::disconnect(focus_link); }

    /// Binds and shows; what the test sets on the form before must be seen too.
    void show() {
        binder = std::make_unique<qt::WindowBinder>(form, window, regional);
        ASSERT_TRUE(binder->missing().empty()) << binder->missing().front();
        focus_link = QObject::connect(qApp, &QApplication::focusChanged, [this](QWidget*, QWidget* now) {
            if (now) binder->focus().arrived(now);
        });
        window.show();
        window.activateWindow();
        binder->focus().show_first();
        DesktopUser::settle();
    }

    QWidget* widget(const Control& control) { return window.findChild<QWidget*>(to_qt(control.name())); }
    template <typename Widget>
    Widget* widget(const Control& control) {
        return qobject_cast<Widget*>(widget(control));
    }
    std::string shown(const Control& control) { return user.shown("frmProva", control.name()); }
    void click(const Control& control) { user.click("frmProva", control.name()); }

    PlainHost host;
    RegionalSettings regional;
    qt::QtWindows windows{regional};
    qt::QtBoxes boxes{windows};
    std::shared_ptr<frmProva> form = std::make_shared<frmProva>(host);
    struct Window : QWidget {
        Window() { setObjectName("frmProva"); }
    } window;
    std::unique_ptr<qt::WindowBinder> binder;
    QMetaObject::Connection focus_link;
    DesktopUser user;
};

// Texts

TEST_F(Binder, TypedKeysGoThroughTheFilterAndPastedTextsDoNot) {
    show();
    std::string offered;
    form->text.on_key_press = [&](int& key) {
        offered += std::to_string(key) + " ";
        if (key == 'x') key = 0;
        if (key == 'y') key = 'z';
    };
    click(form->text);
    user.type("axby€😀");
    EXPECT_EQ(form->text.text(), "abz€😀");
    EXPECT_EQ(shown(form->text), "abz€😀");
    offered.clear();
    user.press(Qt::Key_Backspace);
    EXPECT_EQ(form->text.text(), "abz€");
    user.press(Qt::Key_Escape);
    user.press(Qt::Key_Delete);
    QApplication::clipboard()->setText("xx");
    user.press(Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(form->text.text(), "abz€xx");
    EXPECT_EQ(offered, "8 27 ") << "neither Delete nor a shortcut is a key";
    QInputMethodEvent composed;
    composed.setCommitString("éx");
    QApplication::sendEvent(widget(form->text), &composed);
    EXPECT_EQ(form->text.text(), "abz€xxé") << "what an input method writes is typed too";
}

TEST_F(Binder, TheCaretIsTheSameOnBothSides) {
    show();
    form->text.set_text("a😀bc");
    std::size_t seen = 99;
    form->text.on_key_press = [&](int&) { seen = form->text.selection_start(); };
    click(form->text);
    user.press(Qt::Key_End);
    user.type("d");
    EXPECT_EQ(seen, 4u) << "an emoji is one character";
    user.press(Qt::Key_Home);
    user.press(Qt::Key_Right);
    user.press(Qt::Key_Right);
    user.type("X");
    EXPECT_EQ(seen, 2u);
    EXPECT_EQ(form->text.text(), "a😀Xbcd");
    form->text.select(2, 2);
    EXPECT_EQ(widget<QLineEdit>(form->text)->selectedText(), "Xb");
    user.type("-");
    EXPECT_EQ(form->text.text(), "a😀-cd");
    form->text.on_change = [&] { form->text.set_text("altro"); };
    user.type("q");
    EXPECT_EQ(shown(form->text), "altro");
    EXPECT_EQ(widget<QLineEdit>(form->text)->cursorPosition(), 0)
        << "set by code: the caret goes to the start";
}

TEST_F(Binder, TheLongestTextCountsCharactersAndStopsTheUserOnly) {
    form->text.set_max_length(5);
    form->area.set_max_length(3);
    show();
    click(form->text);
    user.type("ab😀cdef");
    EXPECT_EQ(form->text.text(), "ab😀cd");
    EXPECT_EQ(shown(form->text), "ab😀cd");
    user.press(Qt::Key_Home);
    user.press(Qt::Key_Delete);
    QApplication::clipboard()->setText("123");
    user.press(Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(form->text.text(), "1b😀cd") << "a paste that is too long loses its end";
    form->text.set_text("longer than five");
    EXPECT_EQ(shown(form->text), "longer than five");
    user.press(Qt::Key_End);
    user.press(Qt::Key_Backspace);
    EXPECT_EQ(form->text.text(), "longer than fiv") << "what is too long can be made shorter";
    click(form->area);
    user.type("wxyz");
    EXPECT_EQ(form->area.text(), "wxy");
    EXPECT_EQ(shown(form->area), "wxy");
}

TEST_F(Binder, WhatIsPutIntoABoxOfOneLineComesInOneLine) {
    show();
    int edits = 0;
    const auto paste_into = [&](TextEntry& entry) {
        entry.set_text("ab\nc");
        entry.on_edit = [&] { ++edits; };
        click(entry);
        user.press(Qt::Key_End);
        user.press(Qt::Key_Left);
        user.press(Qt::Key_V, Qt::ControlModifier);
        return entry.text();
    };
    QApplication::clipboard()->setText("\r\n1\r\n\n2\n");
    EXPECT_EQ(paste_into(form->text), "ab\n1 2c") << "what the program has put there stays";
    EXPECT_EQ(shown(form->text), "ab\n1 2c");
    EXPECT_EQ(widget<QLineEdit>(form->text)->cursorPosition(), 6);
    EXPECT_EQ(paste_into(form->combo), "ab\n1 2c");
    EXPECT_NE(paste_into(form->area).find("1\n\n2\n"), std::string::npos) << "an area takes lines";
    EXPECT_EQ(edits, 3);

    // All that changes the text counts as typing.
    form->text.set_text("uno");
    edits = 0;
    click(form->text);
    user.press(Qt::Key_A, Qt::ControlModifier);
    user.press(Qt::Key_X, Qt::ControlModifier);
    user.press(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(form->text.text(), "uno");
    user.press(Qt::Key_A, Qt::ControlModifier);
    user.press(Qt::Key_Delete);
    EXPECT_EQ(edits, 3);
    QMimeData dragged;
    dragged.setText("x\ny");
    auto* line = widget<QLineEdit>(form->text);
    QDropEvent drop(QPointF(3, 3), Qt::CopyAction, &dragged, Qt::LeftButton, Qt::NoModifier);
    static_cast<QObject*>(line)->event(&drop); // the toolkit lets none through that no drag has brought
    EXPECT_EQ(form->text.text(), "x y");
    EXPECT_EQ(edits, 4);
}

TEST_F(Binder, LockedBoxesCanBeReadAndCopiedOnly) {
    form->text.set_text("fisso");
    form->text.set_locked(true);
    form->combo.set_text("20");
    form->combo.set_locked(true);
    show();
    click(form->text);
    user.type("x");
    EXPECT_EQ(form->text.text(), "fisso");
    user.press(Qt::Key_A, Qt::ControlModifier);
    user.press(Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QApplication::clipboard()->text(), "fisso");
    user.choose("frmProva", "combo", 1);
    EXPECT_EQ(form->combo.text(), "20");
    EXPECT_EQ(shown(form->combo), "20") << "what the widget chose by itself is taken back";
    form->area.set_locked(true);
    form->area.set_locked(false);
    user.type("frmProva", "area", "scritto");
    EXPECT_EQ(form->area.text(), "scritto") << "unlocked, it can be written again";
}

TEST_F(Binder, EnterMovesOnAndWritesNothing) {
    show();
    click(form->text);
    user.press(Qt::Key_Return);
    EXPECT_EQ(user.focus(), "area");
    EXPECT_TRUE(QApplication::activeWindow()->testAttribute(Qt::WA_KeyboardFocusChange)) << "it is marked";
    user.type("a");
    user.press(Qt::Key_Enter);
    EXPECT_EQ(user.focus(), "combo");
    EXPECT_EQ(form->area.text(), "a");
    EXPECT_EQ(form->focus(), &form->combo);
}

TEST_F(Binder, KeysThatNothingTakesAndShortcutsReachTheForm) {
    form->button.set_caption("&Uno");
    form->button.set_tool_tip("Fa una cosa");
    form->button.set_shortcut("Ctrl+S");
    form->bar.button(1).set_shortcut("F9");
    form->set_keys(&form->bar.button(1), &form->button);
    show();
    EXPECT_EQ(widget(form->button)->toolTip(), "Fa una cosa (Ctrl+S)");
    EXPECT_EQ(widget(form->bar.button(1))->toolTip(), "Uno (F9)");
    form->bar.button(1).set_caption("Due");
    EXPECT_EQ(widget(form->bar.button(1))->toolTip(), "Due (F9)");
    click(form->text);
    user.press(Qt::Key_S, Qt::ControlModifier);
    user.press(Qt::Key_U, Qt::AltModifier);
    user.press(Qt::Key_F9);
    EXPECT_EQ(form->presses, "bbt");
    form->check.set_focus();
    user.press(Qt::Key_Return);
    user.press(Qt::Key_Escape);
    EXPECT_EQ(form->presses, "bbttb");
    click(form->date);
    user.type("31/2/2006");
    user.press(Qt::Key_F9);
    EXPECT_EQ(form->presses, "bbttb") << "no command before the date is read";
    user.press(Qt::Key_F1);
    EXPECT_EQ(host.warnings.back(), '?') << "the guide";

    click(form->area);
    user.type("a");
    user.press(Qt::Key_Return, Qt::ControlModifier);
    user.type("b");
    EXPECT_EQ(form->area.text(), "a\nb");
    click(form->text);
    user.press(Qt::Key_Return, Qt::ControlModifier);
    EXPECT_EQ(form->text.text(), "");
}

TEST_F(Binder, ABoxAboutChangesCanBeLeftWithoutAnAnswer) {
    show();
    const auto answer_to = [&](auto act) {
        QTimer::singleShot(0, [&] { act(QApplication::activeModalWidget()); });
        return boxes.show({"Salvare?", "prova", BoxIcon::information, BoxButtons::yes_no, 2, true});
    };
    qApp->removeEventFilter(&user); // this test answers by itself
    EXPECT_EQ(answer_to([](QWidget* box) { QTest::keyClick(box, Qt::Key_Escape); }), Answer::cancel);
    EXPECT_EQ(answer_to([](QWidget* box) { box->close(); }), Answer::cancel);
    EXPECT_EQ(answer_to([](QWidget* box) { QTest::keyClick(box, Qt::Key_Return); }), Answer::no);
}

TEST_F(Binder, AnEditableComboTypesChoosesAndKeepsWhatIsInNoList) {
    int clicks = 0;
    form->combo.on_click = [&] { ++clicks; };
    show();
    user.choose("frmProva", "combo", 2);
    EXPECT_EQ(form->combo.text(), "Esente");
    EXPECT_EQ(form->combo.list_index(), 2);
    EXPECT_EQ(clicks, 1);
    user.type("frmProva", "combo", "20");
    click(form->text);
    EXPECT_EQ(form->combo.text(), "20");
    EXPECT_EQ(clicks, 1) << "typing a text of the list, and leaving, chooses nothing";
    form->choice.set_text("altro");
    EXPECT_EQ(shown(form->choice), "");
    EXPECT_EQ(widget<QComboBox>(form->choice)->placeholderText(), "altro");
    user.choose("frmProva", "choice", 1);
    EXPECT_EQ(form->choice.text(), "due");
}

// Focus and presses

TEST_F(Binder, TheFocusGoesBothWaysAndEachEventComesOnce) {
    std::string events;
    const auto note = [&](Control& control, const std::string& letter) {
        control.on_got_focus = [&events, letter] { events += "+" + letter; };
        control.on_lost_focus = [&events, letter] { events += "-" + letter; };
    };
    note(form->text, "t");
    note(form->area, "a");
    note(form->button, "b");
    show();
    EXPECT_EQ(events, "+t") << "the first control has the focus from the start";
    user.press(Qt::Key_Tab);
    click(form->button);
    form->text.set_focus();
    EXPECT_EQ(user.focus(), "text");
    EXPECT_EQ(events, "+t-t+a-a+b-b+t");
    form->text.set_enabled(false);
    DesktopUser::settle();
    EXPECT_EQ(events, "+t-t+a-a+b-b+t-t+a") << "a control that is disabled gives the focus on";
    EXPECT_EQ(user.focus(), "area");
}

TEST_F(Binder, APressIsLostWhenTheFieldThatIsLeftKeepsTheFocus) {
    show();
    form->text.on_lost_focus = [this] {
        form->text.set_focus(); // before the box: its coming and going must not undo it
        boxes.show({"no", "prova"});
    };
    for (const Control* control : std::initializer_list<const Control*>{
             &form->button, &form->bar.button(1), &form->check, &form->one, &form->label, &form->list}) {
        click(form->text);
        user.expect_box("no");
        click(*control);
        EXPECT_EQ(form->focus(), &form->text) << control->name();
        EXPECT_EQ(user.focus(), "text") << control->name();
        if (auto* button = widget<QAbstractButton>(*control)) {
            EXPECT_FALSE(button->isDown());
        }
    }
    EXPECT_EQ(form->presses, "");
    EXPECT_FALSE(form->check.checked() || form->one.selected());
    form->text.on_lost_focus = nullptr;
    click(form->button);
    click(form->bar.button(1));
    click(form->label);
    click(form->check);
    EXPECT_EQ(form->presses, "btl");
    EXPECT_TRUE(form->check.checked());
}

TEST_F(Binder, APressGoesOnAfterABoxThatLeavesTheFocusFree) {
    show();
    form->text.on_lost_focus = [this] { boxes.show({"solo un avviso", "prova"}); };
    click(form->text);
    user.expect_box("solo un avviso");
    click(form->button);
    EXPECT_EQ(form->presses, "b") << "once: the press was answered while the box was open";
    EXPECT_FALSE(widget<QPushButton>(form->button)->isDown());
}

TEST_F(Binder, TheSecondOfTwoQuickPressesIsNoneOnAnotherButton) {
    show();
    const QPointF place(300, 300);
    const auto press = [&](Control& control, unsigned long long at) {
        control.set_focus();
        for (const auto type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease}) {
            QMouseEvent event(type, {4, 4}, place, Qt::LeftButton,
                              type == QEvent::MouseButtonPress ? Qt::LeftButton : Qt::NoButton,
                              Qt::NoModifier);
            event.setTimestamp(at);
            QApplication::sendEvent(widget(control), &event);
        }
        DesktopUser::settle();
        return form->presses;
    };
    EXPECT_EQ(press(form->button, 1'000'000), "b");
    EXPECT_EQ(press(form->button, 1'000'100), "bb") << "the same button with the same task";
    EXPECT_EQ(press(form->bar.button(1), 1'000'200), "bb") << "it has come to where the other one was";
    EXPECT_EQ(press(form->bar.button(1), 1'000'900), "bbt");
    form->bar.button(1).set_caption("Aggiorna Dati");
    EXPECT_EQ(press(form->bar.button(1), 1'001'000), "bbt") << "the same button with another task";
    EXPECT_EQ(press(form->bar.button(1), 1'002'000), "bbtt");
    user.press(Qt::Key_Return);
    QKeyEvent held(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, "\r", true);
    QApplication::sendEvent(widget(form->bar.button(1)), &held);
    EXPECT_EQ(form->presses, "bbttt") << "Enter that is held down presses once";
}

TEST_F(Binder, EverythingCanBePressedWithTheKeyboard) {
    show();
    form->label.set_focus();
    user.press(Qt::Key_Return);
    user.press(Qt::Key_Space);
    form->button.set_focus();
    user.press(Qt::Key_Return);
    user.press(Qt::Key_Space);
    form->bar.button(1).set_focus();
    user.press(Qt::Key_Return);
    EXPECT_EQ(form->presses, "llbbt");
    form->check.on_key_press = [this](int& key) {
        if (key == keys::enter) form->check.set_checked(!form->check.checked());
    };
    form->check.set_focus();
    user.press(Qt::Key_Return);
    EXPECT_EQ(shown(form->check), "1");
    user.press(Qt::Key_Space);
    EXPECT_EQ(shown(form->check), "0");
    form->one.set_focus();
    user.press(Qt::Key_Down);
    EXPECT_TRUE(form->two.selected());
    user.press(Qt::Key_Down);
    EXPECT_TRUE(form->one.selected());
    EXPECT_EQ(shown(form->two), "0");
}

// Dates and lists

TEST_F(Binder, ADateIsTypedAndReadWhenTheFieldIsLeft) {
    form->date.set_date(make_date(2006, 4, 30));
    show();
    auto* field = widget<QLineEdit>(form->date);
    EXPECT_EQ(field->text(), "30/04/2006");
    click(form->date);
    user.type("3112");
    EXPECT_EQ(form->date.date(), make_date(2006, 4, 30));
    // Another window comes to the front and goes again in the midst of it.
    field->clearFocus();
    field->setFocus(Qt::ActiveWindowFocusReason);
    user.type("1980");
    click(form->text);
    EXPECT_EQ(form->date.date(), make_date(1980, 12, 31)) << "a click into its middle selects all of it";
    form->date.set_focus();
    user.type("20/12/06");
    user.press(Qt::Key_Tab);
    EXPECT_EQ(field->text(), "20/12/2006");
    EXPECT_EQ(user.focus(), "list");
    QApplication::clipboard()->setText(" 1.2.1980\n");
    click(form->date);
    user.press(Qt::Key_V, Qt::ControlModifier);
    user.press(Qt::Key_Return);
    EXPECT_EQ(form->date.date(), make_date(1980, 2, 1));
    click(form->date);
    user.type("29/02/1981");
    click(form->button);
    EXPECT_EQ(form->presses, "") << "no command runs before the date is read";
    EXPECT_EQ(host.warnings, "La data \"29/02/1981\" non esiste.|");
    EXPECT_TRUE(field->hasFocus());
    EXPECT_EQ(field->selectedText(), "01/02/1980") << "the old one, selected";
    user.type("3");
    user.press(Qt::Key_Escape);
    user.press(Qt::Key_Z, Qt::ControlModifier);
    click(form->button);
    EXPECT_EQ(form->presses, "b") << "undone, there is nothing left to read";
    click(form->date);
    QTest::mousePress(field, Qt::LeftButton, {}, QPoint(4, 8));
    QTest::mouseMove(field, QPoint(22, 8));
    QTest::mouseRelease(field, Qt::LeftButton, {}, QPoint(22, 8));
    EXPECT_TRUE(field->text().startsWith(field->selectedText()) && field->selectionLength() < 9) << "by hand";
}

TEST_F(Binder, ADateIsSteppedThroughWithKeysAndPickedInTheCalendar) {
    form->date.set_date(make_date(2006, 3, 5));
    show();
    click(form->date);
    const auto after = [this](Qt::Key key, Qt::KeyboardModifiers held = {}) {
        user.press(key, held);
        return shown(form->date);
    };
    EXPECT_EQ(after(Qt::Key_Up), "06/03/2006");
    EXPECT_EQ(after(Qt::Key_Down), "05/03/2006");
    EXPECT_EQ(after(Qt::Key_PageUp), "05/04/2006");
    EXPECT_EQ(after(Qt::Key_PageDown), "05/03/2006");
    EXPECT_EQ(after(Qt::Key_O, Qt::ControlModifier), "01/04/2006");
    user.press(Qt::Key_Up);
    user.type("+");
    EXPECT_EQ(shown(form->date), "01/04/2006");

    const auto calendar = [] { return QApplication::activePopupWidget()->findChild<QCalendarWidget*>(); };
    user.press(Qt::Key_F4);
    ASSERT_TRUE(QApplication::activePopupWidget());
    QTest::keyClick(QApplication::activePopupWidget(), Qt::Key_Escape);
    EXPECT_EQ(shown(form->date), "01/04/2006");
    EXPECT_EQ(user.focus(), "date");
    form->date.on_change = [this] { boxes.show({"Nuovo anno?", "prova"}); };
    QTest::mouseClick(widget<QLineEdit>(form->date)->findChild<QToolButton*>(), Qt::LeftButton);
    calendar()->setCurrentPage(2007, 1);
    auto* days = calendar()->findChild<QAbstractItemView*>("qt_calendar_calendarview");
    QModelIndex middle;
    for (int row = 1; row < days->model()->rowCount(); ++row) {
        for (int column = 0; column < days->model()->columnCount(); ++column) {
            const auto cell = days->model()->index(row, column);
            if (cell.data().toInt() == 15) middle = cell;
        }
    }
    user.expect_box("Nuovo anno?");
    QTest::mouseClick(days->viewport(), Qt::LeftButton, {}, days->visualRect(middle).center());
    DesktopUser::settle();
    EXPECT_EQ(form->date.date(), make_date(2007, 1, 15)) << "a picked day counts at once";
    EXPECT_FALSE(QApplication::activePopupWidget());

    // What the form does about a date decides where the focus goes and what stands there.
    form->date.on_change = [this] { form->date.set_date(make_date(2006, 3, 5)); };
    user.press(Qt::Key_Up);
    EXPECT_EQ(shown(form->date), "05/03/2006") << "the form refuses it";
    form->date.on_change = [this] { form->combo.set_focus(); };
    user.type("21/3/2006");
    user.press(Qt::Key_Tab);
    EXPECT_EQ(form->focus(), &form->combo);
    EXPECT_TRUE(widget(form->combo)->hasFocus());
}

TEST_F(Binder, AListOfAHundredThousandRowsIsMovedInAndTheHighlightedRowIsTheSelectedOne) {
    show();
    for (int i = 0; i < 100000; ++i) {
        form->list.fill().begin_row();
        form->list.fill().add_cell(i == 2 ? "Verdi\nMario" : "cliente " + std::to_string(i));
        form->list.fill().add_cell("€ 1,00");
    }
    form->list.rows_added();
    std::string clicked;
    form->list.on_item_click = [&] { clicked += std::to_string(*form->list.selected()) + " "; };
    form->list.on_double_click = [&] { clicked += "! "; };
    auto* view = widget<QTreeView>(form->list);
    const QAbstractItemModel* rows = view->model();
    const auto at = [&](int row) { return view->visualRect(rows->index(row, 0)).center(); };
    const auto selected = [&] {
        DesktopUser::settle();
        const auto chosen = view->selectionModel()->selectedRows();
        const int highlighted = chosen.isEmpty() ? -1 : chosen.first().row();
        EXPECT_EQ(form->list.selected() ? static_cast<int>(*form->list.selected()) : -1, highlighted);
        return highlighted;
    };
    form->list.set_focus();
    EXPECT_EQ(selected(), -1);
    user.press(Qt::Key_Down);
    EXPECT_EQ(selected(), 0) << "the first key begins at the first row";
    user.click_row("frmProva", "list", 2);
    user.press(Qt::Key_Down);
    user.press(Qt::Key_End);
    user.press(Qt::Key_Return);
    EXPECT_EQ(clicked, "0 2 3 99999 99999 ! ") << "Enter is a double click";
    EXPECT_EQ(rows->index(99999, 0).data().toString(), "cliente 99999");
    EXPECT_TRUE(rows->index(0, 1).data(Qt::TextAlignmentRole).toInt() & Qt::AlignRight);

    user.press(Qt::Key_Home);
    QTest::mouseClick(view->viewport(), Qt::RightButton, {}, at(1));
    EXPECT_EQ(selected(), 1);
    QTest::mousePress(view->viewport(), Qt::LeftButton, {}, at(0));
    QTest::mouseMove(view->viewport(), at(2));
    QTest::mouseRelease(view->viewport(), Qt::LeftButton, {}, at(2));
    EXPECT_NE(selected(), -1);
    for (int i = 0; i < 2; ++i)
        QTest::mouseClick(view->viewport(), Qt::LeftButton, Qt::ControlModifier, at(2));
    selected();
    user.press(Qt::Key_Down, Qt::ControlModifier);
    selected();
    user.press(Qt::Key_Space, Qt::ControlModifier);
    selected();
    QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, at(1));
    clicked.clear();
    QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, at(1));
    EXPECT_EQ(clicked, "1 ") << "a click on the selected row is a click all the same";
    EXPECT_EQ(view->visualRect(rows->index(2, 0)).height(), view->visualRect(rows->index(1, 0)).height());
    EXPECT_FALSE(rows->index(2, 0).data().toString().contains('\n'));
    EXPECT_TRUE(rows->index(2, 0).data(Qt::ToolTipRole).toString().contains("Mario"));
    form->list.set_selected(7);
    EXPECT_EQ(clicked, "1 7 ");
    EXPECT_EQ(view->currentIndex().row(), 7);
    form->list.clear();
    DesktopUser::settle();
    EXPECT_EQ(rows->rowCount(), 0);
    EXPECT_FALSE(view->currentIndex().isValid());
}

TEST_F(Binder, TheMouseOverSomethingReachesTheInnermostAndOnlyIt) {
    show();
    std::string moves;
    form->label.on_mouse_move = [&] { moves += "l"; };
    form->frame.on_mouse_move = [&] { moves += "f"; };
    form->on_mouse_move = [&] { moves += "w"; };
    user.move_mouse_over("frmProva", "label");
    user.move_mouse_over("frmProva", "frame");
    user.move_mouse_over("frmProva", "one");
    EXPECT_EQ(moves, "lf") << "a control without the event keeps it";
    form->label.set_enabled(false);
    moves.clear();
    user.move_mouse_over("frmProva", "label");
    EXPECT_EQ(moves, "w") << "over a disabled control the window has it";
}

} // namespace
} // namespace tarvello::testing
