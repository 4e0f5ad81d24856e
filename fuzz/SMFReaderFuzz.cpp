// Loads the input as a Standard MIDI File under both load flags, and writes it back.
#include "services/musicsequence/MusicSequence.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <vector>

namespace {

using namespace volvelle;

// The file that a loaded sequence is written as; empty where nothing could be loaded.
std::vector<std::uint8_t> writtenBack(const std::vector<std::uint8_t>& bytes, MusicSequenceLoadFlags flags)
{
    MusicSequence sequence;
    std::vector<std::uint8_t> written;
    NewMusicSequence(sequence);
    if (MusicSequenceFileLoadData(sequence, bytes, kMusicSequenceFile_MIDIType, flags) == noErr) {
        MusicSequenceFileCreateData(sequence, kMusicSequenceFile_MIDIType, 0, 480, written);
    }
    DisposeMusicSequence(sequence);
    return written;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::vector<std::uint8_t> bytes(data, data + size);
    for (const auto flags : {kMusicSequenceLoadSMF_PreserveTracks, kMusicSequenceLoadSMF_ChannelsToTracks}) {
        const std::vector<std::uint8_t> once = writtenBack(bytes, flags);
        // What was written must be readable.
        if (!once.empty() && writtenBack(once, flags).empty()) {
            std::abort();
        }
    }
    return 0;
}
