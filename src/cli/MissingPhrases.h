#pragma once

#include <string>

namespace volvelle {

// A plain line that says how to give phrases, where one of the five folders that ideas are made of is missing
// or holds none; else nothing. [main]
std::string missingPhrases();

} // namespace volvelle
