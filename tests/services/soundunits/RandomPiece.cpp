#include "tests/services/soundunits/RandomPiece.h"

namespace volvelle::test {

namespace {

using Bytes = std::vector<std::uint8_t>;

} // namespace

void RandomPiece::addStates(Song& song, double begin, double end, int count)
{
    for (int i = 0; i < count; ++i) {
        addState(song, begin + (end - begin) * i / count);
    }
}

void RandomPiece::addNotes(Song& song, double begin, double end)
{
    for (double beat = begin; beat < end; beat += 0.25) {
        for (const int channel : channels) {
            const bool isLong = below(3) == 0;
            const int key = isLong || below(2) == 0 ? 60 + below(4) : 36 + below(40);
            const double held = 0.25 * (2 + below(14));
            song.note(beat, channel, key, 60 + below(60), isLong ? held : 0.2);
        }
    }
}

void RandomPiece::addState(Song& song, double beat)
{
    const int channel = channels[below(3)];
    switch (below(12)) {
    case 0:
        return addParameter(song, beat, channel);
    case 1:
        return addExclusive(song, beat);
    case 2:
        song.message(beat, 0xC0 | channel, below(128));
        return;
    case 3:
        addMessage(song, beat, 0xB0 | channel, below(2) * 32, 0, 10);
        song.message(beat, 0xC0 | channel, below(128));
        return;
    case 4:
        song.message(beat, 0xD0 | channel, below(128));
        return;
    case 5:
        addMessage(song, beat, 0xA0 | channel, 36 + below(40), 0, 128);
        return;
    case 6:
        addMessage(song, beat, 0xE0 | channel, below(128), 0, 128);
        return;
    case 7:
        addMessage(song, beat, 0xB0 | channel, 120 + below(8), 0, 4);
        return;
    default:
        addMessage(song, beat, 0xB0 | channel, below(128), 20, 108);
    }
}

// One draw to a call: the order of draws within one is the compiler's.
void RandomPiece::addMessage(Song& song, double beat, int status, int data1, int least, int count)
{
    song.message(beat, status, data1, least + below(count));
}

void RandomPiece::addParameter(Song& song, double beat, int channel)
{
    const int status = 0xB0 | channel;
    const bool isRegistered = below(3) != 0;
    song.message(beat, status, isRegistered ? 101 : 99, isRegistered ? 0 : 120);
    song.message(beat, status, isRegistered ? 100 : 98, isRegistered ? below(5) : below(64));
    if (below(2) == 0) {
        song.message(beat, status, 38, below(128));
    }
    song.message(beat, status, 6, isRegistered ? below(80) : below(128));
    if (below(3) == 0) {
        song.message(beat, status, 38, below(128));
    }
    if (below(3) == 0) {
        song.message(beat, status, 101, 127).message(beat, status, 100, 127);
    }
}

void RandomPiece::addExclusive(Song& song, double beat)
{
    const auto value = [this](int bound) { return static_cast<std::uint8_t>(below(bound)); };
    const Bytes resets[] = {{0xF0, 0x7E, 0x7F, 0x09, 0x01, 0xF7},
                            {0xF0, 0x7E, 0x7F, 0x09, 0x03, 0xF7},
                            {0xF0, 0x41, 0x10, 0x42, 0x12, 0x40, 0x00, 0x7F, 0x00, 0x41, 0xF7},
                            {0xF0, 0x43, 0x10, 0x4C, 0x00, 0x00, 0x7E, 0x00, 0xF7}};
    switch (below(8)) {
    case 0:
        song.exclusive(beat, resets[below(4)]);
        return;
    case 1:
        song.exclusive(beat, {0xF0, 0x7F, 0x7F, 0x04, 0x01, 0x00, value(128), 0xF7});
        return;
    case 2:
    case 3: {
        Bytes octave{0xF0, 0x7E, 0x7F, 0x08, 0x08, 0x00, value(8), value(4)};
        for (int i = 0; i < 12; ++i) {
            octave.push_back(value(128));
        }
        octave.push_back(0xF7);
        song.exclusive(beat, octave);
        return;
    }
    default: {
        const std::uint8_t key = value(128);
        song.exclusive(
            beat, {0xF0, 0x7F, 0x7F, 0x08, 0x02, value(3), 0x01, key, value(120), value(128), 0x00, 0xF7});
    }
    }
}

} // namespace volvelle::test
