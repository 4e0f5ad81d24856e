#pragma once

#include <QString>

#include <filesystem>
#include <functional>

namespace volvelle {

// Shows a file, selected, in the desktop's file manager; where none answers on the session bus, `openFolder`
// gets the folder of the file, at once or later. [main]
void showInFileManager(const std::filesystem::path& file,
                       std::function<void(const QString& folder)> openFolder);

} // namespace volvelle
