#pragma once

// Render events, their owned form, the stack of prepared ones, and the channels that pass.
#include "MIDISequences/AUMIDIEventEx.h"
#include "MIDISequences/AUMIDIEventStack.h"
#include "MIDISequences/AURenderEvent.h"
#include "MIDISequences/ChannelFilter.h"
