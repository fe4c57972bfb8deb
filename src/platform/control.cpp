#include "platform/control.h"

#include "platform/containers.h"

namespace tarvello {

Control::Control(Form& form, std::string name) : form_(form), name_(std::move(name)) {
    form_.controls_.push_back(this);
}

Control::Control(Frame& frame, std::string name)
    : form_(frame.form()), frame_(&frame), name_(std::move(name)) {
    form_.controls_.push_back(this);
}

void Control::changed(Aspect aspect) {
    if (view) view->follow(*this, aspect);
}

void Control::act(const std::function<void()>& event) {
    const auto alive = form_.shared_from_this();
    form_.host().run(event);
}

void Control::set_enabled(bool enabled) {
    if (enabled_ == enabled) return;
    enabled_ = enabled;
    changed(Aspect::enabled);
}

void Control::set_visible(bool visible) {
    if (visible_ == visible) return;
    visible_ = visible;
    changed(Aspect::visible);
}

void Control::set_tool_tip(std::string tool_tip) {
    tool_tip_ = std::move(tool_tip);
    changed(Aspect::look);
}

void Control::set_back_color(std::optional<Color> color) {
    if (back_color_ == color) return;
    back_color_ = color;
    changed(Aspect::look);
}

void Control::set_fore_color(std::optional<Color> color) {
    if (fore_color_ == color) return;
    fore_color_ = color;
    changed(Aspect::look);
}

bool Control::reachable() const { return enabled_ && visible_ && (!frame_ || frame_->reachable()); }

void Control::enter() {
    act([&] { form_.move_focus(this); });
}

void Control::leave() {
    if (!has_focus()) return;
    act([&] { form_.move_focus(nullptr); });
}

void Control::move_mouse() {
    if (on_mouse_move) act(on_mouse_move);
}

void Captioned::set_caption(std::string caption) {
    if (caption_ == caption) return;
    caption_ = std::move(caption);
    changed(Aspect::caption);
}

} // namespace tarvello
