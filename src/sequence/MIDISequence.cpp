#include "sequence/MIDISequence.h"

#include "base/Checked.h"
#include "sequence/SequenceLog.h"

#include <array>
#include <tuple>
#include <utility>

namespace volvelle {

namespace {

constexpr std::string_view undefinedSequence = "MIDISequence::Fehler: Die Sequenz ist undefiniert.";

constexpr std::array<std::pair<OSStatus, std::string_view>, 10> statusTexts{{
    {kAudioToolboxErr_InvalidSequenceType, "Ungültiger Sequenztyp."},
    {kAudioToolboxErr_TrackIndexError, "Falscher Spur Index."},
    {kAudioToolboxErr_TrackNotFound, "Spur wurde nicht gefunden."},
    {kAudioToolboxErr_EndOfTrack, "Ende der Spur."},
    {kAudioToolboxErr_StartOfTrack, "Anfang der Spur."},
    {kAudioToolboxErr_IllegalTrackDestination, "Ungültiges Spurenziel."},
    {kAudioToolboxErr_NoSequence, "Keine Sequenz."},
    {kAudioToolboxErr_InvalidEventType, "Ungültiger Event Typ."},
    {kAudioToolboxErr_InvalidPlayerState, "Ungültiger Player Status."},
    {kAudioToolboxErr_CannotDoInCurrentContext, "Aktion im momentanen Kontext nicht möglich."},
}};

std::string_view statusText(OSStatus status)
{
    for (const auto& [code, line] : statusTexts) {
        if (code == status) {
            return line;
        }
    }
    return "Etwas ist fehlgeschlagen.";
}

// Gives up the share in the old sequence and makes a new one; a line in the log where that fails.
OSStatus renew(MusicSequence& sequence)
{
    if (sequence) {
        std::ignore = DisposeMusicSequence(sequence);
        sequence = nullptr;
    }
    const OSStatus status = NewMusicSequence(sequence);
    if (status != noErr) {
        logLine("MIDISequence::Fehler: ", status, ". \nEs konnte keine Sequenz erzeugt werden.");
    }
    return status;
}

} // namespace

MIDISequence::MIDISequence()
{
    MIDISequence::create();
}

MIDISequence::~MIDISequence()
{
    if (musicSequence.use_count() == 1) {
        MIDISequence::clear();
    }
}

void MIDISequence::create(std::uint16_t numberOfTracks)
{
    if (renew(musicSequence) != noErr) {
        return;
    }
    for (std::uint16_t i = 0; i < numberOfTracks; ++i) {
        MusicTrack track;
        if (const OSStatus status = MusicSequenceNewTrack(musicSequence, track); status != noErr) {
            logLine("MIDISequence::Fehler: Die Spuren für die Aufnahme konnten nicht erzeugt werden. : ",
                    status);
            checkStatus(status);
            return;
        }
    }
    sequenceNode = std::make_shared<SequenceNode>(numberOfTracks);
}

MusicTrack MIDISequence::createTrack()
{
    MusicTrack track;
    if (const OSStatus status = MusicSequenceNewTrack(musicSequence, track); status != noErr) {
        logLine("MIDISequence::Fehler: Die Spur konnte nicht erzeugt werden. : ", status);
        checkStatus(status);
        return nullptr;
    }
    return track;
}

void MIDISequence::deleteTrack(const MusicTrack& track)
{
    if (const OSStatus status = MusicSequenceDisposeTrack(musicSequence, track); status != noErr) {
        logLine("MIDISequence::Fehler: Die Spur konnte nicht gelöscht werden. : ", status);
        checkStatus(status);
    }
}

void MIDISequence::clear()
{
    for (const int index : checkedRange(0, getNumberOfTracks())) {
        clear(getTrack(index));
    }
    sequenceLength = 0.0;
}

void MIDISequence::clear(const MusicTrack& track)
{
    required(track);
    const double length = getTrackLength(track);
    if (!(length > 0.0)) {
        return;
    }
    if (isEmpty(track)) {
        logLine("MIDISequence::Warnung: Die Spur ist leer.");
        return;
    }
    if (MusicTrackClear(track, 0.0, length) != noErr) {
        logLine("MIDISequence::Warnung: Die Spur konnte nicht geleert werden oder hatte keine Events.");
    }
}

std::uint32_t MIDISequence::getTrackIndex(const MusicTrack& track)
{
    std::uint32_t index = 0;
    if (MusicSequenceGetTrackIndex(musicSequence, track, index) != noErr) {
        logLine("MIDISequence::Fehler: Der Spur Index konnte nicht ermittelt werden.");
        return 0;
    }
    return index;
}

void MIDISequence::setMusicSequence(const MusicSequence& sequence)
{
    musicSequence = sequence;
    if (!musicSequence) {
        logLine("MIDISequence::Warnung: Die Sequenz wurde auf NULL gesetzt.");
    }
}

MusicSequence MIDISequence::getMusicSequence()
{
    required(musicSequence);
    return musicSequence;
}

std::shared_ptr<SequenceNode> MIDISequence::getSequenceNode()
{
    required(sequenceNode);
    return sequenceNode;
}

double MIDISequence::getLength()
{
    return sequenceLength;
}

int MIDISequence::getNumberOfTracks()
{
    if (!musicSequence) {
        logLine(undefinedSequence);
        return -1;
    }
    std::uint32_t count = 0;
    if (const OSStatus status = MusicSequenceGetTrackCount(musicSequence, count); status != noErr) {
        logLine("MIDISequence::Fehler: ", status, ". \nDie Anzahl der Spuren konnte nicht ermittelt werden.");
        checkStatus(status);
    }
    return checkedCast<int>(count);
}

MusicTrack MIDISequence::getTrack(int trackIndex)
{
    if (!musicSequence) {
        logLine(undefinedSequence);
        fatalStop(nilMessage);
    }
    MusicTrack track;
    const OSStatus status =
        MusicSequenceGetIndTrack(musicSequence, checkedCast<std::uint32_t>(trackIndex), track);
    if (status != noErr) {
        logLine("MIDISequence::Fehler: ", status, ". \nFür den Index konnte keine Spur gefunden werden.");
        checkStatus(status);
    }
    required(track);
    return track;
}

std::uint8_t MIDISequence::getChannelAssignment(std::uint8_t channel)
{
    return channel < channelAssignments.size() ? channelAssignments[channel]->channel : std::uint8_t{0};
}

std::uint8_t MIDISequence::getPatchForChannel(std::uint8_t channel)
{
    return channel < patches.size() ? patches[channel] : std::uint8_t{0};
}

bool MIDISequence::isEmpty(const MusicTrack& track)
{
    if (!track) {
        logLine("MIDISequence::Fehler: Die Spur ist undefiniert.");
        return true;
    }
    MusicEventIterator iterator;
    if (const OSStatus status = NewMusicEventIterator(track, iterator); status != noErr) {
        logLine("MIDISequence::Fehler: ", status, ". \nEs konnte kein Iterator erzeugt werden.");
    }
    required(iterator);
    bool current = false;
    if (const OSStatus status = MusicEventIteratorHasCurrentEvent(iterator, current); status != noErr) {
        logLine("MIDISequence::Fehler: ", status,
                ". \nEs konnte nicht festgestellt werden, ob sich Daten in der Spur befinden.");
    }
    if (!current) {
        diagnose("Diagnose: Die Spur enthält keine Daten.");
    }
    std::ignore = DisposeMusicEventIterator(iterator);
    return !current;
}

void MIDISequence::diagnostics()
{
    if (!musicSequence) {
        logLine(undefinedSequence);
        return;
    }
    CAShow(musicSequence);
}

void MIDISequence::diagnose(std::string_view /*text*/) {}

void MIDISequence::checkStatus(OSStatus status)
{
    logLine("Fehler: ", status);
    logLine("The operation could not be completed (status ", status, ").");
    logLine(statusText(status));
}

void MIDISequence::saveToFile(const std::filesystem::path& url)
{
    if (!musicSequence) {
        logLine("MIDISequence::Fehler: MusicSequence konnte nicht initialisiert werden.");
        return;
    }
    const OSStatus status = MusicSequenceFileCreate(musicSequence, url, kMusicSequenceFile_MIDIType,
                                                    kMusicSequenceFileFlags_EraseFile, 0);
    if (status != noErr) {
        logLine("MIDISequence::Fehler: Die MIDI Datei konnte nicht gespeichert werden. : ", status);
        checkStatus(status);
    }
}

void MIDISequence::loadFromFile(const std::filesystem::path& url)
{
    loadStatus = renew(musicSequence);
    if (loadStatus != noErr) {
        return;
    }
    loadStatus = MusicSequenceFileLoad(musicSequence, url, kMusicSequenceFile_MIDIType, loadFlag);
    if (loadStatus != noErr) {
        logLine("MIDISequence::Fehler: ", loadStatus, ". \nDie MIDI Datei konnte nicht geladen werden.");
        checkStatus(loadStatus);
        create(16);
    }
}

} // namespace volvelle
