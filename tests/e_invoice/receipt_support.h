#pragma once

#include "places.h"
#include "store/store_fixture.h"

#include <string>

namespace tarvello::testing {

/// A file of tests/data/fatturapa.
inline std::string fatturapa_file(const std::string& name) {
    return bytes_of(TARVELLO_TEST_DATA "/data/fatturapa/" + name);
}

constexpr const char* private_namespace =
    "http://ivaservizi.agenziaentrate.gov.it/docs/xsd/fattura/messaggi/v1.0";
constexpr const char* administration_namespace = "http://www.fatturapa.gov.it/sdi/messaggi/v1.0";

/// A receipt without prefix, declaration and signature.
inline std::string receipt_text(const std::string& root, const std::string& space,
                                const std::string& fields) {
    return "<" + root + " xmlns=\"" + space + "\">" + fields + "</" + root + ">";
}

} // namespace tarvello::testing
