#pragma once

#include "sequence/MIDISequence.h"
#include "sequence/patterns/PatternSequenceDelegate.h"

#include <cstdint>
#include <filesystem>
#include <memory>
#include <vector>

namespace volvelle {

// A song as a grid: rows are sections of one bar of four beats, columns are the sixteen MIDI channels, and
// each cell is a pattern with a music track of its own in `link`.
//
// Each update of a track adds two events at position 0 to each of its cells, a channel prefix with the column
// and a sequence number with the row, and moves all events of a cell by its offset, those of earlier updates
// once more. Events go to the music track whose index is their channel, whatever the link: all those metas
// stand on the first track, and a grid that was saved does not come back from the file. Nor does an update
// take away metas that stand at 0 alone, since such a track has no length to clear: they pile up.
//
// An index that equals the count of sections, and a channel of 16, pass the tests of the operations and are a
// fatal stop. Lines go to the console at once.
class MIDIPatternSequence : public MIDISequence {
public:
    static constexpr std::uint8_t channelCount = 16;

    // One row.
    class Section {
    public:
        std::vector<std::shared_ptr<PatternNode>> patterns; // one for each channel; none is null

        Section();

        // Appends sixteen patterns.
        void create();
    };

    std::weak_ptr<PatternSequenceDelegate> pattern_delegate;
    std::vector<std::shared_ptr<Section>> sections;
    std::uint16_t currentPatternIndex = 0; // the cell that reading fills: row, column, pattern
    std::uint8_t currentChannelIndex = 0;
    std::shared_ptr<PatternNode> currentPattern; // null for none

    // One section, its sixteen cells with the events of one update, and their sixteen tracks. File tracks
    // stay as they are when a file is loaded.
    MIDIPatternSequence();

    // MARK: The grid

    virtual void musicTrackToPatterns();    // does nothing
    virtual void patternsToMusicSequence(); // does nothing
    // At the end. The 65,536th section is a fatal stop, here and in getPattern().
    virtual void createSection();
    // Its music tracks stay. An index above the count is reported, and nothing is deleted.
    virtual void deleteSection(std::uint16_t at);
    // Empties the cells. An index above the count is reported.
    virtual void clearSection(std::uint16_t at);
    // Deletes all sections from the last one down, and makes one.
    virtual void clearAllSections();
    virtual void moveSection(std::uint16_t from, std::uint16_t to); // does nothing
    virtual void muteSection(std::uint16_t at);                     // does nothing
    virtual void soloSection(std::uint16_t at);                     // does nothing

    // For an index above the count it says so and makes the sections that are missing. Null, with a line, for
    // a channel above 16.
    virtual std::shared_ptr<PatternNode> getPattern(std::uint16_t sectionIndex, std::uint8_t channelIndex);
    // An index above the count, a channel above 16 and no pattern are reported, and the grid stays as it was.
    virtual void setPattern(const std::shared_ptr<PatternNode>& patternNode, std::uint16_t sectionIndex,
                            std::uint8_t channelIndex);
    virtual void copyPattern(const std::shared_ptr<PatternNode>& patternNode, std::uint16_t sectionIndex,
                             std::uint8_t channelIndex); // does nothing
    // Empties the cell. An index above the count and a channel above 16 are reported.
    virtual void clearPattern(std::uint16_t sectionIndex, std::uint8_t channelIndex);
    virtual void movePattern(std::uint16_t sectionIndexFrom, std::uint8_t channelIndexFrom,
                             std::uint16_t sectionIndexTo, std::uint8_t channelIndexTo); // does nothing
    virtual void soloPattern(std::uint16_t sectionIndexFrom, std::uint8_t channelIndexFrom,
                             std::uint16_t sectionIndexTo, std::uint8_t channelIndexTo); // does nothing
    virtual void mutePattern(std::uint16_t sectionIndexFrom, std::uint8_t channelIndexFrom,
                             std::uint16_t sectionIndexTo, std::uint8_t channelIndexTo); // does nothing
    virtual void muteTrack(std::uint8_t at);                                             // does nothing
    virtual void soloTrack(std::uint8_t at);                                             // does nothing

    // MARK: The grid to the music sequence

    // Clears all tracks and updates each section.
    virtual void updateSequence();
    // Updates the track of each column, in all sections, not in this one alone. An index above the count is
    // reported.
    virtual void updateSection(std::uint16_t sectionIndex);
    // The cells of one channel in all sections: events, channel, offset and link, and their events into the
    // music sequence. A channel of 16 or more is reported.
    virtual void updateTrack(std::uint8_t channelIndex);
    virtual void updatePattern(std::uint16_t id); // does nothing

    // Adds the pattern's offset to its events' positions, for good, and writes them to the tracks of their
    // channels; nothing is cleared.
    void patternNodeToMusicTrack(const std::shared_ptr<PatternNode>& patternNode,
                                 const MusicTrack& musicTrack) override;

    // MARK: The music sequence to the grid

    // Reads into the cells as they stand; the tree is emptied and stays so.
    void musicSequenceToSequenceNode() override;
    // Each event goes into currentPattern, whatever its track. A sequence number selects the row and makes
    // what is missing up to 1024 rows, a channel prefix selects the column, and either goes into the cell
    // that it selects; a higher row or column selects nothing. An event that comes before any cell is
    // selected is in no cell, and the listener is told of it all the same.
    void iterateEvents(const MusicTrack& track, int index) override;

    void saveToFile(const std::filesystem::path& url) override;
    // The cells stay as they were, their links too, though the tracks are others then.
    void loadFromFile(const std::filesystem::path& url) override;

private:
    void deleteAllTracks();
    bool hasCell(std::uint16_t sectionIndex, std::uint8_t channelIndex) const;
    std::shared_ptr<PatternNode>& cell(std::uint16_t sectionIndex, std::uint8_t channelIndex);
    void createSectionsUpTo(std::uint16_t sectionIndex);
    void updateCell(std::uint16_t sectionIndex, std::uint8_t channelIndex);
    void steer(const EventNode& node);
    void select(std::uint16_t sectionIndex, std::uint8_t channelIndex);
};

} // namespace volvelle
