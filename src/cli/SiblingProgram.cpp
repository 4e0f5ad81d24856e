#include "cli/SiblingProgram.h"

#include "base/Text.h"
#include "services/files/HeldSignals.h"

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace volvelle {

namespace {

constexpr int notBegun = 127;     // what a shell says, too
constexpr int exitBySignal = 128; // and this, with the number of the signal
constexpr int unknownStatus = SIGKILL;

// What asks this process to end, unless it is ignored, and the news of a child.
sigset_t watchedSignals()
{
    sigset_t watched;
    sigemptyset(&watched);
    sigaddset(&watched, SIGCHLD);
    for (const int signal : endingSignals) {
        struct sigaction action = {};
        if (sigaction(signal, nullptr, &action) == 0 && action.sa_handler != SIG_IGN) {
            sigaddset(&watched, signal);
        }
    }
    return watched;
}

// What ends the child before it is that program must not clear up what is its parent's.
[[noreturn]] void become(const std::string& program, const std::vector<char*>& arguments, pid_t parent,
                         const sigset_t& watched)
{
    for (const int signal : endingSignals) {
        if (sigismember(&watched, signal) == 1) {
            std::signal(signal, SIG_DFL);
        }
    }
    prctl(PR_SET_PDEATHSIG, SIGTERM);
    sigprocmask(SIG_UNBLOCK, &watched, nullptr);
    if (getppid() == parent) {
        execv(program.c_str(), arguments.data());
    }
    _exit(notBegun);
}

// Tells of the end of children, also where this process was begun with their news ignored.
class ChildNews {
public:
    ChildNews()
    {
        struct sigaction usual = {};
        usual.sa_handler = SIG_DFL;
        sigaction(SIGCHLD, &usual, &before);
    }

    ~ChildNews() { sigaction(SIGCHLD, &before, nullptr); }

    ChildNews(const ChildNews&) = delete;
    ChildNews& operator=(const ChildNews&) = delete;

private:
    struct sigaction before = {};
};

// Waits for the end of a child, and gives its status. A signal that asks this process to end is one for the
// child, too; the same one again ends it at once. The signal, 0 without one.
int waitFor(pid_t child, const sigset_t& watched, int& status)
{
    int wanted = 0;
    pid_t ended = 0;
    while ((ended = waitpid(child, &status, WNOHANG)) == 0) {
        const int signal = sigwaitinfo(&watched, nullptr);
        if (signal > 0 && signal != SIGCHLD) {
            kill(child, wanted == signal ? SIGKILL : SIGTERM);
            wanted = signal;
        }
    }
    if (ended < 0) {
        status = unknownStatus;
    }
    return wanted;
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
    const ChildNews news;
    const sigset_t watched = watchedSignals();
    sigset_t before;
    sigprocmask(SIG_BLOCK, &watched, &before);
    const pid_t self = getpid();
    const pid_t child = fork();
    if (child == 0) {
        become(program, pointers, self, watched);
    }
    int status = 0;
    const int signal = child > 0 ? waitFor(child, watched, status) : 0;
    sigprocmask(SIG_SETMASK, &before, nullptr);
    if (signal != 0) {
        return exitBySignal + signal;
    }
    if (child > 0 && WIFEXITED(status) && WEXITSTATUS(status) == notBegun) {
        return tellMissingSibling(name, output);
    }
    return child > 0 && WIFEXITED(status)
               ? WEXITSTATUS(status)
               : output.failure(concat("The program '", name, "' ended before its work was done."));
}

} // namespace volvelle
