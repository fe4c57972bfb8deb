#include "program/doors.h"

#include "program/program.h"

namespace tarvello {

Doors::Doors(Program& program) : program_(program) { program_.set_doors(this); }

Doors::~Doors() { program_.set_doors(nullptr); }

} // namespace tarvello
