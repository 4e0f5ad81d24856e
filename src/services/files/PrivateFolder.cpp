#include "services/files/PrivateFolder.h"

#include "base/PendingFiles.h"

#include <cstdlib>
#include <string>
#include <system_error>

namespace volvelle {

namespace fs = std::filesystem;

PrivateFolder::PrivateFolder()
{
    std::error_code none;
    for (const fs::path& folder : {fs::temp_directory_path(none), fs::path("/tmp"), fs::path("/dev/shm")}) {
        std::string name = (folder / "volvelle-XXXXXX").string();
        if (place.empty() && !folder.empty() && mkdtemp(name.data()) != nullptr) {
            place = name;
        }
    }
    if (place.empty()) {
        place = "/dev/null/volvelle";
    } else {
        slot = rememberPendingFile(place.string());
    }
}

PrivateFolder::~PrivateFolder()
{
    std::error_code error;
    fs::remove_all(place, error);
    forgetPendingFile(slot);
}

} // namespace volvelle
