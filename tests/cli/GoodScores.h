#pragma once

#include <string>
#include <utility>

// Scores that keep the rules, and how others are made of them.
namespace volvelle::test {

// A bass that keeps all rules.
inline const std::string goodBass = "title: T\nstyle: S\nnotes:\n"
                                    "| E1:4=60 r:2 B0:2=66 G0:4=61 C1:2=62 r:2 |\n"
                                    "| E1:4=60 r:2 B0:2=66 G0:4=61 D1:2=63 r:2 |\n"
                                    "| A1:4=64 r:2 D1:2=66 F1:4=61 C1:2=62 r:2 |\n"
                                    "| E1:4=65 r:12 |\n";

// A score of each kind; together they keep all rules.
inline const std::pair<const char*, std::string> goodScores[] = {
    {"chord-patterns", "title: P\nstyle: S\nchords:\n| Am | FM | GM | E7 |\n"},
    {"basses", goodBass},
    {"leads", "title: L\nstyle: S\nnotes:\n"
              "| ff G3:2 C4:2 G4:4> r:8        |\n"
              "| f G3:2 C4:2 E4:3 r:9          |\n"
              "| ff r:4 C4:2=96 F4:2 A4:4> r:4 |\n"
              "| f G3:2=84 C4:2 G4:6=104 r:6   |\n"},
    {"chords", "title: C\nstyle: S\nnotes:\n"
               "| mf [E2 A2 C3]:3 r:3 [E2 A2 C3]:2=70 r:4 p [G2 C3]:4> |\n"
               "| r:4 f [A2 D3 F3]:2_ r:6 mp [G2 C3]:2 [E2 A2]:2>      |\n"
               "| r:16                                                 |\n"
               "| pp [E2 A2]:4 mf [G2 C3 E3]:4=101 r:8                 |\n"},
    {"drums", "title: D\nstyle: S\ndrums:\n"
              "hat   42 |7.4.6.4.7.4.6.4.|7.4.6.4.7.4.6.4.|7.4.6.4.7.4.6.4.|7.4.6.4.7.......|\n"
              "snare 38 |....8..2....8...|....8..2....8...|....8..2....8...|....8..2.4.5.6.8|\n"
              "kick  36 |8.....7...7.....|8.....7...7..4..|8.....7...7.....|8.....7.........|\n"}};

// A score with other words in the place of some.
inline std::string changed(std::string score, const std::string& words, const std::string& others)
{
    return score.replace(score.find(words), words.size(), others);
}

} // namespace volvelle::test
