#pragma once

#include "midi/MIDIRawDataExtension.h"
#include "sequence/patterns/MIDIPatternSequence.h"
#include "tests/sequence/patterns/PatternFixture.h"

namespace volvelle::test {

// Keeps the lines of diagnosis.
class ObservedGrid : public MIDIPatternSequence {
public:
    Lines diagnoses;

    void diagnose(std::string_view text) override { diagnoses.emplace_back(text); }
};

// Notes what it is told of sections, for instance "created 2", "deleted 0".
class RecordingSections : public PatternSequenceDelegate {
public:
    Lines calls;

    void sectionCreated(std::uint16_t count) override { calls.push_back(concat("created ", count)); }

    void sectionDeleted(std::uint16_t index) override { calls.push_back(concat("deleted ", index)); }
};

class GridFixture : public PatternFixture {
protected:
    static std::shared_ptr<MidiNoteEvent> note(double position, std::uint8_t channel, std::uint8_t number)
    {
        return std::make_shared<MidiNoteEvent>(position, 1.0F, channel, number, 100, 64);
    }

    std::shared_ptr<PatternNode> cell(std::size_t row, std::size_t column) const
    {
        return grid->sections.at(row)->patterns.at(column);
    }

    Lines nodes(std::size_t row, std::size_t column) const { return describe(*cell(row, column)); }

    Lines track(int index) const { return contents(grid->getTrack(index)); }

    // One section without events, and a music sequence of that many empty tracks.
    void empty(std::uint16_t tracks)
    {
        grid->clearAllSections();
        grid->create(tracks);
        sections->calls.clear();
    }

    void SetUp() override { grid->pattern_delegate = sections; }

    std::shared_ptr<ObservedGrid> grid = std::make_shared<ObservedGrid>();
    std::shared_ptr<RecordingSections> sections = std::make_shared<RecordingSections>();
};

} // namespace volvelle::test
