#pragma once

namespace tarvello {

class Recordset;

/// Where a picked customer goes: a form that keeps its own copy of the customer's data.
class CustomerTarget {
public:
    /// The customer will be one of the table, no new one.
    virtual void expect_known_customer() = 0;
    /// Copies the current row of a result of Clienti.
    /// @throws Failure at a null or where there is no row: what comes after it keeps its text
    virtual void take_customer(const Recordset& row) = 0;
    /// The customer will be a new one, whose data the user types.
    virtual void announce_new_customer() = 0;

protected:
    ~CustomerTarget() = default;
};

} // namespace tarvello
