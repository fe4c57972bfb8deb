#pragma once

#include "platform/qt/binder.h"

#include <cstddef>
#include <memory>

/// What a view is made with, and which view fits which control and widget.
namespace tarvello::qt {

/// Makes the view that fits control and widget; null if they do not fit each other.
std::unique_ptr<WidgetView> make_view(WindowBinder& binder, Control& control, QObject& widget);

using MakeView = std::unique_ptr<WidgetView> (*)(WindowBinder&, Control&, QObject&);

/// Makes the view if control and widget are of these kinds; else null.
template <typename View, typename ControlKind, typename WidgetKind>
std::unique_ptr<WidgetView> make_if_fits(WindowBinder& binder, Control& control, QObject& widget) {
    auto* const controlled = dynamic_cast<ControlKind*>(&control);
    auto* const shown = dynamic_cast<WidgetKind*>(&widget);
    return controlled && shown ? std::make_unique<View>(binder, *controlled, *shown) : nullptr;
}

/// What the first of them makes that fits; null if none does.
template <std::size_t N>
std::unique_ptr<WidgetView> first_that_fits(const MakeView (&makers)[N], WindowBinder& binder,
                                            Control& control, QObject& widget) {
    for (const MakeView make : makers) {
        if (auto view = make(binder, control, widget)) return view;
    }
    return nullptr;
}

// One function a family of controls; null if the control is of another family or the widget of another kind.
std::unique_ptr<WidgetView> make_bar_view(WindowBinder& binder, Control& control, QObject& widget);
std::unique_ptr<WidgetView> make_browser_view(WindowBinder& binder, Control& control, QObject& widget);
std::unique_ptr<WidgetView> make_button_view(WindowBinder& binder, Control& control, QObject& widget);
std::unique_ptr<WidgetView> make_combo_view(WindowBinder& binder, Control& control, QObject& widget);
std::unique_ptr<WidgetView> make_date_view(WindowBinder& binder, Control& control, QObject& widget);
std::unique_ptr<WidgetView> make_document_view(WindowBinder& binder, Control& control, QObject& widget);
std::unique_ptr<WidgetView> make_label_view(WindowBinder& binder, Control& control, QObject& widget);
std::unique_ptr<WidgetView> make_list_view(WindowBinder& binder, Control& control, QObject& widget);
std::unique_ptr<WidgetView> make_list_box_view(WindowBinder& binder, Control& control, QObject& widget);
std::unique_ptr<WidgetView> make_plain_view(WindowBinder& binder, Control& control, QObject& widget);
std::unique_ptr<WidgetView> make_text_view(WindowBinder& binder, Control& control, QObject& widget);

} // namespace tarvello::qt
