#pragma once

#include <string>

namespace tarvello {

/// Fills the folder of the program's data on the first start: each file is there as a whole or not at all,
/// and once all of them are, a mark says so. A fill that was cut short goes on at the next start.
///
/// What is filled in belongs to the user and is never replaced; what he takes away does not come back. The
/// one exception is the list of municipalities, which he does not write: a newer one takes the place of an
/// older one, while a list that he brought himself stays.
///
/// Nobody can be told of a failure yet; the next start tries again, and the forms tell what is missing.
/// @param originals  the folder of what was installed; if there is none, nothing is done
/// @param folder     made if it does not exist; only one copy of the program may be at work in it
void fill_program_directory(const std::string& originals, const std::string& folder);

} // namespace tarvello
