#pragma once

// The enumerations of status bytes, controllers and meta types.
#include "midi/METATags.h"
#include "midi/MIDIControllers.h"
#include "midi/MIDIStatus.h"
