#include "platform/containers.h"

namespace tarvello {

void Frame::set_height(int height) {
    if (height_ == height) return;
    height_ = height;
    changed(Aspect::size);
}

void TabControl::set_tab(int tab) {
    if (tab_ == tab) return;
    tab_ = tab;
    changed(Aspect::value);
}

void TabControl::choose(int tab) {
    if (!reachable()) return;
    act([&] {
        if (form().move_focus(this)) set_tab(tab);
    });
}

} // namespace tarvello
