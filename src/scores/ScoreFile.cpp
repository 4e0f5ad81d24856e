#include "scores/ScoreFile.h"

#include "scores/PhraseFile.h"
#include "scores/ScoreParser.h"
#include "services/files/SafeFile.h"

#include <algorithm>
#include <cctype>
#include <system_error>
#include <tuple>

namespace volvelle {

namespace {

namespace fs = std::filesystem;

constexpr std::string_view digits = "0123456789";

// The digits at the start of a name without leading zeros: of two, the longer one is the greater number.
std::string leadingDigits(const std::string& name)
{
    const auto number = name.substr(0, name.find_first_not_of(digits));
    return number.substr(std::min(number.find_first_not_of('0'), number.size()));
}

bool standsBefore(const fs::path& one, const fs::path& other)
{
    const auto key = [](const fs::path& path) {
        const std::string name = path.filename().string();
        const std::string number = leadingDigits(name);
        const bool isNumbered = !name.empty() && digits.find(name.front()) != std::string_view::npos;
        return std::tuple(!isNumbered, number.size(), number, name);
    };
    return key(one) < key(other);
}

constexpr std::string_view scoreEnding = ".score";

} // namespace

bool isMIDIFile(const fs::path& file)
{
    std::string ending = file.extension().string();
    std::ranges::transform(ending, ending.begin(),
                           [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return ending == ".mid" || ending == ".midi";
}

bool isScoreFile(const fs::path& file)
{
    return file.extension() == scoreEnding || isMIDIFile(file);
}

Result<std::vector<fs::path>> scoresIn(const fs::path& folder)
{
    std::vector<fs::path> paths;
    std::error_code status;
    for (fs::directory_iterator entry(folder, status), end; !status && entry != end;
         entry.increment(status)) {
        const std::string name = entry->path().filename().string();
        if (!name.starts_with(".") && isScoreFile(entry->path())) {
            paths.push_back(entry->path());
        }
    }
    if (status) {
        return failure("the folder cannot be read");
    }
    std::ranges::sort(paths, standsBefore);
    return paths;
}

std::optional<int> scoreNumber(const fs::path& file)
{
    constexpr std::size_t least = 3;
    constexpr std::size_t most = 6;
    const std::string name = file.stem().string();
    const auto count = std::min(name.find_first_not_of(digits), name.size());
    const bool isPadded = count == least || (count > least && name.front() != '0');
    if (!isPadded || count > most || name.size() < count + 2 || name[count] != '-' || !isScoreFile(file)) {
        return std::nullopt;
    }
    return std::stoi(name.substr(0, count));
}

bool holdsScoreFolders(const fs::path& library)
{
    return !library.empty() && std::ranges::any_of(allScoreKinds, [&library](ScoreKind kind) {
        std::error_code unknown;
        return fs::is_directory(library / scoreFolder(kind), unknown);
    });
}

Result<Score> readScore(const fs::path& file, ScoreKind kind)
{
    std::error_code unknown;
    const bool isRegular = fs::is_regular_file(file, unknown);
    if (isRegular && isMIDIFile(file)) {
        return readMIDIPhrase(file, kind);
    }
    std::vector<std::uint8_t> words;
    if (!isRegular || readFile(file, words) != noErr) {
        return failure("the score cannot be read");
    }
    return parseScore(std::string(words.begin(), words.end()), kind);
}

} // namespace volvelle
