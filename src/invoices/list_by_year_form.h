#pragma once

#include "invoices/invoice_view.h"
#include "platform/controls.h"
#include "platform/form.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>

namespace tarvello {

class Program;

/// Asks which invoices to list, all or those of a year, and, when it closes, lists them.
class frmSelectYear : public Form {
public:
    explicit frmSelectYear(Program& program);

    Label Label1{*this, "Label1"};
    ComboBox Combo1{*this, "Combo1"};
    CommandButton Command1{*this, "Command1"};

    /// Where an invoice chosen from the list comes on view; before it is shown.
    void return_to(std::shared_ptr<InvoiceView> view) { view_ = std::move(view); }

    /// What the heading says of the number of invoices. The count is of 16 bits: past the highest that it can
    /// hold the heading says so, and how many rows there are.
    static std::string total_of(std::size_t invoices);

protected:
    void on_load() override;
    void on_unload(UnloadReason reason) override;

private:
    /// Shows a window with the rows of a statement, and waits until it has closed. A step that fails is
    /// skipped: without a database the window shows an empty list.
    struct Listing {
        std::string caption;
        std::string heading;
        std::string sql;
        std::optional<std::int16_t> only_year; ///< leaves out the rows of other years
        bool counted = false;                  ///< the heading ends with the number of rows
    };
    void show_list(const Listing& listing);
    /// The listing of a year without its statement.
    static Listing listing_of(std::int16_t year);

    Program& program_;
    std::shared_ptr<InvoiceView> view_;
};

} // namespace tarvello
