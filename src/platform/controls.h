#pragma once

/// All controls of a form, for a form that has many kinds of them.
#include "platform/bars.h"
#include "platform/buttons.h"
#include "platform/containers.h"
#include "platform/date_picker.h"
#include "platform/displays.h"
#include "platform/entries.h"
#include "platform/lists.h"
#include "platform/pages.h"
#include "platform/timer.h"
