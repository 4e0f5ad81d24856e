#include "sequence/patterns/MIDIPatternSequence.h"

#include "base/Checked.h"
#include "base/Console.h"
#include "sequence/patterns/PatternReadingReport.h"

namespace volvelle {

namespace {

constexpr double sectionLength = 4.0; // beats
constexpr std::uint16_t maximalRows = 1024;

} // namespace

MIDIPatternSequence::MIDIPatternSequence()
{
    maxTracks = 10000;
    loadFlag = kMusicSequenceLoadSMF_PreserveTracks;
    deleteAllTracks();
    MIDIPatternSequence::createSection();
    MIDIPatternSequence::updateSequence();
}

void MIDIPatternSequence::deleteAllTracks()
{
    for (int count = MIDISequence::getNumberOfTracks(); count > 0; --count) {
        MIDISequence::deleteTrack(MIDISequence::getTrack(count - 1));
    }
}

void MIDIPatternSequence::updateSequence()
{
    clear();
    for (std::size_t i = 0; i < sections.size(); ++i) {
        updateSection(checkedCast<std::uint16_t>(i));
    }
}

void MIDIPatternSequence::updateSection(std::uint16_t sectionIndex)
{
    if (sectionIndex > sections.size()) {
        directPrint("Fehler: Mit der Anzahl der Sektionen stimmt etwas nicht.");
        return;
    }
    const std::size_t count = required(checkedAt(sections, sectionIndex)).patterns.size();
    for (std::size_t i = 0; i < count; ++i) {
        updateTrack(checkedCast<std::uint8_t>(i));
    }
}

void MIDIPatternSequence::updateTrack(std::uint8_t channelIndex)
{
    if (channelIndex >= channelCount) {
        directPrint("Fehler: Mit dem Pattern Index (Kanal) stimmt etwas nicht.");
        return;
    }
    for (std::size_t i = 0; i < sections.size(); ++i) {
        updateCell(checkedCast<std::uint16_t>(i), channelIndex);
    }
}

void MIDIPatternSequence::updateCell(std::uint16_t sectionIndex, std::uint8_t channelIndex)
{
    const auto pattern = getPattern(sectionIndex, channelIndex);
    required(pattern).addEvent(std::make_shared<MetaChannelPrefixEvent>(0.0, channelIndex));
    pattern->addEvent(std::make_shared<MetaSequenceNumberEvent>(0.0, sectionIndex));
    pattern->channel = channelIndex;
    pattern->offset = sectionIndex * sectionLength;
    if (!pattern->link) {
        pattern->link = createTrack();
    }
    patternNodeToMusicTrack(pattern, pattern->link);
}

void MIDIPatternSequence::patternNodeToMusicTrack(const std::shared_ptr<PatternNode>& patternNode,
                                                  const MusicTrack& musicTrack)
{
    if (!musicSequence) {
        directPrint("Fehler: Die Ziel Sequenz ist undefiniert.");
        return;
    }
    if (!patternNode) {
        directPrint("Fehler: Das Quell Pattern ist undefiniert.");
        return;
    }
    for (const auto& event : patternNode->events) {
        required(event);
        eventsToMusicTrack(event, musicTrack, patternNode->offset);
    }
}

void MIDIPatternSequence::musicSequenceToSequenceNode()
{
    if (musicSequence) {
        currentPattern = nullptr;
        currentChannelIndex = 0;
        currentPatternIndex = 0;
    }
    PatternReadingReport report(*this);
    readSequence(report);
}

void MIDIPatternSequence::iterateEvents(const MusicTrack& track, int index)
{
    readTrack(track, index, [this](const EventNode& node, EventTarget) {
        steer(node);
        return currentPattern.get();
    });
}

void MIDIPatternSequence::steer(const EventNode& node)
{
    if (const auto* number = dynamic_cast<const MetaSequenceNumberEvent*>(&node)) {
        select(number->getSequenceNumber(), currentChannelIndex);
    } else if (const auto* prefix = dynamic_cast<const MetaChannelPrefixEvent*>(&node)) {
        select(currentPatternIndex, prefix->getPrefix());
    }
}

void MIDIPatternSequence::select(std::uint16_t sectionIndex, std::uint8_t channelIndex)
{
    if (sectionIndex >= maximalRows || channelIndex >= channelCount) {
        return;
    }
    createSectionsUpTo(sectionIndex);
    currentPatternIndex = sectionIndex;
    currentChannelIndex = channelIndex;
    currentPattern = getPattern(sectionIndex, channelIndex);
}

void MIDIPatternSequence::saveToFile(const std::filesystem::path& url)
{
    patternsToMusicSequence();
    MIDISequence::saveToFile(url);
}

void MIDIPatternSequence::loadFromFile(const std::filesystem::path& url)
{
    MIDISequence::loadFromFile(url);
    musicTrackToPatterns();
}

} // namespace volvelle
