#pragma once

#include "base/Result.h"

#include <QString>

#include <filesystem>

class QUrl;

namespace volvelle {

// Files as the desktop names them, whatever the bytes of their names: "file:///home/a%E9.mid". [any]
QString addressOf(const std::filesystem::path& file);

// The file of an address, or of a plain path. An address on another computer, and one that no file can have,
// is a failure, as one plain sentence.
Result<std::filesystem::path> fileOf(const QString& addressOrPath);
Result<std::filesystem::path> fileOf(const QUrl& address);

// A file as a dialog can propose it, and what was meant by the answer to that proposal. A name that is no
// text is proposed as it is shown, and meant where it was left so; a folder without a name in text gives way
// to the nearest one above it that has one.
std::filesystem::path proposalOf(const std::filesystem::path& file);
std::filesystem::path meantBy(const std::filesystem::path& answer, const std::filesystem::path& proposed);

} // namespace volvelle
