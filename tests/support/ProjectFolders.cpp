#include "tests/support/ProjectFolders.h"

namespace volvelle::test {

std::filesystem::path sourceFolder()
{
    return VOLVELLE_SOURCE_DIR;
}

std::filesystem::path buildFolder()
{
    return VOLVELLE_BINARY_DIR;
}

} // namespace volvelle::test
