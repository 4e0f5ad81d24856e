#include "cli/LibraryHearCommand.h"

#include "base/Checked.h"
#include "base/Paths.h"
#include "base/RandomSource.h"
#include "base/Text.h"
#include "cli/ArrangementReport.h"
#include "cli/IdeaFile.h"
#include "cli/MissingPhrases.h"
#include "cli/SiblingProgram.h"
#include "inspection/ArrangementSummary.h"
#include "phrases/ChordFollowing.h"
#include "phrases/MIDIClipGenerator.h"
#include "phrases/PhraseLibrary.h"
#include "scores/ScoreFile.h"
#include "scores/ScoreWriter.h"
#include "sequence/SequenceFileBytes.h"
#include "services/files/FileFailure.h"
#include "services/files/HeldSignals.h"
#include "services/files/PrivateFolder.h"
#include "services/files/SafeFile.h"

#include <cerrno>
#include <cstdint>
#include <memory>
#include <set>
#include <vector>

namespace volvelle {

namespace {

namespace fs = std::filesystem;
using Bytes = std::vector<std::uint8_t>;

constexpr int arrangements = 3;

// Puts the phrase in the place of the one that was drawn for its track.
void putPhrase(MIDIClipGenerator& generator, const fs::path& phrase, ScoreKind kind)
{
    MIDIPhraseMixer& mixer = required(generator.phraseMixer);
    MIDIChordPhrase& chords = required(mixer.chordTrack);
    if (kind == ScoreKind::chordPattern) {
        chords.loadPhrase(phrase, randomInteger(-farthestMove, farthestMove));
    } else {
        required(arrangementTrackOf(scoreChannel(kind))).phraseIn(mixer).loadPhrase2(phrase, 0);
    }
    for (const ArrangementTrack& track : arrangementTracks) {
        if (track.followsChords) {
            track.phraseIn(mixer).transposeTrackNotes(chords);
        }
    }
}

Result<> writePhrase(const Score& score, const fs::path& file)
{
    const auto bytes = scoreToMIDI(score);
    if (!bytes) {
        return failure(bytes.error());
    }
    const int failed = putFile(file, *bytes, true);
    return failed == 0 ? Result<>() : failure(writeFailure(file, failed));
}

// Writes an arrangement that holds the phrase.
Result<> makeArrangement(const fs::path& phrase, ScoreKind kind, IdeaFile& file, CommandOutput& output)
{
    MIDIClipGenerator generator;
    generator.makeArrangement(false);
    putPhrase(generator, phrase, kind);
    Bytes bytes;
    const auto sequence = required(generator.phraseMixer).getSequence();
    if (sequenceFileBytes(required(sequence).getMusicSequence(), bytes) != noErr || bytes.empty()) {
        return failure("The arrangement could not be turned into a MIDI file.");
    }
    const Result<> written = file.write(bytes);
    const ArrangementSummary summary = summaryOf(generator);
    std::set<fs::path> unread;
    tellUnread(summary, unread, output);
    if (written) {
        output.remark(concat("'", fs::path(file.name()).filename().string(), "': ", shortReport(summary)));
    }
    return written;
}

int play(const fs::path& file, const LibraryHearOptions& options, CommandOutput& output)
{
    std::vector<std::string> arguments{"play"};
    if (options.port) {
        arguments.push_back("--port=" + *options.port);
    }
    if (options.bank) {
        arguments.push_back("--bank=" + options.bank->string());
    }
    if (const auto resources = resourcesFolder()) {
        arguments.push_back("--resources=" + resources->string());
    }
    if (output.isQuiet()) {
        arguments.emplace_back("--quiet");
    }
    arguments.insert(arguments.end(), {"--", file.string()});
    return runSibling(soundProgram, arguments, output);
}

int hear(const Score& score, const fs::path& folder, const LibraryHearOptions& options, CommandOutput& output)
{
    const HeldSignals signals;
    const PrivateFolder place;
    const fs::path phrase = place.path() / "phrase.mid";
    Result<> done = writePhrase(score, phrase);
    IdeaFile file = IdeaFile::freeNumbers((folder.empty() ? place.path() : folder) /
                                          concat(options.score.stem().string(), ".mid"));
    for (int made = 0; done && made < arrangements; ++made) {
        done = makeArrangement(phrase, score.kind, file, output);
        if (const int status = done ? play(file.name(), options, output) : int{exitDone};
            status != exitDone) {
            return status;
        }
    }
    return done ? int{exitDone} : output.failure(done.error());
}

} // namespace

int runLibraryHear(const LibraryHearOptions& options, CommandOutput& output)
{
    std::error_code unknown;
    const fs::path own = fs::absolute(options.score, unknown).lexically_normal();
    const auto kind = scoreKindOf(own.parent_path().filename().string());
    if (!kind) {
        return output.failure(
            concat(options.score.string(), ": a score lies in one of the folders ", scoreFolders()));
    }
    const auto score = readScore(options.score, *kind);
    if (!score) {
        return output.failure(concat(options.score.string(), ": ", score.error()));
    }
    if (const std::string line = missingPhrases(); !line.empty()) {
        return output.failure(line);
    }
    if (const Result<> library = checkPhraseLibrary(); !library) {
        return output.failure(library.error());
    }
    if (options.out && !fs::is_directory(*options.out, unknown)) {
        return output.failure(concat("There is no folder '", options.out->string(), "'."));
    }
    return hear(*score, options.out.value_or(""), options, output);
}

} // namespace volvelle
