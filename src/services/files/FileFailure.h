#pragma once

#include <filesystem>
#include <string>

namespace volvelle {

// The line for a file that could not be written, from the system's number of the failure:
// "'a.mid' could not be written: the device is full." [any]
std::string writeFailure(const std::filesystem::path& file, int error);

// Its reason alone: "the device is full". [any]
std::string writeFailureReason(const std::filesystem::path& file, int error);

// Why a file could not be read, as that line tells it: "it is a folder"; empty where nothing is in the way.
// [any]
std::string readObstacle(const std::filesystem::path& file);

} // namespace volvelle
