#pragma once

#include "tests/MIDISequences/realtime/SequencerProbe.h"

#include <algorithm>
#include <optional>
#include <string>
#include <vector>

namespace volvelle::test {

// What a sequencer does, step by step and in the plainest way: on one thread, with lists that are copied and
// searched from the start.
class NaiveSequencer {
public:
    StampedEvents list;
    std::optional<StampedEvents> pending;
    StampedEvents waiting;
    StampedEvents special;
    StampedEvents running;
    std::vector<std::string> calls;
    std::vector<int> channels{0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15};
    std::vector<int> kinds;
    bool isLooping = false;
    bool stopped = true;
    bool seeking = false;
    double tempo = 1.0;
    double rate = 48000.0;
    std::size_t index = 0;
    std::int64_t position = 0;  // of the audio clock
    std::int64_t positionV = 0; // of the file
    std::int64_t startTime = 0;
    std::int64_t sampleTime = 0;
    std::int64_t pausedTime = 0;
    std::int64_t suspendTime = 0;
    int frames = 512;
    int loops = 0;

    void load(StampedEvents events);
    void start(std::int64_t time);
    void stop();
    void pause();
    void goOn();
    void rewind();
    void seek(double value);
    void seekToEvent(int to);
    void send(const Bytes& bytes);
    StampedEvents process(std::int64_t time, int frameCount);
    StampedEvents processInternal(std::int64_t time, int frameCount);

private:
    bool passes(const Bytes& bytes) const;
    void endNotes(StampedEvents& out);
    void playFile(StampedEvents& out);
    std::optional<std::int64_t> stamp(std::int64_t at, bool isNote) const;
    void track(const Stamped& event);
    bool endOfFile();
    void sendAll(std::uint8_t status, std::uint8_t number);
};

} // namespace volvelle::test
