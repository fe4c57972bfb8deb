#pragma once

#include "text/dates.h"

#include <string>
#include <string_view>

namespace tarvello {

/// The Italian fiscal code of a person: 16 characters for a municipality code of four.
///
/// Any input gives a text. Letters with an accent are dropped, as blanks and apostrophes are; nothing is done
/// about two persons who would share a code.
/// @param Sesso         "Femmina", or anything else for a man
/// @param CodiceComune  put in as it stands, whatever its length and letter case
std::string CalcoloCodFis(std::string_view Cognome, std::string_view Nome, const Date& DataNascita,
                          std::string_view Sesso, std::string_view CodiceComune);

} // namespace tarvello
