#include "invoices/note_panel.h"

namespace tarvello {
namespace {

// Heights of the panel in twips.
constexpr int closed_height = 580;
constexpr int open_height = 2655;

} // namespace

NotePanel::NotePanel(Form& form) : FrameNota(form, "FrameNota") {
    FrameNota.set_height(closed_height);
    cmdNota.set_tool_tip("Aggiungi / Visualizza Nota");
    cmdNota.set_picture("freccia-giu");
    cmdNota.on_click = [this] { flip(); };
}

void NotePanel::flip() {
    if (FrameNota.height() == open_height) {
        FrameNota.set_height(closed_height);
    } else if (FrameNota.height() == closed_height) {
        FrameNota.set_height(open_height);
    }
}

} // namespace tarvello
