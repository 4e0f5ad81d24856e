#pragma once

#include "services/musicsequence/MusicSequence.h"

// Lets a test make any operation of the service fail. In a build without VOLVELLE_FAULT_POINTS nothing of it
// is left in the operations.
namespace volvelle {

enum class MusicSequenceOperation {
    NewMusicSequence,
    DisposeMusicSequence,
    MusicSequenceNewTrack,
    MusicSequenceDisposeTrack,
    MusicSequenceGetTrackCount,
    MusicSequenceGetIndTrack,
    MusicSequenceGetTrackIndex,
    MusicSequenceGetTempoTrack,
    MusicSequenceFileCreateData,
    MusicSequenceFileCreate,
    MusicSequenceFileLoad,
    MusicSequenceFileLoadData,
    NewMusicSequenceFromFile,
    NewMusicSequenceFromData,
    MusicSequenceGetLoadWarnings,
    MusicSequenceGetLoadDivision,
    MusicTrackGetProperty,
    MusicTrackSetProperty,
    MusicTrackClear,
    MusicTrackCut,
    MusicTrackCopyInsert,
    MusicTrackMerge,
    MusicTrackMoveEvents,
    MusicTrackNewMIDINoteEvent,
    MusicTrackNewMIDIChannelEvent,
    MusicTrackNewMIDIRawDataEvent,
    MusicTrackNewMetaEvent,
    MusicTrackNewExtendedTempoEvent,
    MusicTrackNewUserEvent,
    MusicTrackNewExtendedNoteEvent,
    MusicTrackNewParameterEvent,
    MusicTrackNewAUPresetEvent,
    NewMusicEventIterator,
    DisposeMusicEventIterator,
    MusicEventIteratorHasCurrentEvent,
    MusicEventIteratorHasNextEvent,
    MusicEventIteratorNextEvent,
    MusicEventIteratorGetEventInfo,
    MusicEventIteratorDeleteEvent,
    NewMusicPlayer,
    MusicPlayerSetSequence,
    MusicPlayerPreroll,
    MusicPlayerStart,
    count
};

// A status other than noErr makes a faulty operation return it before it does anything. Two answers are
// special and let an operation "succeed" without its result, so that what stands behind a missing handle or
// payload can be tested: with noErr as the status the operation returns noErr and leaves its out parameters
// alone.
struct Fault {
    OSStatus status = noErr;
    int after = 0; // how many calls still work
    int times = 1; // how many calls then fail; -1 for all
};

#ifdef VOLVELLE_FAULT_POINTS

// [any]
void setFault(MusicSequenceOperation operation, Fault fault);
void clearFaults();

// True, with the status to return, where the call is to fail.
bool takesFault(MusicSequenceOperation operation, OSStatus& status);

#else

constexpr bool takesFault(MusicSequenceOperation, OSStatus&)
{
    return false;
}

#endif

} // namespace volvelle

// The first line of every operation of the service.
#define VOLVELLE_FAULT_POINT(operation)                                                                      \
    if (OSStatus fault = noErr; takesFault(MusicSequenceOperation::operation, fault)) {                      \
        return fault;                                                                                        \
    }
