#include "scores/FolderLint.h"

#include "base/Text.h"
#include "scores/PhraseBounds.h"
#include "scores/ScoreOnsets.h"

#include <algorithm>

namespace volvelle {

namespace {

using Faults = std::vector<std::string>;

int fewOnsets(ScoreKind kind)
{
    return kind == ScoreKind::drums ? 5 : 2;
}

bool hasNearlyEmptyBar(const Score& score)
{
    for (int bar = 1; bar <= Score::bars; ++bar) {
        if (std::ssize(scores::onsets(score, bar)) <= fewOnsets(score.kind)) {
            return true;
        }
    }
    return false;
}

bool soundsOnEveryFirstBeat(const Score& score)
{
    for (int bar = 0; bar < Score::bars; ++bar) {
        const double beat = bar * Score::beatsInBar;
        if (std::ranges::none_of(score.notes, [beat](const ScoreNote& note) {
                return note.position <= beat && note.position + note.duration > beat;
            })) {
            return false;
        }
    }
    return true;
}

// One of so many at most, and one in a folder of few.
bool areTooMany(std::ptrdiff_t count, std::size_t phrases, int ofMany)
{
    return count > std::max<std::ptrdiff_t>(1, static_cast<std::ptrdiff_t>(phrases) / ofMany);
}

void lintEmptyBars(const std::vector<Score>& phrases, ScoreKind kind, Faults& faults)
{
    const auto nearlyEmpty = std::ranges::count_if(phrases, hasNearlyEmptyBar);
    if (nearlyEmpty < std::ssize(phrases) / 3) {
        faults.push_back(concat(nearlyEmpty, " of ", phrases.size(),
                                " phrases leave one bar nearly empty, with ", fewOnsets(kind),
                                " places that are struck at most: every third does"));
    }
}

void lintFirstBeats(const std::vector<Score>& basses, Faults& faults)
{
    const auto grounded = std::ranges::count_if(basses, soundsOnEveryFirstBeat);
    if (grounded < std::ssize(basses) * 2 / 3) {
        faults.push_back(concat(grounded, " of ", basses.size(),
                                " basses sound on the first beat of every bar: two of three do"));
    }
}

void lintFullDrums(const std::vector<Score>& drums, Faults& faults)
{
    const auto full =
        std::ranges::count_if(drums, [](const Score& score) { return std::ssize(score.notes) > fullDrums; });
    if (areTooMany(full, drums.size(), ofFullDrums)) {
        faults.push_back(concat(full, " of ", drums.size(), " drum phrases have more than ", fullDrums,
                                " notes: one of ", ofFullDrums, " at most"));
    }
}

void lintColours(const std::vector<Score>& phrases, Faults& faults)
{
    const auto colours = std::ranges::count_if(phrases, &Score::colour);
    if (areTooMany(colours, phrases.size(), ofColours)) {
        faults.push_back(
            concat(colours, " of ", phrases.size(), " phrases are colours: one of ", ofColours, " at most"));
    }
}

} // namespace

std::vector<std::string> lintFolder(const std::vector<Score>& phrases, ScoreKind kind)
{
    Faults faults;
    if (kind != ScoreKind::chordPattern) {
        lintEmptyBars(phrases, kind, faults);
    }
    if (kind == ScoreKind::bass) {
        lintFirstBeats(phrases, faults);
    } else if (kind == ScoreKind::drums) {
        lintFullDrums(phrases, faults);
    }
    lintColours(phrases, faults);
    return faults;
}

} // namespace volvelle
