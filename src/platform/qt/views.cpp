#include "platform/qt/views.h"

namespace tarvello::qt {

std::unique_ptr<WidgetView> make_view(WindowBinder& binder, Control& control, QObject& widget) {
    static constexpr MakeView families[] = {
        make_bar_view,      make_browser_view,  make_button_view, make_combo_view,
        make_date_view,     make_document_view, make_label_view,  make_list_view,
        make_list_box_view, make_plain_view,    make_text_view,
    };
    return first_that_fits(families, binder, control, widget);
}

} // namespace tarvello::qt
