#include "desktop/all_forms.h"
#include "desktop/look_check.h"
#include "platform/qt/binder.h"
#include "platform/qt/form_windows.h"
#include "platform/qt/pictures.h"
#include "platform/qt/qt_text.h"
#include "platform/qt/windows.h"
#include "support/program_test.h"

#include <gtest/gtest.h>

#include <QAccessible>
#include <QAction>
#include <QApplication>
#include <QDir>
#include <QFontInfo>
#include <QImageReader>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QTabBar>
#include <QTabWidget>
#include <QTest>

namespace tarvello::testing {
namespace {

using qt::from_qt;
using qt::to_qt;

/// Each form beside its window, before anything is loaded into it.
class Windows : public ProgramTest, public ::testing::WithParamInterface<FormMaker> {
protected:
    void SetUp() override {
        form = GetParam().make(*program);
        ASSERT_EQ(form->name(), GetParam().name);
        window = qt::make_window(form->name());
        ASSERT_TRUE(window);
        binder = std::make_unique<qt::WindowBinder>(form, *window, regional);
    }
    void TearDown() override { binder.reset(); }

    /// Shows the form as the program does: in the main window, or before it.
    QWidget& show_in(qt::QtWindows& windows) {
        binder.reset();
        if (form->name() != "MDIForm1") {
            program->form<MDIForm1>().set_size(14000, 10080);
            windows.show(program->form<MDIForm1>());
        }
        windows.show(*form);
        QApplication::processEvents();
        return *windows.window(*form);
    }

    QWidget* widget_of(const Control& control) { return window->findChild<QWidget*>(to_qt(control.name())); }

    /// Names of objects that the toolkit makes for itself start so.
    static bool is_own_name(const QString& name) { return !name.isEmpty() && !name.startsWith("qt_"); }

    RegionalSettings regional;
    std::shared_ptr<Form> form;
    std::unique_ptr<QWidget> window;
    std::unique_ptr<qt::WindowBinder> binder;
};

TEST_P(Windows, EveryControlHasItsWidgetAndEveryNamedWidgetItsControl) {
    for (const std::string& name : binder->missing()) ADD_FAILURE() << "no fitting widget for " << name;
    // Only those that the .ui file names: their parents are the window, or others that it names.
    const auto named = qt::make_window(form->name());
    std::set<QString> names;
    for (const QObject* object : named->findChildren<QObject*>()) {
        const QString name = object->objectName();
        if (!is_own_name(name) || object->inherits("QLayout") || object->inherits("QButtonGroup")) continue;
        if (name.startsWith("ui_")) continue;
        const bool inside =
            object->parent() != named.get() && object->parent()->objectName().startsWith("qt_");
        if (inside || name == "ScrollLeftButton" || name == "ScrollRightButton") continue;
        EXPECT_TRUE(form->find(from_qt(name))) << "no control for " << from_qt(name);
        EXPECT_TRUE(names.insert(name).second) << "two widgets are called " << from_qt(name);
    }
}

TEST_P(Windows, WhatLiesInAFrameLiesInItsWidget) {
    window->show();
    for (const Control* control : form->controls()) {
        QWidget* widget = widget_of(*control);
        if (!widget || qobject_cast<QMenu*>(widget)) continue;
        const QWidget* around = control->frame() ? widget_of(*control->frame()) : window.get();
        ASSERT_TRUE(around) << control->name();
        EXPECT_TRUE(around->isAncestorOf(widget)) << control->name();
        if (control->takes_focus() && control->reachable()) {
            EXPECT_TRUE(widget->isEnabledTo(window.get())) << control->name();
        }
        bool visible = true;
        for (const Control* it = control; it; it = it->frame()) visible = visible && it->visible();
        if (!visible) {
            EXPECT_FALSE(widget->isVisibleTo(window.get())) << control->name();
        }
    }
}

TEST_P(Windows, TheTabKeyGoesThroughTheControlsInTheirOrder) {
    std::vector<QWidget*> wanted;
    for (const Control* control : form->controls()) {
        if (QWidget* widget = widget_of(*control); widget && control->takes_focus()) wanted.push_back(widget);
    }
    std::vector<QWidget*> found;
    for (QWidget* next = window->nextInFocusChain(); next != window.get(); next = next->nextInFocusChain()) {
        if (std::find(wanted.begin(), wanted.end(), next) != wanted.end()) found.push_back(next);
    }
    ASSERT_EQ(found.size(), wanted.size());
    for (std::size_t i = 0; i < found.size(); ++i) {
        EXPECT_EQ(from_qt(found[i]->objectName()), from_qt(wanted[i]->objectName())) << "place " << i;
    }
}

/// As the program puts it on the screen. For the eye: a picture of each in the folder TARVELLO_SHOTS of the
/// environment.
TEST_P(Windows, LooksLikeThis) {
    qt::QtWindows windows(regional);
    QWidget& shown = show_in(windows);
    for (const std::string& fault : look_faults(shown)) ADD_FAILURE() << fault;
    const QString folder = qEnvironmentVariable("TARVELLO_SHOTS");
    if (!folder.isEmpty()) shown.grab().save(folder + "/" + shown.objectName() + ".png");
}

TEST_P(Windows, AScreenReaderSaysTheWordsOnTheScreenAndNotTheToolTip) {
    std::set<const QWidget*> with_words;
    for (const QLabel* label : window->findChildren<QLabel*>()) {
        if (!label->text().isEmpty() && !label->isHidden()) with_words.insert({label, label->buddy()});
    }
    for (const Control* control : form->controls()) {
        QWidget* widget = widget_of(*control);
        if (!widget || !with_words.contains(widget) || control->tool_tip().empty()) continue;
        EXPECT_NE(from_qt(QAccessible::queryAccessibleInterface(widget)->text(QAccessible::Name)),
                  control->tool_tip())
            << control->name();
    }
}

TEST_P(Windows, TheCommandsOfTheBigFormsTellTheirKeysAndFollowThem) {
    if (GetParam().name != "frmTarvello" && GetParam().name != "frmClienti") return;
    qt::QtWindows windows(regional);
    QWidget& shown = show_in(windows);
    std::string pressed;
    for (Control* control : form->controls()) {
        if (auto* button = dynamic_cast<CommandButton*>(control))
            button->on_click = [&pressed, button] { pressed = button->name(); };
        if (auto* bar = dynamic_cast<Toolbar*>(control))
            bar->on_button_click = [&pressed](const ToolButton& button) { pressed = button.name(); };
    }
    for (const Control* control : form->controls()) {
        const auto* command = dynamic_cast<const PictureButton*>(control);
        const auto* widget = shown.findChild<QWidget*>(to_qt(control->name()));
        if (!command || !widget->isVisible()) continue;
        EXPECT_TRUE(widget->toolTip().endsWith(')')) << control->name();
        if (command->shortcut().empty() || !command->reachable()) continue;
        QTest::keySequence(QApplication::focusWidget(), QKeySequence(to_qt(command->shortcut())));
        EXPECT_EQ(pressed, command->name()) << command->shortcut();
    }
}

TEST_P(Windows, TheTabKeyReachesEverything) {
    qt::QtWindows windows(regional);
    QWidget& shown = show_in(windows);
    std::set<QWidget*> reached;
    for (std::size_t i = 0; i <= form->controls().size() && QApplication::focusWidget(); ++i) {
        reached.insert(QApplication::focusWidget());
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        QApplication::processEvents();
    }
    for (const Control* control : form->controls()) {
        auto* widget = shown.findChild<QWidget*>(to_qt(control->name()));
        if (!widget || !control->takes_focus() || !control->reachable() || !widget->isVisible()) continue;
        if (auto* tabs = qobject_cast<QTabWidget*>(widget)) widget = tabs->tabBar();
        EXPECT_TRUE(reached.contains(widget)) << control->name();
    }
}

TEST(Desktop, IsAsTheEnvironmentAsksFor) {
    const double scale =
        qEnvironmentVariableIsSet("QT_SCALE_FACTOR") ? qEnvironmentVariable("QT_SCALE_FACTOR").toDouble() : 1;
    EXPECT_EQ(qApp->devicePixelRatio(), scale);
    QWidget window;
    EXPECT_EQ(window.grab().devicePixelRatio(), scale);
    const int points = qEnvironmentVariableIntValue("TARVELLO_FONT");
    EXPECT_TRUE(points == 0 || points == window.font().pointSize());
    EXPECT_EQ(QFontInfo(window.font()).family(), qEnvironmentVariable("TARVELLO_FAMILY", "DejaVu Sans"));
    EXPECT_EQ(window.palette().color(QPalette::Window).lightness() < 128,
              qEnvironmentVariableIsSet("TARVELLO_DARK"));
}

/// The line drawings, against the ground of a button. The others have a ground of their own.
TEST(Desktop, PicturesStandOutFromTheirGround) {
    const QDir folder(QCoreApplication::applicationDirPath() + "/pictures", "*.svg");
    ASSERT_FALSE(folder.isEmpty());
    const QColor ground = QApplication::palette().color(QPalette::Button);
    for (const QString& file : folder.entryList()) {
        const bool of_lines = QImageReader(folder.filePath(file)).size() == QSize(24, 24);
        if (!of_lines || file.startsWith(QLatin1String("tarvello"))) continue;
        const QImage drawn = qt::picture_icon(from_qt(QFileInfo(file).baseName())).pixmap(48, 48).toImage();
        int solid = 0;
        int clear = 0;
        for (int i = 0; i < drawn.width() * drawn.height(); ++i) {
            const QColor dot = drawn.pixelColor(i % drawn.width(), i / drawn.width());
            if (dot.alpha() < 250) continue;
            ++solid;
            if (contrast(dot, ground) >= 3) ++clear;
        }
        EXPECT_GT(solid, 0) << from_qt(file);
        EXPECT_GE(clear, solid * 3 / 4) << from_qt(file);
    }
}

TEST(Desktop, FaultsOfALookAreSeen) {
    QWidget window;
    const auto label = [&](const char* text, const QRect& place) {
        auto* made = new QLabel(QLatin1String(text), &window);
        made->setObjectName(QLatin1String(text));
        made->setGeometry(place);
        return made;
    };
    label("cut off", {0, 0, 20, 60});
    label("below", {0, 100, 200, 60});
    label("above", {20, 120, 200, 60});
    label("outside", {550, 0, 200, 60});
    QPalette faint;
    faint.setColor(QPalette::WindowText, window.palette().color(QPalette::Window).lighter(110));
    label("faint", {0, 200, 200, 60})->setPalette(faint);
    auto* field = new QLineEdit(&window);
    field->setGeometry(0, 300, 200, 60);
    window.resize(600, 400);
    window.show();
    std::string all;
    for (const std::string& fault : look_faults(window)) all += fault + "\n";
    for (const char* wanted : {"cut off \"cut off\" is cut off", "below lies on above", "outside sticks out",
                               "faint \"faint\" is faint", "QLineEdit has no name"})
        EXPECT_NE(all.find(wanted), std::string::npos) << wanted;
    EXPECT_EQ(std::count(all.begin(), all.end(), '\n'), 5) << all;
}

INSTANTIATE_TEST_SUITE_P(All, Windows, ::testing::ValuesIn(all_forms()),
                         [](const auto& info) { return info.param.name; });

} // namespace
} // namespace tarvello::testing
