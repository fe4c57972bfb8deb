#include "invoices/note_panel.h"

namespace tarvello {
namespace {

// Heights of the panel in twips.
constexpr int closed_height = 580;
constexpr int open_height = 2655;

} // namespace

NotePanel::NotePanel(Form& form) : FrameNota(form, "FrameNota") {
    fold();
    cmdNota.set_tool_tip("Aggiungi / Visualizza Nota");
    cmdNota.set_picture("freccia-giu");
    cmdNota.on_click = [this] { flip(); };
}

void NotePanel::fold() {
    FrameNota.set_height(closed_height);
    Text1.set_visible(false); // what is folded away must not be reached with Tab
}

void NotePanel::flip() {
    if (FrameNota.height() == open_height) {
        fold();
    } else if (FrameNota.height() == closed_height) {
        Text1.set_visible(true);
        FrameNota.set_height(open_height);
    }
}

} // namespace tarvello
