#pragma once

#include "e_invoice/checks.h"
#include "e_invoice/from_row.h"
#include "e_invoice/source.h"
#include "store/database.h"

#include <string>
#include <vector>

namespace tarvello::e_invoice {

/// A worked invoice of tests/data/fatturapa/samples: what is stored, what was decided, and the file it must
/// give.
struct Sample {
    StoredInvoice invoice;
    Issuer issuer;
    Customer customer;
    Decisions decisions;
    std::string progressive;
    std::string file_name;
    std::string number;
    std::string xml;

    Draft draft() const;
    /// Draft and checks, on a day soon after the invoice's.
    std::vector<Finding> findings() const;
};

/// Every text of it that a person can have typed, by its place; Causale has one line then.
std::vector<std::string*> texts_of(Sample& sample);

/// The names of the samples, such as "01-worked-a".
std::vector<std::string> sample_names();
Sample sample(const std::string& name);

/// Puts the row into Fatture; its key is the next one.
void store_row(Connection& connection, const StoredInvoice& row);
/// Puts the letterhead into DatiIntestazione.
void store_letterhead(Connection& connection, const Issuer& issuer);

inline constexpr const char* firm = "01-worked-a"; ///< with surcharge, expenses and withholding
inline constexpr const char* reduced_base = "03-worked-c";
inline constexpr const char* person = "04-private-person";
inline constexpr const char* flat_rate = "06-forfettario-bollo-charged";
inline constexpr const char* administration = "08-pa-lawyer";
inline constexpr const char* abroad = "10-foreign-eu";

inline const RegionalSettings italian;
/// The day on which the samples are checked.
inline constexpr Date soon_after = make_date(2026, 3, 20);

} // namespace tarvello::e_invoice
