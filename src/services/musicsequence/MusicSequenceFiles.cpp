#include "services/files/SafeFile.h"
#include "services/musicsequence/FaultPoint.h"
#include "services/musicsequence/MusicSequenceObject.h"
#include "services/musicsequence/smf/SMFLoader.h"
#include "services/musicsequence/smf/SMFWriter.h"

namespace volvelle {

namespace {

OSStatus readiness(const MusicSequence& sequence, MusicSequenceFileTypeID type)
{
    if (sequence == nullptr) {
        return kAudioToolboxErr_NoSequence;
    }
    return type == kMusicSequenceFile_MIDIType ? noErr : kAudioToolboxErr_InvalidSequenceType;
}

template <class Load>
OSStatus newLoaded(MusicSequence& sequence, const Load& load)
{
    MusicSequence made;
    OSStatus status = NewMusicSequence(made);
    status = status == noErr ? load(made) : status;
    sequence = status == noErr ? made : nullptr;
    return status;
}

} // namespace

OSStatus MusicSequenceFileCreateData(const MusicSequence& sequence, MusicSequenceFileTypeID type,
                                     MusicSequenceFileFlags /*flags*/, std::int16_t resolution,
                                     std::vector<std::uint8_t>& data)
{
    VOLVELLE_FAULT_POINT(MusicSequenceFileCreateData);
    if (const OSStatus status = readiness(sequence, type); status != noErr) {
        return status;
    }
    return writeSMF(sequence, SMFFormat::MultiTrack, resolution, data);
}

OSStatus MusicSequenceFileCreate(const MusicSequence& sequence, const std::filesystem::path& url,
                                 MusicSequenceFileTypeID type, MusicSequenceFileFlags flags,
                                 std::int16_t resolution)
{
    VOLVELLE_FAULT_POINT(MusicSequenceFileCreate);
    if (const OSStatus status = readiness(sequence, type); status != noErr) {
        return status;
    }
    std::vector<std::uint8_t> bytes;
    const OSStatus status = writeSMF(sequence, SMFFormat::MultiTrack, resolution, bytes);
    if (status != noErr) {
        return status;
    }
    return replaceFile(url, bytes, (flags & kMusicSequenceFileFlags_EraseFile) != 0);
}

OSStatus MusicSequenceFileLoad(const MusicSequence& sequence, const std::filesystem::path& url,
                               MusicSequenceFileTypeID type, MusicSequenceLoadFlags flags)
{
    VOLVELLE_FAULT_POINT(MusicSequenceFileLoad);
    if (const OSStatus status = readiness(sequence, type); status != noErr) {
        return status;
    }
    std::vector<std::uint8_t> bytes;
    if (const OSStatus status = readFile(url, bytes); status != noErr) {
        return status;
    }
    return loadSMF(*sequence, bytes, flags);
}

OSStatus MusicSequenceFileLoadData(const MusicSequence& sequence, const std::vector<std::uint8_t>& data,
                                   MusicSequenceFileTypeID type, MusicSequenceLoadFlags flags)
{
    VOLVELLE_FAULT_POINT(MusicSequenceFileLoadData);
    if (const OSStatus status = readiness(sequence, type); status != noErr) {
        return status;
    }
    return loadSMF(*sequence, data, flags);
}

OSStatus NewMusicSequenceFromFile(const std::filesystem::path& url, MusicSequenceLoadFlags flags,
                                  MusicSequence& sequence)
{
    VOLVELLE_FAULT_POINT(NewMusicSequenceFromFile);
    return newLoaded(sequence, [&](const MusicSequence& made) {
        return MusicSequenceFileLoad(made, url, kMusicSequenceFile_MIDIType, flags);
    });
}

OSStatus NewMusicSequenceFromData(const std::vector<std::uint8_t>& data, MusicSequenceLoadFlags flags,
                                  MusicSequence& sequence)
{
    VOLVELLE_FAULT_POINT(NewMusicSequenceFromData);
    return newLoaded(sequence, [&](const MusicSequence& made) {
        return MusicSequenceFileLoadData(made, data, kMusicSequenceFile_MIDIType, flags);
    });
}

} // namespace volvelle
