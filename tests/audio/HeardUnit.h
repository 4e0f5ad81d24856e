#pragma once

#include "services/audiograph/graph/AUAudioUnit.h"

#include <algorithm>
#include <cstdint>
#include <ostream>
#include <string>
#include <vector>

namespace volvelle::test {

struct HeardMessage {
    std::int64_t frame = 0;
    std::vector<std::uint8_t> bytes;

    bool operator==(const HeardMessage&) const = default;

    bool is(int status, int data1, int data2) const
    {
        return bytes.size() == 3 && bytes[0] == status && bytes[1] == data1 && bytes[2] == data2;
    }

    friend std::ostream& operator<<(std::ostream& stream, const HeardMessage& heard)
    {
        stream << heard.frame << ":" << std::hex;
        for (std::size_t i = 0; i < heard.bytes.size() && i < 4; ++i) {
            stream << " " << static_cast<int>(heard.bytes[i]);
        }
        return stream << std::dec << " (" << heard.bytes.size() << ")";
    }
};

// A silent instrument that notes what it is played, with the frame of its own, or counts it alone.
class HeardUnit : public AUAudioUnit {
public:
    explicit HeardUnit(bool notesAll = true, double rate = 48000.0)
        : AUAudioUnit(
              {fourCharacterCode("aumu"), fourCharacterCode("hear"), fourCharacterCode("test"), 0, 0}),
          isNoting(notesAll)
    {
        audioUnitName = "Heard";
        outputBusses = {{{rate, 2}, "out", true}};
        takesMIDI = true;
    }

    std::vector<HeardMessage> heard;
    std::vector<AUMIDIProgram> announced;
    int count = 0;
    int resets = 0;
    int engineStops = 0;

    void prepareToPlay(std::span<const AUMIDIProgram> programs) override
    {
        announced.assign(programs.begin(), programs.end());
    }

    void engineStopped() override
    {
        ++engineStops;
        AUAudioUnit::engineStopped();
    }

    void reset() noexcept override { ++resets; }

protected:
    void renderBlock(const float* /*inputLeft*/, const float* /*inputRight*/, float* left, float* right,
                     int frames, std::span<const TimedMessage> events) noexcept override
    {
        count += static_cast<int>(events.size());
        for (const TimedMessage& event : events) {
            if (isNoting) {
                heard.push_back(
                    {renderedFrames() + event.offset, {event.bytes().begin(), event.bytes().end()}});
            }
        }
        std::fill_n(left, frames, 0.0F);
        std::fill_n(right, frames, 0.0F);
    }

private:
    const bool isNoting;
};

} // namespace volvelle::test
