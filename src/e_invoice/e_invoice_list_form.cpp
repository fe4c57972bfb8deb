#include "e_invoice/e_invoice_list_form.h"

#include "e_invoice/delivery_state.h"
#include "e_invoice/receipts_view.h"
#include "failure.h"
#include "lists/csv_file.h"
#include "lists/narrowing.h"
#include "lists/row_order.h"
#include "lists/xlsx_file.h"
#include "program/doors.h"
#include "program/program.h"
#include "text/letter_case.h"

#include <algorithm>

namespace tarvello {

using namespace e_invoice;

frmFattureElettroniche::frmFattureElettroniche(Program& program)
    : Form(program, "frmFattureElettroniche"), program_(program), desk_(program) {
    set_captions();
    connect();
}

frmFattureElettroniche::~frmFattureElettroniche() = default;

void frmFattureElettroniche::set_captions() {
    set_caption("Fatture elettroniche");
    cboStato.add_item("tutti gli stati");
    for (int state = 0; state <= static_cast<int>(DeliveryState::refused); ++state) {
        cboStato.add_item(std::string(state_text(static_cast<DeliveryState>(state))));
    }
    cboOrdine.add_item("come inserite");
    for (const lists::Column& column : YearList::columns()) cboOrdine.add_item(column.header);
    for (ComboBox* box : {&cboAnno, &cboStato, &cboOrdine}) box->set_list_only(true);
    cboStato.set_list_index(0);
    cboOrdine.set_list_index(0);
    chkDecrescente.set_caption("decrescente");
    lstFatture.set_tool_tip("Le ricevute di SdI si possono trascinare qui");
    txtFiltro.set_tool_tip("Mostra le righe che contengono tutte le parole");
    constexpr int widths[] = {900, 1300, 2700, 1500, 2200, 800, 3500, 1300, 1300, 1300, 1600};
    for (std::size_t i = 0; i < YearList::columns().size(); ++i) {
        const lists::Column& column = YearList::columns()[i];
        const bool right =
            column.kind == lists::ColumnKind::amount || column.kind == lists::ColumnKind::number;
        lstFatture.add_column({column.header, column.header, right, widths[i]});
    }
    cmdElettronica.set_caption("&Fattura elettronica");
    cmdFattura.set_caption("Apri fa&ttura");
    cmdCreaTutte.set_caption("Crea t&utte");
    cmdCreaTutte.set_tool_tip("Crea i file di tutte le fatture da creare che si vedono nell'elenco");
    cmdFirmato.set_caption("File fir&mato");
    cmdFirmato.set_tool_tip("Sceglie il file firmato di una fattura alla pubblica amministrazione");
    cmdInviata.set_caption("Segna come &inviata");
    cmdRicevuta.set_caption("&Ricevuta");
    cmdRicevuta.set_tool_tip("Legge una ricevuta di SdI: un file .xml, .p7m, .zip o un messaggio salvato");
    cmdRicevute.set_caption("Ricevute di una cart&ella");
    cmdFile.set_caption("Apri fi&le");
    cmdCartella.set_caption("Apri cartell&a");
    cmdEsporta.set_caption("E&sporta");
    cmdChiudi.set_caption("&Chiudi");
}

void frmFattureElettroniche::connect() {
    cboAnno.on_click = [this] { read_year(); };
    cboStato.on_click = cboOrdine.on_click = [this] { show_rows(); };
    chkDecrescente.on_click = [this] { show_rows(); };
    txtFiltro.on_change = [this] { show_rows(); };
    lstFatture.on_item_click = [this] { show_selected(); };
    const auto open = [this] {
        with_selected([this](const YearEntry& entry) { program_.doors().open_e_invoice(entry.invoice); });
    };
    lstFatture.on_double_click = open;
    lstFatture.on_files_dropped = [this](const std::vector<std::string>& paths) {
        telling_failures(program_, [&] { take_receipts(paths); });
    };
    cmdElettronica.on_click = open;
    cmdFattura.on_click = [this] {
        if (const YearEntry* entry = selected()) program_.doors().show_invoice(entry->invoice);
    };
    cmdCreaTutte.on_click = [this] { telling_failures(program_, [this] { create_all(); }); };
    cmdFirmato.on_click = [this] { with_selected([this](const YearEntry& entry) { choose_signed(entry); }); };
    cmdInviata.on_click = [this] { with_selected([this](const YearEntry& entry) { mark_sent(entry); }); };
    cmdRicevuta.on_click = [this] { telling_failures(program_, [this] { take_receipt(); }); };
    cmdRicevute.on_click = [this] { telling_failures(program_, [this] { take_folder_of_receipts(); }); };
    cmdFile.on_click = [this] {
        if (const YearEntry* entry = selected()) open_file(*entry);
    };
    cmdCartella.on_click = [this] {
        if (const YearEntry* entry = selected()) open_folder(*entry);
    };
    cmdEsporta.on_click = [this] { export_list(); };
    cmdChiudi.on_click = [this] { unload(); };
}

void frmFattureElettroniche::on_load() {
    desk_.settle();
    for (const std::string& year : YearList::years(program_.database().dbConnection)) cboAnno.add_item(year);
    if (!cboAnno.items().empty()) cboAnno.set_list_index(0);
    show_selected();
}

void frmFattureElettroniche::read_year() {
    narrowing_.reset();
    list_.emplace(program_.database().dbConnection, desk_.records(), cboAnno.text(), desk_.today(),
                  program_.regional());
    narrowing_ = std::make_unique<lists::Narrowing>(list_->table());
    show_rows();
}

void frmFattureElettroniche::show_rows() {
    if (!list_) return;
    const lists::Table table = list_->table();
    lists::SortOrder order;
    if (cboOrdine.list_index() > 0) order.column = static_cast<std::size_t>(cboOrdine.list_index() - 1);
    order.descending = chkDecrescente.checked();
    const std::vector<std::size_t> found = narrowing_->rows(txtFiltro.text());
    const auto wanted = static_cast<DeliveryState>(cboStato.list_index() - 1);
    shown_.clear();
    for (const std::size_t row : lists::sorted_rows(table, order, program_.regional())) {
        if (cboStato.list_index() > 0 && list_->entries()[row].state != wanted) continue;
        if (std::binary_search(found.begin(), found.end(), row)) shown_.push_back(row);
    }
    if (!order.column && order.descending) std::reverse(shown_.begin(), shown_.end());
    lstFatture.clear();
    for (const std::size_t row : shown_) {
        lstFatture.fill().begin_row();
        for (const std::string& cell : list_->entries()[row].cells) lstFatture.fill().add_cell(cell);
    }
    lstFatture.rows_added();
    if (!shown_.empty()) lstFatture.set_selected(0);
    show_selected();
}

const YearEntry* frmFattureElettroniche::selected() const {
    const auto row = lstFatture.selected();
    return row && *row < shown_.size() ? &list_->entries()[shown_[*row]] : nullptr;
}

void frmFattureElettroniche::show_selected() {
    const YearEntry* entry = selected();
    const bool has_file = entry && !entry->file.file_name.empty();
    lblConsiglio.set_caption(entry ? std::string(state_advice(entry->state)) : std::string());
    txtRicevute.set_html(
        has_file ? receipts_html(desk_.records().receipts_of(entry->file.id), program_.regional()) : "");
    cmdElettronica.set_enabled(entry);
    cmdFattura.set_enabled(entry);
    const bool sent = entry && entry->state == DeliveryState::sent;
    cmdInviata.set_caption(sent ? "Annulla l'&invio" : "Segna come &inviata");
    cmdInviata.set_enabled(sent || (entry && entry->state == DeliveryState::created));
    cmdFirmato.set_enabled(has_file && state_after(entry->state, DeliveryAct::sign).has_value());
    cmdFile.set_enabled(has_file);
    cmdCartella.set_enabled(has_file);
    cmdEsporta.set_enabled(!shown_.empty());
}

void frmFattureElettroniche::with_selected(const std::function<void(const YearEntry&)>& act) {
    if (!selected()) return;
    const int invoice = selected()->invoice;
    read_again(invoice);
    const YearEntry* entry = selected();
    if (!entry || entry->invoice != invoice) return;
    telling_failures(program_, [&] { act(*entry); });
    if (program_.loaded<frmFattureElettroniche>() == this) read_again(invoice);
}

void frmFattureElettroniche::read_again(int invoice) {
    read_year();
    for (std::size_t row = 0; row < shown_.size(); ++row) {
        if (list_->entries()[shown_[row]].invoice == invoice) lstFatture.set_selected(row);
    }
    show_selected();
}

void frmFattureElettroniche::export_list() {
    auto path = program_.platform().dialogs.save_file(
        {"Esporta l'elenco", {{"Foglio di calcolo (*.xlsx)", "*.xlsx"}, {"Testo (*.csv)", "*.csv"}}, true});
    if (!path) return;
    const bool plain = lower_case(*path).ends_with(".csv");
    if (!plain && !lower_case(*path).ends_with(".xlsx")) *path += ".xlsx";
    const lists::Table on_view{YearList::columns(), shown_.size(),
                               [this](std::size_t row, std::size_t column) -> std::string_view {
                                   return list_->entries()[shown_[row]].cells[column];
                               }};
    try {
        program_.platform().files.write(
            *path, plain ? lists::csv_file(on_view, program_.regional())
                         : lists::xlsx_file(on_view, "Fatture elettroniche", program_.regional()));
    } catch (const Failure& failure) {
        // The list stays, for another try.
        return program_.message(failure.description(), BoxIcon::critical);
    }
    program_.message("L'elenco è stato salvato in:\n" + *path, BoxIcon::information);
}

} // namespace tarvello
