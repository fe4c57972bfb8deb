#pragma once

namespace tarvello {

class ComboBox;
class Program;

/// Adds the years to choose from, wherever invoices are looked for by year.
void add_years(ComboBox& combo);
/// Adds the later ones that the archive has. One that is in the list already is not added again; without a
/// database there are none.
void add_years_of_archive(Program& program, ComboBox& combo);

} // namespace tarvello
