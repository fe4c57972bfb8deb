#include "shell/main_window.h"

#include "program/maker_site.h"
#include "program/net_functions.h"
#include "program/program.h"

namespace tarvello {

namespace {

constexpr Color quiet_color = Color::from_bgr(0x800000);
constexpr Color hover_color = Color::from_bgr(0xFF8080);

// Heights of the panel in twips.
constexpr int open_height = 2715;
constexpr int folded_height = 15;
constexpr int slide_step = 2;
/// The slide rests after this many twips, for as long as it takes to see them: a third of a second in all.
constexpr int slide_rest = 90;
constexpr int slide_rest_ms = 10;

} // namespace

void MDIForm1::connect_panel() {
    on_mouse_move = [this] { pointer_over(nullptr); };
    for (Control* part : std::initializer_list<Control*>{&Picture11, &lblNome2, &imgApn2, &imgApS2, &imgChN2,
                                                         &imgChS2, &Image1, &StatusBar2, &sbStatusBar}) {
        part->on_mouse_move = [this, part] { pointer_over(part); };
    }
    imgVoce.each(
        [this](std::size_t, Picture& picture) { picture.on_mouse_move = [this] { pointer_over(nullptr); }; });
    Label2.each([this](std::size_t i, Label& label) {
        label.on_mouse_move = [this, &label] { pointer_over(&label); };
        label.on_click = [this, i] {
            show_hover(nullptr);
            run_side_command(i);
        };
    });
    // The quiet arrows answer too: the keyboard reaches them with no pointer over them.
    imgApn2.on_click = imgApS2.on_click = [this] { fold(); };
    imgChN2.on_click = imgChS2.on_click = [this] { unfold(); };
    for (Picture* arrow : {&imgApn2, &imgApS2}) arrow->set_tool_tip("Chiudi il menù");
    for (Picture* arrow : {&imgChN2, &imgChS2}) arrow->set_tool_tip("Apri il menù");
    Image1.on_click = [this] { ApriBrowser(program_, maker_address("/it/Tarvello/risorse_online.htm")); };
    Picture11.set_height(open_height);
    show_hover(nullptr);
}

void MDIForm1::pointer_over(const Control* part) {
    follow_connection();
    show_hover(part);
}

void MDIForm1::follow_connection() {
    const bool connected = session.mnuChiudiDatabase.enabled();
    for (const std::size_t command :
         {side_command::customers, side_command::invoices, side_command::letterhead}) {
        Label2[command].set_enabled(connected);
    }
    for (MenuItem* entry : {&mnuAnagrafica_Clienti, &mnuFatture, &IntestaFatture})
        entry->set_enabled(connected);
}

void MDIForm1::show_hover(const Control* part) {
    std::string hint;
    for (Label& label : Label2) {
        const bool hover = &label == part && label.enabled();
        label.set_underline(hover);
        label.set_fore_color(hover ? hover_color : quiet_color);
        if (hover) hint = label.tool_tip();
    }
    const bool arrow = part == &imgApn2 || part == &imgApS2 || part == &imgChN2 || part == &imgChS2;
    show_arrow(arrow);
    if (sbStatusBar.panel(1) != hint) sbStatusBar.set_panel(1, hint);
}

void MDIForm1::show_arrow(bool under_pointer) {
    const bool open = Picture11.visible();
    imgApn2.set_visible(open && !under_pointer);
    imgApS2.set_visible(open && under_pointer);
    imgChN2.set_visible(!open && !under_pointer);
    imgChS2.set_visible(!open && under_pointer);
    lblNome2.set_fore_color(under_pointer ? hover_color : quiet_color);
}

void MDIForm1::fold() {
    if (sliding_) return;
    slide_panel(open_height, folded_height);
    Picture11.set_visible(false);
    show_arrow(imgApS2.visible());
}

void MDIForm1::unfold() {
    if (sliding_) return;
    Picture11.set_visible(true);
    slide_panel(folded_height, open_height);
    show_arrow(imgChS2.visible());
}

void MDIForm1::slide_panel(int from, int to) {
    // The windows stay alive while the slide rests: another click must not start a second slide in the midst
    // of this one.
    sliding_ = true;
    Windows& windows = program_.platform().windows;
    const int step = from < to ? slide_step : -slide_step;
    for (int height = from; height != to;) {
        height += step;
        Picture11.set_height(height);
        windows.repaint();
        if (height % slide_rest < slide_step) windows.pause(slide_rest_ms);
    }
    sliding_ = false;
}

} // namespace tarvello
