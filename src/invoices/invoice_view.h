#pragma once

#include <string>

namespace tarvello {

/// Where an invoice that was found in a list comes on view.
class InvoiceView {
public:
    /// Copies the current row of rsFatture into the fields. A field whose column cannot be read (a null, no
    /// such row) stays as it was. Opens and closes nothing of rsFatture.
    virtual void MostraFattura() = 0;
    /// The current invoicing year, as it stood when the view was opened.
    virtual const std::string& current_year() const = 0;

protected:
    ~InvoiceView() = default;
};

} // namespace tarvello
