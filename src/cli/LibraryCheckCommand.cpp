#include "cli/LibraryCheckCommand.h"

#include "base/Checked.h"
#include "base/Paths.h"
#include "base/Text.h"
#include "cli/StopContext.h"
#include "inspection/EarMeasure.h"
#include "phrases/MIDIPhrases.h"
#include "scores/LibraryLint.h"
#include "scores/LibraryRules.h"
#include "scores/PhraseFile.h"
#include "scores/PhraseFolders.h"
#include "scores/ScoreFile.h"
#include "scores/ScoreKind.h"

#include <algorithm>
#include <charconv>
#include <limits>
#include <optional>
#include <span>
#include <utility>

namespace volvelle {

namespace {

namespace fs = std::filesystem;

using NamedChord = std::pair<double, std::string>; // position in beats, short name

constexpr int noNumber = std::numeric_limits<int>::max();

// "12.mid" is 12; what is no number stands after all numbers.
int numberOf(const fs::path& file)
{
    int number = noNumber;
    const std::string stem = file.stem().string();
    const char* const end = stem.data() + stem.size();
    const auto read = std::from_chars(stem.data(), end, number);
    return read.ec == std::errc() && read.ptr == end ? number : noNumber;
}

bool isBefore(const fs::path& one, const fs::path& other)
{
    return std::pair(numberOf(one), one) < std::pair(numberOf(other), other);
}

// Behind a gap the numbers go on from there.
void checkNumbers(const std::vector<fs::path>& files, std::vector<std::string>& problems)
{
    int expected = 1;
    for (const fs::path& file : files) {
        const std::string name = phraseName(expected);
        const int number = numberOf(file);
        const bool isGap = number > expected && number < noNumber && file.filename() == phraseName(number);
        if (file.filename() != name) {
            problems.push_back(concat(file.string(), ": '", name, "' was expected here"));
        }
        expected = isGap ? number + 1 : file.filename() == name ? expected + 1 : expected;
    }
}

std::vector<fs::path> phrasesIn(const fs::path& folder, std::vector<std::string>& problems)
{
    std::vector<fs::path> files;
    std::error_code error;
    for (fs::directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error)) {
        if (!entry->path().filename().string().starts_with('.')) {
            files.push_back(entry->path());
        }
    }
    if (error) {
        problems.push_back(concat(folder.string(), ": the folder cannot be listed"));
    } else if (files.empty()) {
        problems.push_back(concat(folder.string(), ": there are no phrases"));
    }
    std::ranges::sort(files, isBefore);
    checkNumbers(files, problems);
    return files;
}

std::vector<NamedChord> chordsNamed(const MIDIPhrase& phrase)
{
    constexpr std::string_view mark = "chord: ";
    std::vector<NamedChord> chords;
    for (const auto& track : required(phrase.sequence->sequenceNode).tracks) {
        for (const auto& event : required(track).getElementsOfClass<MetaTextEvent>()) {
            const std::string line(event->data.begin(), event->data.end());
            if (line.starts_with(mark)) {
                chords.emplace_back(event->position, line.substr(mark.size()));
            }
        }
    }
    return chords;
}

std::string chordText(const std::vector<NamedChord>& chords)
{
    std::string line;
    for (const auto& [position, name] : chords) {
        line += concat(line.empty() ? "" : ", ", name, " at ", position);
    }
    return line.empty() ? "none" : line;
}

void checkChords(const MIDIChordPhrase& phrase, const std::string& place, std::vector<std::string>& problems)
{
    std::vector<NamedChord> found;
    for (const auto& chord : phrase.chords) {
        found.emplace_back(chord->position, required(chord->nrule).shortName);
        if (chord->position >= MIDIPhrase::MAXBEATLENGTH) {
            problems.push_back(
                concat(place, ": a chord begins at ", chord->position, ", the end of the phrase"));
        }
    }
    if (const auto named = chordsNamed(phrase); !named.empty() && named != found) {
        problems.push_back(
            concat(place, ": the score names ", chordText(named), "; found were ", chordText(found)));
    }
}

std::shared_ptr<MIDIPhrase> loaded(const fs::path& file, ScoreKind kind)
{
    const StopContext context(file);
    return loadPhrase(file, kind);
}

bool hasRoomFor(const MIDIPhrase& phrase, const std::string& place, std::vector<std::string>& problems)
{
    constexpr std::size_t most = 2000;
    const std::size_t count = phrase.loadedEvents.size();
    if (count > most) {
        problems.push_back(concat(place, ": the phrase has ", count, " events, at most ", most));
    }
    return count <= most;
}

void checkFile(const MIDIPhrase& phrase, const std::string& place, std::vector<std::string>& problems)
{
    std::vector<std::string> mended;
    if (MusicSequenceGetLoadWarnings(phrase.sequence->getMusicSequence(), mended) == noErr &&
        !mended.empty()) {
        problems.push_back(concat(place, ": ", mended.front()));
    }
    for (const std::string& warning : phrase.loadWarnings) {
        problems.push_back(concat(place, ": ", warning));
    }
}

// The phrase as a score; none where nothing of it sounds, or far too much.
std::optional<Score> checkPhrase(const fs::path& file, ScoreKind kind, std::vector<std::string>& problems)
{
    const std::string place = file.string();
    std::error_code error;
    if (!fs::is_regular_file(file, error)) {
        problems.push_back(
            concat(place, fs::exists(file, error) ? ": it is no file" : ": there is no such file"));
        return std::nullopt;
    }
    const auto phrase = loaded(file, kind);
    if (!phrase->sequence) {
        problems.push_back(concat(place, ": the file vanished"));
        return std::nullopt;
    }
    if (const OSStatus status = phrase->sequence->loadStatus; status != noErr) {
        problems.push_back(concat(place, status == fileFormatErr ? ": the file is no MIDI file"
                                                                 : ": the file cannot be read"));
        return std::nullopt;
    }
    if (const auto chords = std::dynamic_pointer_cast<MIDIChordPhrase>(phrase)) {
        checkChords(*chords, place, problems);
    }
    checkFile(*phrase, place, problems);
    if (!hasRoomFor(*phrase, place, problems)) {
        return std::nullopt;
    }
    if (phrase->loadedEvents.empty()) {
        problems.push_back(concat(place, ": the phrase is silent"));
        return std::nullopt;
    }
    return scoreOf(*phrase, kind);
}

void holdRules(const fs::path& root, LibraryRules& rules)
{
    rules.begin();
    for (const ScoreKind kind : allScoreKinds) {
        const std::span<const PlacedScore> scores = rules.read[kind];
        for (std::size_t i = 0; i < scores.size(); ++i) {
            rules.hold(scores[i], scores.first(i));
        }
        rules.holdFolder(root / phraseFolder(kind), scores, kind);
    }
}

void checkEar(const fs::path& root, CommandOutput& output, std::vector<std::string>& problems)
{
    constexpr int arrangements = 1000;
    setResourcesFolder(root);
    EarMeasure measure;
    for (int i = 0; i < arrangements; ++i) {
        MIDIClipGenerator generator;
        generator.makeArrangement(false);
        measure.add(generator);
    }
    for (const auto& row : measure.table()) {
        output.remark(concat(row.name, ": ", roundedText(row.value), " (", row.least, " to ", row.most, ")"));
        if (row.value < row.least || row.value > row.most) {
            problems.push_back(
                concat(row.name, ": ", roundedText(row.value), " is outside ", row.least, " to ", row.most));
        }
    }
}

void tell(std::span<const std::string> problems, CommandOutput& output)
{
    for (const std::string& problem : problems) {
        output.result(problem);
    }
}

// Sums up what was told.
int summary(const std::vector<std::string>& problems, std::size_t count, const fs::path& root,
            CommandOutput& output)
{
    if (!problems.empty()) {
        return output.failure(concat(counted(problems.size(), "problem", "problems"), " in ",
                                     counted(count, "phrase", "phrases"), " of '", root.string(), "'."));
    }
    output.remark(counted(count, "phrase is in order.", "phrases are in order."));
    return exitDone;
}

int checkScores(const fs::path& root, bool isScore, bool ear, CommandOutput& output)
{
    if (ear) {
        return output.failure("--ear measures compiled phrases: name the folder of Phrases and Phrases2.");
    }
    const auto resources = resourcesFolder();
    const PhraseCompany elsewhere = resources ? companyIn(*resources) : PhraseCompany();
    const LintReport report = isScore ? lintScoreFile(root, elsewhere) : lintLibrary(root, elsewhere);
    tell(report.faults, output);
    return summary(report.faults, static_cast<std::size_t>(report.scores), root, output);
}

std::size_t readPhrases(const std::vector<fs::path>& files, ScoreKind kind, LibraryRules& rules,
                        std::vector<std::string>& problems)
{
    for (const fs::path& file : files) {
        if (const auto score = checkPhrase(file, kind, problems)) {
            rules.read[kind].push_back({file, *score});
        }
    }
    return files.size();
}

int checkPhrases(const fs::path& root, bool ear, CommandOutput& output)
{
    std::vector<std::string> problems;
    std::size_t count = 0;
    LibraryRules rules;
    for (const ScoreKind kind : allScoreKinds) {
        count += readPhrases(phrasesIn(root / phraseFolder(kind), problems), kind, rules, problems);
    }
    const bool canBeHeard = problems.empty();
    holdRules(root, rules);
    problems.insert(problems.end(), rules.faults.begin(), rules.faults.end());
    tell(problems, output);
    if (ear && canBeHeard) {
        const std::size_t before = problems.size();
        checkEar(root, output, problems);
        tell(std::span(problems).subspan(before), output);
    }
    return summary(problems, count, root, output);
}

// The line for what is neither phrases nor scores, else empty.
std::string misnomer(const fs::path& root, bool isScore)
{
    std::error_code unknown;
    if (isScore && fs::exists(root, unknown)) {
        return "";
    }
    if (isScore || !fs::is_directory(root, unknown)) {
        return concat("There is no folder or score '", root.string(), "'.");
    }
    const bool isLibrary =
        holdsScoreFolders(root) || std::ranges::any_of(allScoreKinds, [&root](ScoreKind kind) {
            std::error_code missing;
            return fs::is_directory(root / phraseFolder(kind), missing);
        });
    return isLibrary
               ? ""
               : concat("'", root.string(),
                        "' holds neither Phrases and Phrases2 nor a folder of scores: ", scoreFolders(), ".");
}

} // namespace

int runLibraryCheck(const LibraryCheckOptions& options, CommandOutput& output)
{
    const auto root = options.folder ? options.folder : resourcesFolder();
    if (!root) {
        return output.failure("There is no phrase library beside this program: name its folder.");
    }
    std::error_code unknown;
    const bool isScore = isScoreFile(*root) && !fs::is_directory(*root, unknown);
    if (const std::string line = misnomer(*root, isScore); !line.empty()) {
        return output.failure(line);
    }
    if (isScore || holdsScoreFolders(*root)) {
        return checkScores(*root, isScore, options.ear, output);
    }
    return checkPhrases(*root, options.ear, output);
}

} // namespace volvelle
