#pragma once

#include "base/Result.h"

#include <filesystem>
#include <optional>
#include <string>
#include <system_error>
#include <vector>

// The folders that phrases are taken from: files numbered from 1 without gaps. [any]
namespace volvelle {

struct ArrangementTrack;

// The folder of a track's phrases below the resources, with a slash at its end; none is a fatal stop.
std::string phraseFolderOf(const ArrangementTrack& track,
                           const std::optional<std::filesystem::path>& resources);

// The names in a folder, in no order; the sentence of listingFailure() where it cannot be read.
Result<std::vector<std::string>> namesIn(const std::string& folder);

// "Getting contents of '...' failed.", or that the memory does not suffice.
std::string listingFailure(const std::string& folder, std::error_code error);

// How many of the names are MIDI files.
int countPhrases(const std::vector<std::string>& names);

// The number as files have it: "007".
std::string phraseNumber(int number);

// Whether all phrases are there that an arrangement may ask for; else a sentence tells what is missing. An
// arrangement itself ends in a fatal stop there, so who has something to lose asks first.
Result<> checkPhraseLibrary();

} // namespace volvelle
