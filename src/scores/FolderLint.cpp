#include "scores/FolderLint.h"

#include "base/Text.h"
#include "hearing/Share.h"
#include "scores/PhraseBounds.h"
#include "scores/ScoreOnsets.h"

#include <algorithm>
#include <map>
#include <optional>
#include <ranges>
#include <set>
#include <utility>

namespace volvelle {

namespace {

using Faults = std::vector<std::string>;
using BarOnsets = std::map<double, std::set<int>>;

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

// The lowest key at a beat of a bar, without a value for none.
std::optional<int> keyAt(const BarOnsets& bar, double beat)
{
    const auto struck = bar.find(beat);
    return struck == bar.end() ? std::nullopt : std::optional(*struck->second.begin());
}

// Bass lines whose half bars stand a third apart find a root in any chord, and so all turn into one.
void lintThirds(const std::vector<Score>& basses, Faults& faults)
{
    int bars = 0;
    int thirds = 0;
    for (const Score& bass : basses) {
        for (int bar = 1; bar <= Score::bars; ++bar) {
            const BarOnsets places = scores::onsets(bass, bar);
            const auto first = keyAt(places, 0.0);
            const auto third = keyAt(places, 2.0);
            const int step = first && third ? (*third - *first + 120) % 12 : 0;
            thirds += step == 3 || step == 4 || step == 8 || step == 9 ? 1 : 0;
            ++bars;
        }
    }
    if (std::ssize(basses) >= fewBasses && thirds > mostThirds * bars) {
        faults.push_back(concat(thirds, " of ", bars,
                                " bars of basses go by a third or a sixth from beat 1 to beat 3: ",
                                percentText(mostThirds), " at most"));
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

// What stands most often, and how often.
template <class Value>
std::pair<Value, int> commonest(const std::map<Value, int>& counts)
{
    const auto most = std::ranges::max_element(counts, {}, &std::map<Value, int>::value_type::second);
    return most == counts.end() ? std::pair<Value, int>() : std::pair<Value, int>(*most);
}

// A style goes up to its first comma.
void lintStyles(const std::vector<Score>& phrases, Faults& faults)
{
    std::map<std::string, int> counts;
    for (const Score& phrase : phrases) {
        ++counts[phrase.style.substr(0, phrase.style.find(','))];
    }
    const auto [style, count] = commonest(counts);
    if (count > mostOfStyle * static_cast<double>(phrases.size())) {
        faults.push_back(concat(count, " of ", phrases.size(), " phrases have the style '", style,
                                "': ", percentText(mostOfStyle), " at most"));
    }
}

void lintRhythms(const std::vector<Score>& phrases, Faults& faults)
{
    std::map<std::set<double>, int> counts;
    int bars = 0;
    for (const Score& phrase : phrases) {
        for (int bar = 1; bar <= Score::bars; ++bar) {
            const BarOnsets onsets = scores::onsets(phrase, bar);
            const auto places = std::views::keys(onsets);
            counts[{places.begin(), places.end()}] += onsets.empty() ? 0 : 1;
            bars += onsets.empty() ? 0 : 1;
        }
    }
    if (const int count = commonest(counts).second; count > mostOfRhythm * bars) {
        faults.push_back(concat(count, " of ", bars, " bars are struck at the same places: ",
                                percentText(mostOfRhythm), " at most"));
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
        lintThirds(phrases, faults);
    } else if (kind == ScoreKind::drums) {
        lintFullDrums(phrases, faults);
    }
    if (std::ssize(phrases) >= fewForShares) {
        lintStyles(phrases, faults);
        if (kind != ScoreKind::chordPattern) {
            lintRhythms(phrases, faults);
        }
    }
    lintColours(phrases, faults);
    return faults;
}

} // namespace volvelle
