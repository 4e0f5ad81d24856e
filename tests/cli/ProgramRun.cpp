#include "tests/cli/ProgramRun.h"

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <sys/wait.h>

namespace volvelle::test {

namespace fs = std::filesystem;

namespace {

std::string contents(const fs::path& file)
{
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

} // namespace

ProgramRun::ProgramRun()
{
    fs::create_directory(folder / "work");
}

ProgramRun::~ProgramRun()
{
    fs::permissions(folder / "work", fs::perms::owner_all);
}

ProgramResult ProgramRun::volvelle(const std::string& arguments) const
{
    return shell("exec \"$VOLVELLE\" " + arguments);
}

ProgramResult ProgramRun::shell(const std::string& line) const
{
    const std::string command =
        "cd '" + (folder / "work").string() + "' && { VOLVELLE='" VOLVELLE_PROGRAM "'; " + line + "\n} >'" +
        (folder / "out").string() + "' 2>'" + (folder / "err").string() + "' </dev/null";
    const int status = std::system(command.c_str());
    return {WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status), contents(folder / "out"),
            contents(folder / "err")};
}

void ProgramRun::write(const std::string& name, const std::string& bytes) const
{
    const fs::path file = folder / "work" / name;
    fs::create_directories(file.parent_path());
    std::ofstream(file, std::ios::binary) << bytes;
}

std::string ProgramRun::read(const std::string& name) const
{
    return contents(folder / "work" / name);
}

std::vector<std::string> ProgramRun::names() const
{
    std::vector<std::string> result;
    for (const auto& entry : fs::directory_iterator(folder / "work")) {
        result.push_back(entry.path().filename().string());
    }
    std::ranges::sort(result);
    return result;
}

} // namespace volvelle::test
