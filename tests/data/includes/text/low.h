#include "program/high.h"
