#include "platform/bars.h"
#include "platform/qt/keyboard.h"
#include "platform/qt/look.h"
#include "platform/qt/pictures.h"
#include "platform/qt/qt_text.h"
#include "platform/qt/views.h"

#include <QAbstractButton>
#include <QCheckBox>
#include <QKeyEvent>
#include <QPushButton>
#include <QRadioButton>
#include <QShortcut>
#include <QToolButton>

#include <algorithm>
#include <vector>

namespace tarvello::qt {

namespace {

/// What all that can be pressed share: caption, picture, and a press that becomes a click of the control.
class ButtonView : public WidgetView {
public:
    ButtonView(WindowBinder& binder, Captioned& control, QAbstractButton& button)
        : WidgetView(binder, control, button, {Aspect::value}), captioned_(control), button_(button),
          least_width_(button.minimumWidth()) {
        QObject::connect(&button_, &QAbstractButton::clicked, &binder, [this] { pressed(); });
    }

    bool key_pressed(QKeyEvent& event) override {
        const int code = key_code(event);
        if (code == 0) return false;
        if (code == keys::enter && event.isAutoRepeat()) return true; // held down it presses once
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
        default:
            WidgetView::show(aspect);
        }
    }

    QAbstractButton& button() const { return button_; }

    /// A least width that the look states is no reason to cut off longer words.
    void make_room() {
        if (least_width_ > 0) button_.setMinimumWidth(std::max(least_width_, button_.sizeHint().width()));
    }

    /// The toolkit sets the mark by itself; the form may see it otherwise.
    void pressed() {
        by_user([this] { click(); }, Aspect::value);
    }

private:
    void show_caption() {
        button_.setText(to_qt(captioned_.caption()));
        make_room();
    }

    Captioned& captioned_;
    QAbstractButton& button_;
    int least_width_;
};

/// A button of the form, or of a tool bar.
template <typename Button>
class PressView final : public ButtonView {
public:
    PressView(WindowBinder& binder, Button& control, QAbstractButton& button)
        : ButtonView(binder, control, button), control_(control), keys_(new QShortcut(&button)) {
        keys_->setAutoRepeat(false);
        QObject::connect(keys_, &QShortcut::activated, &binder, [this] { this->pressed(); });
    }

protected:
    void show(Aspect aspect) override {
        ButtonView::show(aspect);
        if (aspect == Aspect::caption || aspect == Aspect::look) show_keys();
        if (aspect != Aspect::look || control_.picture() == pictured_) return;
        pictured_ = control_.picture();
        button().setIcon(picture_icon(pictured_));
        make_room();
    }

private:
    void click() override { control_.click(); }

    /// The letter of its caption and its shortcut. By itself the toolkit would press the button a moment
    /// later, whatever the field that is left has to say.
    void show_keys() {
        button().setShortcut({});
        QList<QKeySequence> keys{QKeySequence::mnemonic(button().text())};
        const auto sequence = [](const std::string& text) {
            return QKeySequence(to_qt(text), QKeySequence::PortableText);
        };
        if (!control_.shortcut().empty()) keys << sequence(control_.shortcut());
        if (const std::string& told = control_.told_shortcut(); !told.empty()) {
            const std::string& words = control_.tool_tip().empty() ? control_.caption() : control_.tool_tip();
            button().setToolTip(plain_tool_tip(words) + " (" +
                                sequence(told).toString(QKeySequence::NativeText) + ")");
        }
        keys_->setKeys(keys);
    }

    Button& control_;
    QShortcut* keys_;
    std::string pictured_;
};

class CheckView final : public ButtonView {
public:
    CheckView(WindowBinder& binder, CheckBox& check, QAbstractButton& button)
        : ButtonView(binder, check, button), check_(check) {}

private:
    void click() override { check_.click(); }
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
    static constexpr MakeView makers[] = {
        make_if_fits<PressView<CommandButton>, CommandButton, QPushButton>,
        make_if_fits<PressView<ToolButton>, ToolButton, QToolButton>,
        make_if_fits<CheckView, CheckBox, QCheckBox>,
        make_if_fits<OptionView, OptionButton, QRadioButton>,
    };
    return first_that_fits(makers, binder, control, widget);
}

} // namespace tarvello::qt
