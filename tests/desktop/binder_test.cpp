#include "desktop/desktop_test.h"
#include "failure.h"
#include "platform/bars.h"
#include "platform/lists.h"
#include "platform/qt/binder.h"
#include "platform/qt/qt_text.h"
#include "support/plain_host.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QDateEdit>
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
        add(new QDateEdit, "date");
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
    user.type("a");
    user.press(Qt::Key_Enter);
    EXPECT_EQ(user.focus(), "combo");
    EXPECT_EQ(form->area.text(), "a");
    EXPECT_EQ(form->focus(), &form->combo);
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

TEST_F(Binder, ADateCountsWhenItIsWhole) {
    form->date.set_date(make_date(2006, 3, 5));
    int changes = 0;
    show();
    form->date.on_change = [&] { ++changes; };
    EXPECT_EQ(shown(form->date), "05/03/2006");
    QTest::mouseClick(widget<QDateEdit>(form->date)->findChild<QLineEdit*>(), Qt::LeftButton, {},
                      QPoint(8, 8));
    DesktopUser::settle();
    user.type("21");
    EXPECT_EQ(changes, 0) << "while it is being typed the form hears nothing";
    EXPECT_EQ(shown(form->date), "21/03/2006");
    click(form->text);
    EXPECT_EQ(form->date.date(), make_date(2006, 3, 21));
    EXPECT_EQ(changes, 1);
    // What the form does about a typed date decides where the focus goes, not where the user was going.
    form->date.set_date(make_date(2006, 3, 5));
    form->date.on_change = [this] { form->combo.set_focus(); };
    form->date.set_focus();
    QTest::keyClicks(widget<QDateEdit>(form->date), "21");
    QTest::keyClick(widget<QDateEdit>(form->date), Qt::Key_Tab);
    DesktopUser::settle();
    EXPECT_EQ(form->focus(), &form->combo);
    EXPECT_TRUE(widget<QWidget>(form->combo)->hasFocus());
    form->date.on_change = nullptr;
    for (const char* typed : {"01/02/1980", "01021980", "1/2/1980", "01-02-1980", "1.02.1980"}) {
        form->date.set_date(make_date(2006, 3, 15));
        form->button.set_focus();
        form->date.set_focus();
        QTest::keyClick(widget<QDateEdit>(form->date), Qt::Key_A, Qt::ControlModifier);
        QTest::keyClicks(widget<QDateEdit>(form->date), typed);
        QTest::keyClick(widget<QDateEdit>(form->date), Qt::Key_Return);
        EXPECT_EQ(form->date.date(), make_date(1980, 2, 1)) << typed;
    }
    form->date.on_change = [this] { form->date.set_date(make_date(2006, 3, 5)); };
    form->date.set_focus();
    user.press(Qt::Key_Up);
    EXPECT_EQ(shown(form->date), "05/03/2006") << "the form refuses it";
}

TEST_F(Binder, AListOfAHundredThousandRowsIsMovedInWithKeysAndMouse) {
    show();
    for (int i = 0; i < 100000; ++i) {
        form->list.fill().begin_row();
        form->list.fill().add_cell("cliente " + std::to_string(i));
        form->list.fill().add_cell("€ 1,00");
    }
    form->list.rows_added();
    std::string clicked;
    form->list.on_item_click = [&] { clicked += std::to_string(*form->list.selected()) + " "; };
    form->list.on_double_click = [&] { clicked += "! "; };
    user.click_row("frmProva", "list", 2);
    user.press(Qt::Key_Down);
    user.press(Qt::Key_End);
    EXPECT_EQ(clicked, "2 3 99999 ");
    user.press(Qt::Key_Return);
    EXPECT_EQ(clicked, "2 3 99999 99999 ! ") << "Enter is a double click";
    auto* view = widget<QTreeView>(form->list);
    EXPECT_EQ(view->model()->index(99999, 0).data().toString(), "cliente 99999");
    EXPECT_TRUE(view->model()->index(0, 1).data(Qt::TextAlignmentRole).toInt() & Qt::AlignRight);
    clicked.clear();
    form->list.set_selected(7);
    EXPECT_EQ(clicked, "7 ");
    EXPECT_EQ(view->currentIndex().row(), 7);
    form->list.clear();
    DesktopUser::settle();
    EXPECT_EQ(view->model()->rowCount(), 0);
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
