#pragma once

#include "app/control/TrashCan.h"

namespace volvelle {

// The trash of the user's desktop, or that of the device on which a file stands. [main]
class DesktopTrash : public TrashCan {
public:
    Result<std::filesystem::path> take(const std::filesystem::path& file) override;
    Result<> restore(const std::filesystem::path& place, const std::filesystem::path& file) override;
};

} // namespace volvelle
