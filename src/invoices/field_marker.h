#pragma once

#include "platform/controls.h"

namespace tarvello {

/// Keeps a marker on view while its field holds text or has the focus.
inline void mark(TextBox& field, Shape& shape) {
    field.on_change = [&field, &shape] { shape.set_visible(!field.empty()); };
    field.on_got_focus = [&shape] { shape.set_visible(true); };
    field.on_lost_focus = field.on_change;
}

} // namespace tarvello
