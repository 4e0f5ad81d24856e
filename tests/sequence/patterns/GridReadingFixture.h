#pragma once

#include "tests/sequence/patterns/GridFixture.h"

namespace volvelle::test {

// A grid of one clean section, and a music sequence to put events into.
class GridReadingFixture : public GridFixture {
protected:
    void SetUp() override
    {
        GridFixture::SetUp();
        empty(1);
        said();
    }

    void putMeta(double time, std::uint8_t type, const std::vector<std::uint8_t>& data, int index = 0)
    {
        MyMIDIMetaEvent record(data);
        record.ptr->metaEventType = type;
        MusicTrackNewMetaEvent(grid->getTrack(index), time, record.ptr);
    }

    void putRow(double time, int row, int index = 0)
    {
        putMeta(time, 0x00, {static_cast<std::uint8_t>(row % 256), static_cast<std::uint8_t>(row / 256)},
                index);
    }

    void putColumn(double time, std::uint8_t column, int index = 0) { putMeta(time, 0x20, {column}, index); }

    void putNote(double time, std::uint8_t number, int index = 0)
    {
        MusicTrackNewMIDINoteEvent(grid->getTrack(index), time, {3, number, 100, 64, 1.0F});
    }

    static std::string noteNode(double time, int number)
    {
        return concat("MidiNoteEvent ", time, " 3: ", number, " 100 64 1.0");
    }

    // The notes of each cell that has some, as "row column: number position, ".
    Lines notes() const
    {
        Lines lines;
        for (std::size_t row = 0; row < grid->sections.size(); ++row) {
            for (std::size_t column = 0; column < 16; ++column) {
                std::string text;
                for (const auto& each : cell(row, column)->getNotes()) {
                    text += concat(each->number, " ", each->position, ", ");
                }
                if (!text.empty()) {
                    lines.push_back(concat(row, " ", column, ": ", text));
                }
            }
        }
        return lines;
    }
};

} // namespace volvelle::test
