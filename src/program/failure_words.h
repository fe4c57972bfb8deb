#pragma once

#include "failure.h"

#include <string>

namespace tarvello {

/// A form could not be loaded: it has never been there, and what else is open goes on.
class LoadFailure : public Failure {
public:
    explicit LoadFailure(const Failure& why) : Failure(why) {}
};

/// What has happened and what the user can change, in plain words: two sentences or so, to stand above the
/// description of the failure.
std::string words_for(const Failure& failure);

} // namespace tarvello
