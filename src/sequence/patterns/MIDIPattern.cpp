#include "sequence/patterns/MIDIPattern.h"

#include "base/Checked.h"
#include "base/Console.h"

#include <tuple>
#include <utility>

namespace volvelle {

namespace {

void reportFailure(OSStatus status, std::string_view line)
{
    if (status != noErr) {
        directPrint(line);
    }
}

bool isPresent(bool present, std::string_view line)
{
    if (!present) {
        directPrint(line);
    }
    return present;
}

bool isTarget(const MusicSequence& sequence, const MusicTrack& track)
{
    return isPresent(sequence != nullptr, "Fehler: Die Ziel Sequenz ist undefiniert.") &&
           isPresent(track != nullptr, "Fehler: Die Ziel Spur ist undefiniert.");
}

bool isSource(const std::shared_ptr<MIDIPattern>& pattern)
{
    return isPresent(pattern != nullptr, "Fehler: Die Quell Spur ist undefiniert.");
}

// `name` is what the position is called in the lines.
void moveIntoTrack(double& position, double length, std::string_view name)
{
    if (position < 0.0) {
        directPrint("Warnung: Die ", name, " ist kleiner als 0.0.");
        position = 0.0;
    } else if (position > length) {
        directPrint("Warnung: Die ", name, " ist größer als die Länge ", length, ".");
        position = length;
    }
}

} // namespace

MIDIPattern::MIDIPattern()
{
    maxTracks = trackCount;
    MIDIPattern::create();
    loadFlag = kMusicSequenceLoadSMF_PreserveTracks;
}

void MIDIPattern::create(std::uint16_t /*numberOfTracks*/)
{
    musicTrack = nullptr;
    if (musicSequence) {
        std::ignore = DisposeMusicSequence(musicSequence);
        musicSequence = nullptr;
    }
    if (const OSStatus status = NewMusicSequence(musicSequence); status != noErr) {
        reportStatus(status, "Es konnte keine Sequenz erzeugt werden.");
        return;
    }
    if (const OSStatus status = MusicSequenceNewTrack(musicSequence, musicTrack); status != noErr) {
        directPrint("Fehler: Die interne Spur konnte nicht erzeugt werden. : ", status);
    }
}

MusicTrack MIDIPattern::getTrack(int /*trackIndex*/)
{
    required(musicTrack);
    return musicTrack;
}

double MIDIPattern::getLength()
{
    required(musicTrack);
    double length = 0.0;
    std::uint32_t size = sizeof length;
    const OSStatus status =
        MusicTrackGetProperty(musicTrack, kSequenceTrackProperty_TrackLength, &length, size);
    if (status != noErr) {
        reportStatus(status, "Die Länge der Spur konnte nicht ermittelt werden.");
    }
    return length;
}

void MIDIPattern::sequenceNodeToMusicSequence()
{
    clear();
    if (sequenceNode) {
        trackNodeToMusicTrack(sequenceNode->getTrack(0), musicTrack);
    }
}

void MIDIPattern::trackNodeToMusicTrack(const std::shared_ptr<TrackNode>& trackNode, const MusicTrack& track)
{
    if (isTarget(musicSequence, track)) {
        MIDISequence::trackNodeToMusicTrack(trackNode, track);
    }
}

void MIDIPattern::patternNodeToMusicTrack(const std::shared_ptr<PatternNode>& patternNode,
                                          const MusicTrack& track)
{
    if (isTarget(musicSequence, track)) {
        MIDISequence::patternNodeToMusicTrack(patternNode, track);
    }
}

void MIDIPattern::loadFromFile(const std::filesystem::path& url)
{
    MIDISequence::loadFromFile(url);
    musicTrack = nullptr;
    std::ignore = MusicSequenceGetIndTrack(musicSequence, 0, musicTrack);
}

void MIDIPattern::clearRange(double from, double to)
{
    if (!check(from, to)) {
        reportFailure(MusicTrackClear(musicTrack, from, to), "Fehler: Die Spur konnte nicht geleert werden.");
    }
}

void MIDIPattern::cut(double from, double to)
{
    if (!check(from, to)) {
        reportFailure(MusicTrackCut(musicTrack, from, to),
                      "Fehler: Die Events konnten nicht ausgeschnitten werden.");
    }
}

void MIDIPattern::move(double begin, double end, double to)
{
    if (!check(begin, end)) {
        check(to);
        reportFailure(MusicTrackMoveEvents(musicTrack, begin, end, to),
                      "Fehler: Die Events konnten nicht verschoben werden.");
    }
}

void MIDIPattern::mergeFrom(const std::shared_ptr<MIDIPattern>& other)
{
    if (isSource(other)) {
        merge(other->getTrack(0), 0.0, other->getLength(), getTrack(0), 0.0);
    }
}

void MIDIPattern::mergeTo(const std::shared_ptr<MIDIPattern>& other)
{
    if (isSource(other)) {
        merge(getTrack(0), 0.0, getLength(), other->getTrack(0), 0.0);
    }
}

void MIDIPattern::mergeFrom(const std::shared_ptr<MIDIPattern>& other, double begin, double end, double to)
{
    if (check(begin, end)) {
        return;
    }
    check(to);
    if (isSource(other)) {
        merge(other->getTrack(0), begin, end, musicTrack, to);
    }
}

void MIDIPattern::mergeTo(const std::shared_ptr<MIDIPattern>& other, double begin, double end, double to)
{
    if (check(begin, end)) {
        return;
    }
    check(to);
    if (isSource(other)) {
        merge(musicTrack, begin, end, other->getTrack(0), to);
    }
}

void MIDIPattern::copyFrom(const std::shared_ptr<MIDIPattern>& other, double begin, double end, double to)
{
    if (!check(begin, end)) {
        check(to);
        reportFailure(MusicTrackCopyInsert(required(other).getTrack(0), begin, end, musicTrack, to),
                      "Fehler: Die Events konnten nicht in diese Spur eingefügt werden.");
    }
}

void MIDIPattern::copyTo(const std::shared_ptr<MIDIPattern>& other, double begin, double end, double to)
{
    if (!check(begin, end)) {
        check(to);
        reportFailure(MusicTrackCopyInsert(musicTrack, begin, end, required(other).getTrack(0), to),
                      "Fehler: Die Events konnten nicht in die andere Spur eingefügt werden.");
    }
}

bool MIDIPattern::check(double& from, double& to)
{
    const double length = getLength();
    moveIntoTrack(from, length, "Anfangsposition");
    moveIntoTrack(to, length, "Endposition");
    if (from > to) {
        directPrint("Warnung: Die Anfangsposition ist größer als die Endposition.");
        std::swap(from, to);
    }
    if (from == to) {
        directPrint("Fehler: Die Anfangsposition ist gleich der Endposition.");
        return false;
    }
    return true;
}

bool MIDIPattern::check(double& to)
{
    const double length = getLength();
    if (to < 0.0) {
        directPrint("Warnung: Die Zielposition ist 0.0.");
        to = 0.0;
    } else if (to > length) {
        directPrint("Warnung: Die Zielposition ist kleiner die Länge ", length, ".");
        to = length;
    }
    return true;
}

void MIDIPattern::merge(const MusicTrack& source, double begin, double end, const MusicTrack& destination,
                        double at)
{
    reportFailure(MusicTrackMerge(source, begin, end, destination, at),
                  "Fehler: Die Spuren konnten nicht zusammengeführt werden.");
}

void MIDIPattern::reportStatus(OSStatus status, std::string_view text, std::source_location place)
{
    directPrint(place.line(), " Fehler: ", status, ". \n", text);
}

} // namespace volvelle
