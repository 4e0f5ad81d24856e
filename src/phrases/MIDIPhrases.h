#pragma once

// The phrases, their chords and their mixer.

#include "phrases/ChordEvent.h"
#include "phrases/MIDIChordPhrase.h"
#include "phrases/MIDIPhrase.h"
#include "phrases/MIDIPhraseMixer.h"
#include "phrases/PhraseEvent.h"
