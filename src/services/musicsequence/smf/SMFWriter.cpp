#include "services/musicsequence/smf/SMFWriter.h"

#include "services/musicsequence/MusicSequenceObject.h"
#include "services/musicsequence/MusicTrackObject.h"
#include "services/musicsequence/smf/SMFByteWriter.h"
#include "services/musicsequence/smf/SMFTrackWriter.h"

#include <algorithm>
#include <exception>
#include <utility>

namespace volvelle {

namespace {

constexpr std::size_t mostTracks = 65535;

void writeHeader(SMFByteWriter& writer, SMFFormat format, std::size_t trackCount, std::int16_t resolution)
{
    writer.putName("MThd");
    writer.put32(6);
    writer.put16(static_cast<std::uint32_t>(format));
    writer.put16(static_cast<std::uint32_t>(trackCount));
    writer.put16(static_cast<std::uint32_t>(resolution));
}

bool writeChunk(const std::vector<MusicTrack>& tracks, int resolution, SMFByteWriter& file)
{
    SMFTrackWriter writer(file, resolution);
    return std::ranges::all_of(tracks, [&writer](const MusicTrack& track) { return writer.add(*track); }) &&
           writer.write();
}

} // namespace

OSStatus writeSMF(const MusicSequence& sequence, SMFFormat format, std::int16_t resolution,
                  std::vector<std::uint8_t>& data)
try {
    if (sequence == nullptr) {
        return kAudioToolboxErr_NoSequence;
    }
    std::vector<MusicTrack> tracks{sequence->tempoTrack};
    tracks.insert(tracks.end(), sequence->tracks.begin(), sequence->tracks.end());
    const bool isSingle = format == SMFFormat::SingleTrack;
    if (!isSingle && tracks.size() > mostTracks) {
        return fileIOErr;
    }
    const auto ticks = static_cast<std::int16_t>(resolution > 0 ? resolution : 480);
    std::vector<std::uint8_t> bytes;
    SMFByteWriter writer(bytes);
    writeHeader(writer, format, isSingle ? 1 : tracks.size(), ticks);
    const auto write = [&](const MusicTrack& track) { return writeChunk({track}, ticks, writer); };
    if (!(isSingle ? writeChunk(tracks, ticks, writer) : std::ranges::all_of(tracks, write))) {
        return fileIOErr;
    }
    data = std::move(bytes);
    return noErr;
} catch (const std::exception&) {
    return fileIOErr;
}

} // namespace volvelle
