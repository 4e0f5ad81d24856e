#include "tests/cli/sound/PlayRun.h"

#include <vector>

namespace volvelle::test {

std::unique_ptr<ChildProcess> PlayRun::begin(const std::string& arguments, const std::string& first) const
{
    const std::string line = "cd '" + (folder / "work").string() + "' && " + first +
                             "exec '" VOLVELLE_PROGRAM "' " + arguments + " 2>errors </dev/null";
    return std::make_unique<ChildProcess>(std::vector<std::string>{"sh", "-c", line});
}

std::string PlayRun::errors() const
{
    return read("errors");
}

} // namespace volvelle::test
