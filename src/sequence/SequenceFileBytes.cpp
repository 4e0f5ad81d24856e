#include "sequence/SequenceFileBytes.h"

namespace volvelle {

OSStatus sequenceFileBytes(const MusicSequence& sequence, std::vector<std::uint8_t>& bytes)
{
    constexpr std::int16_t resolution = 480; // ticks to the beat
    return MusicSequenceFileCreateData(sequence, kMusicSequenceFile_MIDIType,
                                       kMusicSequenceFileFlags_EraseFile, resolution, bytes);
}

} // namespace volvelle
