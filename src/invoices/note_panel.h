#pragma once

#include "platform/controls.h"

namespace tarvello {

/// A note of the invoice form for the screen alone, on a panel that folds: it is stored nowhere.
class NotePanel final {
public:
    explicit NotePanel(Form& form);

    Frame FrameNota;
    CommandButton cmdNota{FrameNota, "cmdNota"};
    TextBox Text1{FrameNota, "Text1"};

private:
    void fold();
    void flip();
};

} // namespace tarvello
