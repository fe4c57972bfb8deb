#pragma once

#include <string>

/// The archive that everything is measured on: 100,000 invoices of twenty years, 10,000 customers, and a
/// letterhead. Names, towns and services vary as they do in life; the same in every run.
namespace tarvello::bench {

inline constexpr int customers = 10'000;
inline constexpr int invoices = 100'000;
inline constexpr int first_year = 2006;
inline constexpr int last_year = 2025;

/// The path of the archive in the build folder; made when it is first asked for.
const std::string& archive_path();

/// A copy of the archive that may be written to. @return its path
std::string archive_copy(const std::string& name);

} // namespace tarvello::bench
