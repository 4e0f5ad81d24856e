#pragma once

#include <QString>

#include <filesystem>

class QUrl;

namespace volvelle {

// Files as the desktop names them, whatever the bytes of their names: "file:///home/a%E9.mid". [any]
QString addressOf(const std::filesystem::path& file);

// The file of an address, or of a plain path.
std::filesystem::path fileOf(const QString& addressOrPath);
std::filesystem::path fileOf(const QUrl& address);

} // namespace volvelle
