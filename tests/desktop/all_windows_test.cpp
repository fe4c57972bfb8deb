#include "desktop/all_forms.h"
#include "platform/qt/binder.h"
#include "platform/qt/form_windows.h"
#include "platform/qt/qt_text.h"
#include "support/program_test.h"

#include <gtest/gtest.h>

#include <QAccessible>
#include <QAction>
#include <QApplication>
#include <QLabel>
#include <QMenu>

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

TEST_P(Windows, AScreenReaderHasAWordForEverythingThatTakesTheKeyboard) {
    window->show();
    for (const Control* control : form->controls()) {
        QWidget* widget = widget_of(*control);
        if (!widget || !control->takes_focus() || !widget->isVisibleTo(window.get())) continue;
        QAccessibleInterface* told = QAccessible::queryAccessibleInterface(widget);
        ASSERT_TRUE(told) << control->name();
        EXPECT_FALSE(told->text(QAccessible::Name).isEmpty()) << control->name();
    }
}

/// For the eye: a picture of each window in the folder TARVELLO_SHOTS of the environment. What a test can see
/// is that no text is wider than its place.
TEST_P(Windows, LooksLikeThis) {
    window->show();
    QApplication::processEvents();
    const QString folder = qEnvironmentVariable("TARVELLO_SHOTS");
    if (!folder.isEmpty()) window->grab().save(folder + "/" + window->objectName() + ".png");
    for (const QLabel* label : window->findChildren<QLabel*>()) {
        if (!label->isVisibleTo(window.get()) || label->wordWrap() || label->text().isEmpty()) continue;
        EXPECT_LE(label->sizeHint().width(), label->width() + 1)
            << from_qt(label->objectName()) << " is cut off";
    }
}

INSTANTIATE_TEST_SUITE_P(All, Windows, ::testing::ValuesIn(all_forms()),
                         [](const auto& info) { return info.param.name; });

} // namespace
} // namespace tarvello::testing
