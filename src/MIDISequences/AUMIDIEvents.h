#pragma once

// Render events, their owned form, the stack of prepared ones, the records of chains, and the channels that
// pass.
#include "MIDISequences/AUMIDIEventEx.h"
#include "MIDISequences/AUMIDIEventStack.h"
#include "MIDISequences/AURenderEvent.h"
#include "MIDISequences/ChannelFilter.h"
#include "MIDISequences/RenderEventPool.h"
