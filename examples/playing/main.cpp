// Makes a bar of two patterns, saves it, and plays it block by block into lines of text: playing FILE
#include <MIDISequences/RenderEventPool.h>
#include <MIDISequences/realtime/AUMIDISequencer.h>
#include <MIDISequences/realtime/RenderEventStamps.h>
#include <sequence/patterns/MIDIPattern.h>
#include <services/musicsequence/MusicSequence.h>

#include <iostream>

using namespace volvelle;

namespace {

std::int64_t played = 0; // samples before this block

// A line for each message of a channel; a host would give them to its instrument.
void play(std::int64_t offset, const std::uint8_t* bytes, int length)
{
    if (length > 0 && bytes[0] >= 0x80 && bytes[0] < 0xF0) {
        std::cout << "frame " << played + offset << ":";
        for (int i = 0; i < length; ++i) {
            std::cout << " " << int{bytes[i]};
        }
        std::cout << "\n";
    }
}

// main thread
void begin(AUMIDISequencer& sequencer, const std::filesystem::path& file)
{
    sequencer.loadMIDIFile(file, true);
    sequencer.start(0);
}

// render thread, block by block; `time` counts samples from 0
void render(AUMIDISequencer& sequencer, std::int64_t time, int frames)
{
    AURenderEvent* const chain = sequencer.process(time, frames);
    stampInOrder(chain, sequencer.cleanupCount, time, frames);
    for (const AURenderEvent* event = chain; event != nullptr; event = event->head.next) {
        play(event->MIDI.eventSampleTime - time, renderEventBytes(event->MIDI), event->MIDI.length);
    }
}

void save(const std::filesystem::path& file)
{
    const auto drums = std::make_shared<MIDIPattern>();
    drums->createProgramChangeEvent(0.0, 9, 25);
    for (int beat = 0; beat < 4; ++beat) {
        drums->createNoteEvent(beat, 9, 36, 100, 0, 0.25F);
    }
    const auto bar = std::make_shared<MIDIPattern>();
    bar->createNoteEvent(0.5, 0, 60, 90, 0, 1.0F);
    bar->mergeFrom(drums);
    bar->saveToFile(file);
}

bool isReadable(const std::filesystem::path& file)
{
    MusicSequence sequence;
    return NewMusicSequence(sequence) == noErr &&
           MusicSequenceFileLoad(sequence, file, kMusicSequenceFile_MIDIType,
                                 kMusicSequenceLoadSMF_PreserveTracks) == noErr;
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 2) {
        std::cerr << "playing FILE, as in playing Bar.mid\n";
        return 2;
    }
    save(argv[1]);
    if (!isReadable(argv[1])) {
        return 1;
    }
    AUMIDISequencer sequencer;
    begin(sequencer, argv[1]);
    constexpr int frames = 64;
    for (; sequencer.isPlaying(); played += frames) {
        render(sequencer, played, frames);
    }
}
