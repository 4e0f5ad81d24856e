#include "base/Checked.h"
#include "sequence/SequenceFlattener.h"
#include "sequence/SequenceLog.h"
#include "sequence/SequenceReader.h"
#include "sequence/SequenceWriter.h"

namespace volvelle {

namespace {

constexpr std::string_view undefinedTarget = "MIDISequence::Fehler: Die Ziel Sequenz ist undefiniert.";
constexpr std::string_view undefinedTargetTrack = "MIDISequence::Fehler: Die Ziel Spur ist undefiniert.";
constexpr std::string_view undefinedSourceTrack = "MIDISequence::Fehler: Die Quell Spur ist undefiniert.";
constexpr std::string_view undefinedPattern = "MIDISequence::Fehler: Das Quell Pattern ist undefiniert.";

bool isPresent(bool present, std::string_view message)
{
    if (!present) {
        logLine(message);
    }
    return present;
}

} // namespace

void MIDISequence::eventsToMusicTrack(const std::shared_ptr<EventNode>& event, const MusicTrack& track,
                                      double offset)
{
    if (!isPresent(musicSequence != nullptr, undefinedTarget) ||
        !isPresent(track != nullptr, undefinedTargetTrack) ||
        !isPresent(event != nullptr, "MIDISequence::Fehler: Das Event ist undefiniert.")) {
        return;
    }
    event->position += offset;
    SequenceWriter(*this).writeByCode(event);
}

void MIDISequence::sequenceNodeToMusicSequence()
{
    if (!isPresent(musicSequence != nullptr, undefinedTarget) ||
        !isPresent(sequenceNode != nullptr, "MIDISequence::Fehler: Die Quell Sequenz ist undefiniert.")) {
        return;
    }
    clear();
    SequenceWriter(*this).writeTempoTrack();
    for (const auto& node : sequenceNode->tracks) {
        const std::uint8_t channel = required(node).channel;
        MusicTrack track;
        if (MusicSequenceGetIndTrack(musicSequence, channel, track) != noErr) {
            logLine("MIDISequence::Fehler: Eine Spur ", channel, " konnte nicht abgerufen werden.");
        }
        if (isPresent(track != nullptr,
                      "MIDISequence::Fehler: Die Zielspur für das Update konnte nicht ermittelt werden.")) {
            trackNodeToMusicTrack(node, track);
        }
    }
}

void MIDISequence::trackNodeToMusicTrack(const std::shared_ptr<TrackNode>& trackNode,
                                         const MusicTrack& musicTrack)
{
    if (!isPresent(musicSequence != nullptr, undefinedTarget) ||
        !isPresent(musicTrack != nullptr, undefinedTargetTrack) ||
        !isPresent(trackNode != nullptr, undefinedSourceTrack)) {
        return;
    }
    clear(musicTrack);
    SequenceWriter(*this).writeAll(*trackNode, musicTrack);
    for (const auto& pattern : trackNode->patterns) {
        SequenceWriter(*this).writeAll(required(pattern), musicTrack);
    }
}

void MIDISequence::trackNodeToMusicSequence(const std::shared_ptr<TrackNode>& trackNode)
{
    if (!isPresent(musicSequence != nullptr, undefinedTarget) ||
        !isPresent(trackNode != nullptr, undefinedSourceTrack)) {
        return;
    }
    clear();
    trackNodeToMusicTrack(trackNode, getTrack(trackNode->channel));
}

void MIDISequence::patternNodeToMusicTrack(const std::shared_ptr<PatternNode>& patternNode,
                                           const MusicTrack& musicTrack)
{
    if (!isPresent(musicSequence != nullptr, undefinedTarget) ||
        !isPresent(patternNode != nullptr, undefinedPattern) ||
        !isPresent(musicTrack != nullptr, undefinedTargetTrack)) {
        return;
    }
    clear(musicTrack);
    SequenceWriter(*this).writeAll(*patternNode, musicTrack);
}

void MIDISequence::patternNodeToMusicSequence(const std::shared_ptr<PatternNode>& patternNode)
{
    if (!isPresent(musicSequence != nullptr, undefinedTarget) ||
        !isPresent(patternNode != nullptr, undefinedPattern)) {
        return;
    }
    clear();
    for (const auto& event : patternNode->events) {
        eventsToMusicTrack(event, getTrack(required(event).channel));
    }
}

void MIDISequence::musicSequenceToSequenceNode()
{
    SequenceReadingReport report(*this);
    readSequence(report);
}

void MIDISequence::readSequence(SequenceReadingReport& report)
{
    if (!musicSequence) {
        logLine("MIDISequence::Fehler: Die Sequenz ist undefiniert.");
        return;
    }
    const auto self = weak_from_this().lock();
    channelAssignments.clear();
    patches.fill(0);
    required(sequenceNode).clear();
    sequenceLength = 0.0;
    diagnose("\nDiagnose:");
    const std::string frame = concat("--------------------------------- ", report.title(), " Sequence ");
    diagnose(frame + "------------------------------------START");
    SequenceReader::readTempoTrack(*this, report);
    SequenceReader::readTracks(*this, report);
    diagnose("\nDiagnose:");
    diagnose(frame + "-------------------------------------STOP\n");
}

void MIDISequence::iterateEvents(const MusicTrack& track, int index)
{
    readTrack(track, index, SequenceReader::placeInTree(*this, index));
}

void MIDISequence::readTrack(const MusicTrack& track, int index, const NodePlace& place)
{
    const auto self = weak_from_this().lock();
    const auto assignment = std::make_shared<ChannelAssignment>();
    if (index >= 0 && index < 16) {
        assignment->index = index;
        channelAssignments.push_back(assignment);
    }
    if (!track) {
        logLine("Fehler: Die Spur ist undefiniert.");
        return;
    }
    SequenceReader(*this, place, *assignment, patches).readTrack(track);
}

void MIDISequence::fillMetaData(const MIDIMetaEvent* source, UserEvent& dest)
{
    const MIDIMetaEvent& record = required(source);
    SequenceReader::appendPayload(*this, "Metadata", record.data, record.dataLength, dest);
}

void MIDISequence::fillSysExData(const MIDIRawData* source, UserEvent& dest)
{
    const MIDIRawData& record = required(source);
    SequenceReader::appendPayload(*this, "SysExData", record.data, record.length, dest);
}

void MIDISequence::fillUserData(const MusicEventUserData* source, UserEvent& dest)
{
    const MusicEventUserData& record = required(source);
    SequenceReader::appendPayload(*this, "UserData", record.data, record.length, dest);
}

std::vector<std::shared_ptr<AUMIDIEventEx>> MIDISequence::nodesToAUMIDIEvent(double samplerate,
                                                                             std::uint8_t cable)
{
    if (!sequenceNode) {
        return {};
    }
    const MusicTrack tempoTrack = getTempoTrack();
    required(tempoTrack);
    const auto tempoEvents = getTempoEvents(tempoTrack, samplerate);
    return SequenceFlattener(*sequenceNode, samplerate).events(tempoEvents, cable);
}

std::vector<AUMIDIEvent> MIDISequence::nodesToAUMIDIEvent(double samplerate)
{
    if (!sequenceNode) {
        return {};
    }
    return SequenceFlattener(*sequenceNode, samplerate).records();
}

} // namespace volvelle
