#include "sequence/patterns/MIDIPatternSequence.h"

#include "base/Checked.h"
#include "base/Console.h"

namespace volvelle {

namespace {

constexpr std::uint8_t channelBound = 17; // of the tests of a channel

} // namespace

MIDIPatternSequence::Section::Section()
{
    create();
}

void MIDIPatternSequence::Section::create()
{
    for (std::uint8_t i = 0; i < channelCount; ++i) {
        patterns.push_back(std::make_shared<PatternNode>());
    }
}

void MIDIPatternSequence::createSection()
{
    sections.push_back(std::make_shared<Section>());
    const auto count = checkedCast<std::uint16_t>(sections.size());
    if (const auto listener = pattern_delegate.lock()) {
        listener->sectionCreated(count);
    }
}

void MIDIPatternSequence::deleteSection(std::uint16_t at)
{
    clearSection(at);
    if (at >= sections.size()) {
        return;
    }
    sections.erase(sections.begin() + at);
    if (const auto listener = pattern_delegate.lock()) {
        listener->sectionDeleted(at);
    }
}

void MIDIPatternSequence::clearSection(std::uint16_t at)
{
    if (at > sections.size()) {
        directPrint("Fehler: Die Anzahl der Sektionen ist kleiner als der Index.");
        return;
    }
    for (const auto& pattern : required(checkedAt(sections, at)).patterns) {
        required(pattern).clearEvents();
    }
}

void MIDIPatternSequence::clearAllSections()
{
    for (std::size_t count = sections.size(); count > 0; --count) {
        deleteSection(checkedCast<std::uint16_t>(count - 1));
    }
    createSection();
}

std::shared_ptr<PatternNode> MIDIPatternSequence::getPattern(std::uint16_t sectionIndex,
                                                             std::uint8_t channelIndex)
{
    if (sectionIndex > sections.size()) {
        directPrint("Warnung: Der Index ist größer als die Anzahl der verfügbaren Sektionen.");
        createSectionsUpTo(sectionIndex);
    }
    if (channelIndex < channelBound) {
        return cell(sectionIndex, channelIndex);
    }
    directPrint("Fehler: Der Index ist größer als die Anzahl der verfügbaren Kanäle.");
    return nullptr;
}

void MIDIPatternSequence::setPattern(const std::shared_ptr<PatternNode>& patternNode,
                                     std::uint16_t sectionIndex, std::uint8_t channelIndex)
{
    if (!hasCell(sectionIndex, channelIndex)) {
        return;
    }
    if (!patternNode) {
        directPrint("Warnung: Das Pattern ist undefiniert.");
        return;
    }
    cell(sectionIndex, channelIndex) = patternNode;
}

void MIDIPatternSequence::clearPattern(std::uint16_t sectionIndex, std::uint8_t channelIndex)
{
    if (hasCell(sectionIndex, channelIndex)) {
        required(cell(sectionIndex, channelIndex)).clearEvents();
    }
}

bool MIDIPatternSequence::hasCell(std::uint16_t sectionIndex, std::uint8_t channelIndex) const
{
    if (sectionIndex > sections.size()) {
        directPrint("Fehler: Der Index ist größer als die Anzahl der verfügbaren Sektionen.");
        return false;
    }
    if (channelIndex >= channelBound) {
        directPrint("Fehler: Der Index ist größer als die Anzahl der verfügbaren Kanäle.");
        return false;
    }
    return true;
}

std::shared_ptr<PatternNode>& MIDIPatternSequence::cell(std::uint16_t sectionIndex, std::uint8_t channelIndex)
{
    return checkedAt(required(checkedAt(sections, sectionIndex)).patterns, channelIndex);
}

void MIDIPatternSequence::createSectionsUpTo(std::uint16_t sectionIndex)
{
    while (sectionIndex >= sections.size()) {
        createSection();
    }
}

void MIDIPatternSequence::musicTrackToPatterns() {}

void MIDIPatternSequence::patternsToMusicSequence() {}

void MIDIPatternSequence::moveSection(std::uint16_t /*from*/, std::uint16_t /*to*/) {}

void MIDIPatternSequence::muteSection(std::uint16_t /*at*/) {}

void MIDIPatternSequence::soloSection(std::uint16_t /*at*/) {}

void MIDIPatternSequence::copyPattern(const std::shared_ptr<PatternNode>& /*patternNode*/,
                                      std::uint16_t /*sectionIndex*/, std::uint8_t /*channelIndex*/)
{
}

void MIDIPatternSequence::movePattern(std::uint16_t /*sectionIndexFrom*/, std::uint8_t /*channelIndexFrom*/,
                                      std::uint16_t /*sectionIndexTo*/, std::uint8_t /*channelIndexTo*/)
{
}

void MIDIPatternSequence::soloPattern(std::uint16_t /*sectionIndexFrom*/, std::uint8_t /*channelIndexFrom*/,
                                      std::uint16_t /*sectionIndexTo*/, std::uint8_t /*channelIndexTo*/)
{
}

void MIDIPatternSequence::mutePattern(std::uint16_t /*sectionIndexFrom*/, std::uint8_t /*channelIndexFrom*/,
                                      std::uint16_t /*sectionIndexTo*/, std::uint8_t /*channelIndexTo*/)
{
}

void MIDIPatternSequence::muteTrack(std::uint8_t /*at*/) {}

void MIDIPatternSequence::soloTrack(std::uint8_t /*at*/) {}

void MIDIPatternSequence::updatePattern(std::uint16_t /*id*/) {}

} // namespace volvelle
