#pragma once

#include <filesystem>

namespace volvelle {

// Looks after what processes that were killed while they saved have left in a folder. What may be the file of
// another program (".replaced", see NewFile) becomes a version of the file that it stood for, or of its own
// name where it does not tell, and only then goes; where no version can be kept, and in a folder that may not
// be written, it stays. A new file that never had its place (".tmp") goes. A process that runs keeps its
// files; so does one whose number another has by now, until that ends. One that runs on another computer is
// taken for dead: its save fails, and loses nothing. [main]
void keepLeftovers(const std::filesystem::path& folder);

} // namespace volvelle
