#include "platform/qt/widget_view.h"

#include "platform/qt/binder.h"
#include "platform/qt/look.h"

namespace tarvello::qt {

WidgetView::WidgetView(WindowBinder& binder, Control& control, QObject& widget,
                       std::initializer_list<Aspect> own)
    : binder_(binder), control_(control), widget_(qobject_cast<QWidget*>(&widget)), own_(own) {}

void WidgetView::show_all() {
    for (const Aspect aspect : {Aspect::enabled, Aspect::look, Aspect::visible}) show(aspect);
    const auto* captioned = dynamic_cast<Captioned*>(&control_);
    if (captioned && !captioned->caption().empty()) show(Aspect::caption); // else the words of the look stay
    for (const Aspect aspect : own_) show(aspect);
}

void WidgetView::follow(Control&, Aspect aspect) {
    if (binder_.parted()) return;
    const WindowBinder::Following following(binder_);
    show(aspect);
}

void WidgetView::show(Aspect aspect) {
    if (!widget_) return;
    switch (aspect) {
    case Aspect::enabled:
        widget_->setEnabled(control_.enabled());
        binder_.focus().settle_soon();
        break;
    case Aspect::visible:
        widget_->setVisible(control_.visible());
        binder_.focus().settle_soon();
        break;
    case Aspect::look:
        if (!control_.tool_tip().empty()) widget_->setToolTip(plain_tool_tip(control_.tool_tip()));
        paint_with(*widget_, control_.back_color(), control_.fore_color());
        break;
    default:
        break;
    }
}

bool WidgetView::hears_user() const { return !binder_.following() && !binder_.parted(); }

void WidgetView::by_user(const std::function<void()>& act, Aspect shown) {
    if (!hears_user()) return;
    act();
    follow(control_, shown);
}

} // namespace tarvello::qt
