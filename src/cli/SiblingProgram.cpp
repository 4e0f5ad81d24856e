#include "cli/SiblingProgram.h"

#include "base/Text.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace volvelle {

namespace {

constexpr int notBegun = 127; // what a shell says, too

[[noreturn]] void become(const std::string& program, const std::vector<char*>& arguments, pid_t parent)
{
    prctl(PR_SET_PDEATHSIG, SIGTERM);
    if (getppid() == parent) {
        execv(program.c_str(), arguments.data());
    }
    _exit(notBegun);
}

} // namespace

std::filesystem::path siblingProgram(const char* name)
{
    std::error_code error;
    return std::filesystem::read_symlink("/proc/self/exe", error).parent_path() / name;
}

int tellMissingSibling(const char* name, CommandOutput& output)
{
    return output.failure(concat("The program '", name, "' is missing beside this one."));
}

int runSibling(const char* name, const std::vector<std::string>& arguments, CommandOutput& output)
{
    const std::string program = siblingProgram(name).string();
    std::vector<std::string> words{name};
    words.insert(words.end(), arguments.begin(), arguments.end());
    std::vector<char*> pointers(words.size() + 1, nullptr);
    std::ranges::transform(words, pointers.begin(), [](std::string& word) { return word.data(); });
    std::fflush(stdout);
    const pid_t self = getpid();
    const pid_t child = fork();
    if (child == 0) {
        become(program, pointers, self);
    }
    int status = 0;
    while (child > 0 && waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    if (child > 0 && WIFEXITED(status) && WEXITSTATUS(status) == notBegun) {
        return tellMissingSibling(name, output);
    }
    return child > 0 && WIFEXITED(status)
               ? WEXITSTATUS(status)
               : output.failure(concat("The program '", name, "' ended before its work was done."));
}

} // namespace volvelle
