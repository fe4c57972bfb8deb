#include "platform/bars.h"
#include "platform/qt/binder.h"
#include "platform/qt/pictures.h"
#include "platform/qt/qt_text.h"

#include <QAbstractButton>
#include <QCheckBox>
#include <QKeyEvent>
#include <QPushButton>
#include <QRadioButton>
#include <QToolButton>

#include <algorithm>

namespace tarvello::qt {

namespace {

/// What all that can be pressed share: caption, picture, and a press that becomes a click of the control.
class ButtonView : public WidgetView {
public:
    ButtonView(WindowBinder& binder, Control& control, QAbstractButton& button)
        : WidgetView(binder, control, button), button_(button), least_width_(button.minimumWidth()) {
        QObject::connect(&button_, &QAbstractButton::clicked, &binder, [this] { pressed(); });
    }

    void show_all() override {
        WidgetView::show_all();
        if (!caption().empty()) show_caption(); // else the words of the look stay
        show_value();
    }

    bool key_pressed(QKeyEvent& event) override {
        const int code = key_code(event);
        if (code == 0) return false;
        const int go_on = offer(code);
        if (binder().parted() || go_on == 0) return true;
        if (code == keys::enter && presses_on_enter()) {
            button_.click();
            return true;
        }
        return false;
    }

    void press_in_its_place() override { pressed(); }

protected:
    virtual void click() = 0;
    virtual std::string caption() const = 0;
    virtual std::string picture() const { return {}; }
    virtual void show_value() {}
    virtual bool presses_on_enter() const { return true; }
    virtual int offer(int key) {
        control().form().host().run([&] { FormLife::preview(control().form(), control(), key); });
        return key;
    }

    void show(Aspect aspect) override {
        switch (aspect) {
        case Aspect::caption:
            show_caption();
            break;
        case Aspect::value:
            show_value();
            break;
        case Aspect::look:
            WidgetView::show(aspect);
            if (picture() == pictured_) break;
            pictured_ = picture();
            button_.setIcon(picture_icon(pictured_));
            make_room();
            break;
        default:
            WidgetView::show(aspect);
        }
    }

    QAbstractButton& button() const { return button_; }

private:
    void pressed() {
        if (binder().parted()) return;
        click();
        if (binder().parted()) return;
        // The toolkit has set the mark by itself; the form may see it otherwise.
        const WindowBinder::Following following(binder());
        show_value();
    }

    void show_caption() {
        button_.setText(to_qt(caption()));
        make_room();
    }

    /// A least width that the look states is no reason to cut off longer words.
    void make_room() {
        if (least_width_ > 0) button_.setMinimumWidth(std::max(least_width_, button_.sizeHint().width()));
    }

    QAbstractButton& button_;
    int least_width_;
    std::string pictured_;
};

class CommandView final : public ButtonView {
public:
    CommandView(WindowBinder& binder, CommandButton& command, QAbstractButton& button)
        : ButtonView(binder, command, button), command_(command) {}

private:
    void click() override { command_.click(); }
    std::string caption() const override { return command_.caption(); }
    std::string picture() const override { return command_.picture(); }

    CommandButton& command_;
};

class ToolView final : public ButtonView {
public:
    ToolView(WindowBinder& binder, ToolButton& tool, QAbstractButton& button)
        : ButtonView(binder, tool, button), tool_(tool) {}

private:
    void click() override { tool_.click(); }
    std::string caption() const override { return tool_.caption(); }
    std::string picture() const override { return tool_.picture(); }

    ToolButton& tool_;
};

class CheckView final : public ButtonView {
public:
    CheckView(WindowBinder& binder, CheckBox& check, QAbstractButton& button)
        : ButtonView(binder, check, button), check_(check) {}

private:
    void click() override { check_.click(); }
    std::string caption() const override { return check_.caption(); }
    void show_value() override { button().setChecked(check_.checked()); }
    bool presses_on_enter() const override { return false; }
    int offer(int key) override { return check_.offer_key(key); }

    CheckBox& check_;
};

class OptionView final : public ButtonView {
public:
    OptionView(WindowBinder& binder, OptionButton& option, QAbstractButton& button)
        : ButtonView(binder, option, button), option_(option) {
        button.setAutoExclusive(false); // the control frees the others, and knows which they are
    }

    bool key_pressed(QKeyEvent& event) override {
        switch (event.key()) {
        case Qt::Key_Up:
        case Qt::Key_Left:
            choose_neighbour(-1);
            return true;
        case Qt::Key_Down:
        case Qt::Key_Right:
            choose_neighbour(1);
            return true;
        default:
            return ButtonView::key_pressed(event);
        }
    }

private:
    void click() override { option_.click(); }
    std::string caption() const override { return option_.caption(); }
    void show_value() override { button().setChecked(option_.selected()); }
    bool presses_on_enter() const override { return false; }

    void choose_neighbour(int step) {
        std::vector<OptionButton*> group;
        for (Control* other : option_.form().controls()) {
            auto* option = dynamic_cast<OptionButton*>(other);
            if (option && option->frame() == option_.frame() && option->reachable()) group.push_back(option);
        }
        const auto size = static_cast<int>(group.size());
        const auto here = static_cast<int>(std::find(group.begin(), group.end(), &option_) - group.begin());
        if (here < size) group[static_cast<std::size_t>((here + step + size) % size)]->click();
    }

    OptionButton& option_;
};

} // namespace

std::unique_ptr<WidgetView> make_button_view(WindowBinder& binder, Control& control, QObject& widget) {
    if (auto* command = dynamic_cast<CommandButton*>(&control)) {
        auto* button = qobject_cast<QPushButton*>(&widget);
        return button ? std::make_unique<CommandView>(binder, *command, *button) : nullptr;
    }
    if (auto* tool = dynamic_cast<ToolButton*>(&control)) {
        auto* button = qobject_cast<QToolButton*>(&widget);
        return button ? std::make_unique<ToolView>(binder, *tool, *button) : nullptr;
    }
    if (auto* check = dynamic_cast<CheckBox*>(&control)) {
        auto* button = qobject_cast<QCheckBox*>(&widget);
        return button ? std::make_unique<CheckView>(binder, *check, *button) : nullptr;
    }
    if (auto* option = dynamic_cast<OptionButton*>(&control)) {
        auto* button = qobject_cast<QRadioButton*>(&widget);
        return button ? std::make_unique<OptionView>(binder, *option, *button) : nullptr;
    }
    return nullptr;
}

} // namespace tarvello::qt
