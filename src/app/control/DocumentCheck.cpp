#include "app/control/DocumentCheck.h"

#include "app/control/LocalizedName.h"
#include "base/Text.h"
#include "services/files/SafeFile.h"
#include "services/musicsequence/MusicSequence.h"

#include <new>
#include <utility>

namespace volvelle {

namespace {

Result<> checkMusic(const std::string& name, const std::vector<std::uint8_t>& bytes)
{
    MusicSequence sequence;
    std::uint32_t tracks = 0;
    if (NewMusicSequenceFromData(bytes, kMusicSequenceLoadSMF_ChannelsToTracks, sequence) != noErr) {
        return failure(concat(name, " is not a MIDI file."));
    }
    if (MusicSequenceGetTrackCount(sequence, tracks) != noErr || tracks == 0) {
        return failure(concat(name, " holds no track."));
    }
    return {};
}

} // namespace

Result<> checkDocument(const std::filesystem::path& file, bool wasSeen)
{
    const std::string name = concat("'", shownName(file), "'");
    std::error_code error;
    const auto kind = std::filesystem::status(file, error);
    if (kind.type() == std::filesystem::file_type::not_found) {
        return failure(concat(name, wasSeen ? " is not there any more." : " does not exist."));
    }
    if (std::filesystem::exists(kind) && !std::filesystem::is_regular_file(kind)) {
        return failure(concat(name, " is not a file."));
    }
    std::vector<std::uint8_t> bytes;
    const OSStatus status = readFile(file, bytes);
    if (status != noErr) {
        return failure(concat(name, " could not be read."));
    }
    std::string tooLarge = concat(name, " is too large.");
    try {
        return checkMusic(name, bytes);
    } catch (const std::bad_alloc&) {
        return failure(std::move(tooLarge));
    }
}

} // namespace volvelle
