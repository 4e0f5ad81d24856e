#pragma once

// Which of the system's services for sound and MIDI answer. [main, worker]
namespace volvelle {

// True where a PulseAudio or PipeWire server of the user takes connections: sound cards are its own then.
bool isSoundServerRunning();

// True where a JACK server runs. Never starts one.
bool isJackServerRunning();

// True where a bare sound card may be opened: no sound server runs, none is named that is elsewhere, and no
// JACK server runs.
bool isSoundCardFree();

// True where the kernel's MIDI sequencer can be opened.
bool isMIDISequencerPresent();

} // namespace volvelle
