#include "scores/ScoreOnsets.h"

namespace volvelle::scores {

std::map<double, std::set<int>> onsets(const Score& score, int bar)
{
    std::map<double, std::set<int>> places;
    for (const auto& note : score.notes) {
        if (Score::barAt(note.position) == bar) {
            places[note.position - (bar - 1) * Score::beatsInBar].insert(note.number);
        }
    }
    return places;
}

} // namespace volvelle::scores
