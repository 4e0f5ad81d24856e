#include "services/musicsequence/smf/SMFReader.h"

#include "base/Text.h"
#include "services/musicsequence/smf/SMFChunks.h"
#include "services/musicsequence/smf/SMFTimeBase.h"
#include "services/musicsequence/smf/SMFTrackReader.h"

#include <algorithm>
#include <utility>

namespace volvelle {

namespace {

constexpr std::string_view trackName = "MTrk";
constexpr std::size_t mostJunk = 65536;

class FileReader {
public:
    explicit FileReader(std::span<const std::uint8_t> bytes) : chunks(bytes)
    {
        file.bytes = bytes;
        file.events = SMFEvents(bytes.size() / 2);
    }

    OSStatus read(SMFFile& result);

private:
    std::size_t readHeader();
    std::size_t headerEnd(std::size_t place);
    void readHeaderFields(std::size_t place);
    void readChunks(std::size_t place);
    std::size_t readTrack(std::size_t place);
    std::size_t placeBehind(const SMFTrackReader& reader, std::size_t claimedEnd,
                            SMFTrackReport& report) const;
    std::size_t nextTrack(std::size_t from) const;
    bool goesOnBehind(std::size_t limit) const;
    void skipJunk(std::size_t from, std::size_t to);
    void settleFormat();

    bool hasEvents() const { return file.events.size() > 0; }

    SMFFile file;
    SMFChunks chunks;
    SMFWarnings warnings;
    SMFOpenNotes openNotes;
    SMFBudget budget;
    bool hasHeader = false;
    bool isRiff = false;
    int promisedTracks = 0;
    int rawDivision = 480;
};

OSStatus FileReader::read(SMFFile& result)
{
    isRiff = chunks.has(0, "RIFF");
    readChunks(readHeader());
    if (!hasHeader && !hasEvents()) {
        return fileFormatErr;
    }
    settleFormat();
    applyTimeBase(rawDivision, file, warnings);
    limitTime(file, warnings);
    file.warnings = warnings.take();
    result = std::move(file);
    return noErr;
}

// Where the chunks after the header begin.
std::size_t FileReader::readHeader()
{
    const std::size_t limit = isRiff ? chunks.size() : mostJunk + 4;
    const std::size_t place = chunks.find(0, limit, "MThd");
    if (place == SMFChunks::none) {
        warnings.add("The file header is missing; 480 ticks a beat were assumed.");
        return std::min(chunks.find(0, chunks.size(), trackName), chunks.size());
    }
    hasHeader = true;
    if (!isRiff) {
        skipJunk(0, place);
    }
    readHeaderFields(place + SMFChunks::headSize);
    return headerEnd(place);
}

void FileReader::readHeaderFields(std::size_t place)
{
    if (place + 6 > chunks.size()) {
        warnings.add("The file header is not whole; 480 ticks a beat were assumed.");
        return;
    }
    file.format = chunks.pairAt(place);
    promisedTracks = chunks.pairAt(place + 2);
    rawDivision = chunks.pairAt(place + 4);
}

std::size_t FileReader::headerEnd(std::size_t place)
{
    if (place + SMFChunks::headSize > chunks.size()) {
        return chunks.size();
    }
    const std::size_t length = chunks.claimedLength(place);
    const std::size_t end = place + SMFChunks::headSize + length;
    if (length >= 6 && (chunks.mayBeginAt(end) || end == chunks.size())) {
        return end;
    }
    const std::size_t first = nextTrack(place + SMFChunks::headSize);
    if (first < chunks.size()) {
        warnings.add("The file header has another length than it says.");
    }
    return first;
}

void FileReader::readChunks(std::size_t place)
{
    while (place < chunks.size() && !budget.isOver()) {
        if (chunks.has(place, trackName) && place + SMFChunks::headSize <= chunks.size()) {
            place = readTrack(place);
        } else if (chunks.mayBeginAt(place) && place + SMFChunks::headSize <= chunks.size()) {
            place += SMFChunks::headSize + chunks.claimedLength(place);
        } else {
            const std::size_t next = nextTrack(place + 1);
            skipJunk(place, next);
            place = next;
        }
    }
}

// Where the next chunk is to be looked for.
std::size_t FileReader::readTrack(std::size_t place)
{
    const std::size_t start = place + SMFChunks::headSize;
    const std::size_t room = chunks.size() - start;
    const std::size_t length = chunks.claimedLength(place);
    const bool fits = length <= room;
    std::size_t limit = fits ? start + length : nextTrack(start);
    budget.beginTrack(limit - place);
    SMFTrackReader reader(file.bytes, start, file.events, openNotes, budget);
    bool isEnded = reader.read(limit);
    if (!isEnded && goesOnBehind(limit)) {
        budget.grant(nextTrack(limit) - limit);
        limit = nextTrack(limit);
        isEnded = reader.read(limit);
        reader.report.hasWrongLength = isEnded;
    }
    reader.report.endsEarly = !isEnded && (!fits || reader.place() < limit);
    reader.report.hasNoEnd = !isEnded && !reader.report.endsEarly;
    std::size_t next = limit;
    if (isEnded) {
        next = placeBehind(reader, limit, reader.report);
        reader.report.hasWrongLength |= !fits;
    }
    budget.takeBack(limit - std::min(limit, next));
    file.tracks.push_back(reader.finish());
    reader.report.tell(file.tracks.size(), warnings);
    return next;
}

// A track ended before its claimed end: what stands between is another track, or left out.
std::size_t FileReader::placeBehind(const SMFTrackReader& reader, std::size_t claimedEnd,
                                    SMFTrackReport& report) const
{
    const std::size_t place = reader.place();
    if (place == claimedEnd || report.hasWrongLength) {
        return place;
    }
    if (chunks.has(place, trackName)) {
        report.hasWrongLength = true;
        return place;
    }
    report.hasEventsBehindEnd = true;
    return claimedEnd == chunks.size() || chunks.mayBeginAt(claimedEnd) ? claimedEnd : nextTrack(place);
}

std::size_t FileReader::nextTrack(std::size_t from) const
{
    return std::min(chunks.find(from, chunks.size(), trackName), chunks.size());
}

// Whether a track has its end mark past the end that it claims.
bool FileReader::goesOnBehind(std::size_t limit) const
{
    constexpr std::string_view endMark("\xFF\x2F\x00", 3);
    return !chunks.mayBeginAt(limit) && chunks.find(limit, nextTrack(limit), endMark) != SMFChunks::none;
}

void FileReader::skipJunk(std::size_t from, std::size_t to)
{
    const bool isSilent = isRiff && std::cmp_greater_equal(file.tracks.size(), promisedTracks);
    if (from < to && !isSilent) {
        warnings.add(counted(to - from, "byte that belongs to no track was left out.",
                             "bytes that belong to no track were left out."));
    }
}

void FileReader::settleFormat()
{
    const std::size_t count = file.tracks.size();
    if (hasHeader && std::cmp_not_equal(count, promisedTracks)) {
        warnings.add(concat("The file promises ", counted(promisedTracks, "track", "tracks"), " and holds ",
                            count, "."));
    }
    if (file.format == 0 && count > 1) {
        warnings.add("The file says that it has a single track; all were read.");
        file.format = 1;
    } else if (file.format > 2) {
        warnings.add(concat("The file's format ", file.format, " is unknown; it was read as format 1."));
        file.format = 1;
    } else if (file.format == 2 && count > 1) {
        warnings.add("The file holds separate sequences; they were laid one after another.");
        layTracksInARow(file);
    }
}

} // namespace

OSStatus readSMF(std::span<const std::uint8_t> bytes, SMFFile& file)
{
    return FileReader(bytes).read(file);
}

} // namespace volvelle
