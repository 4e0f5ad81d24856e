#pragma once

#include "sequence/MIDISequence16.h"
#include "tests/support/TemporaryFolder.h"

#include <filesystem>
#include <map>
#include <string>
#include <vector>

// Phrase files and whole small libraries of them, below a temporary folder.
namespace volvelle::test {

struct FileNote {
    double position = 0.0; // beats
    int number = 60;
    double duration = 1.0; // beats
    int channel = 0;
    int velocity = 100;
    int releaseVelocity = 0;
};

struct FileController {
    double position = 0.0;
    int number = 0;
    int value = 0;
    int channel = 0;
};

struct PhraseFile {
    std::vector<FileNote> notes;
    std::vector<FileController> controllers;
    std::vector<double> markers; // their positions
};

void writeFile(const std::filesystem::path& path, const PhraseFile& file);

// The notes of a sequence, track by track: "position channel number velocity releaseVelocity duration".
std::vector<std::string> notesOf(MIDISequence16& sequence, double offset = 0.0);

// The lines without those that the reading of a sequence writes at the end of each of its tracks that holds
// events.
std::vector<std::string> withoutTrackEnds(const std::vector<std::string>& lines);

inline constexpr const char* chordPatterns = "/Phrases/chord patterns/";
inline constexpr const char* chordPhrases = "/Phrases2/01 chords/";
inline constexpr const char* leads = "/Phrases2/02 leads/";
inline constexpr const char* basses = "/Phrases2/09 basses/";
inline constexpr const char* drums = "/Phrases2/10 drums/";

// A phrase library with its five folders, in force as the resources for its lifetime.
class PhraseLibrary {
public:
    PhraseLibrary();
    ~PhraseLibrary();
    PhraseLibrary(const PhraseLibrary&) = delete;
    PhraseLibrary& operator=(const PhraseLibrary&) = delete;

    std::string at(const std::string& folder) const { return root.path.string() + folder; }

    // Appends "001.mid", "002.mid" and so on.
    void add(const std::string& folder, const PhraseFile& file);

    // Two chord patterns (C F and A minor), two phrases of one note for each follower, and two of drums.
    void fill();

private:
    TemporaryFolder root;
    std::map<std::string, int> counts;
};

// The notes struck together at one position.
std::vector<FileNote> struck(double position, const std::vector<int>& numbers);

} // namespace volvelle::test
