#include "tests/support/ChildProcess.h"

#include <csignal>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace volvelle::test {

ChildProcess::ChildProcess(const std::vector<std::string>& command, const std::string& outputFile)
{
    int ends[2] = {-1, -1};
    if (outputFile.empty()) {
        EXPECT_EQ(pipe2(ends, O_CLOEXEC), 0);
    } else {
        ends[1] = open(outputFile.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
    }
    std::vector<char*> arguments;
    for (const std::string& argument : command) {
        arguments.push_back(const_cast<char*>(argument.c_str()));
    }
    arguments.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, ends[1], STDOUT_FILENO);
    EXPECT_EQ(posix_spawnp(&process, arguments[0], &actions, nullptr, arguments.data(), environ), 0);
    posix_spawn_file_actions_destroy(&actions);
    close(ends[1]);
    output = ends[0];
}

ChildProcess::~ChildProcess()
{
    terminate();
    if (output >= 0) {
        close(output);
    }
}

std::string ChildProcess::readLine()
{
    std::size_t end = buffer.find('\n');
    while (end == std::string::npos) {
        const std::string bytes = readBytes();
        if (bytes.empty()) {
            return {};
        }
        buffer += bytes;
        end = buffer.find('\n');
    }
    const std::string line = buffer.substr(0, end);
    buffer.erase(0, end + 1);
    return line;
}

std::string ChildProcess::readBytes()
{
    constexpr int longest = 30'000; // milliseconds
    pollfd waiting = {output, POLLIN, 0};
    char bytes[4096];
    const ssize_t count = poll(&waiting, 1, longest) == 1 ? read(output, bytes, sizeof(bytes)) : 0;
    return count > 0 ? std::string(bytes, static_cast<std::size_t>(count)) : std::string();
}

void ChildProcess::signal(int number) const
{
    ASSERT_GT(process, 1);
    EXPECT_EQ(kill(process, number), 0);
}

int ChildProcess::terminate()
{
    if (process > 0) {
        kill(process, SIGTERM);
        kill(process, SIGCONT);
    }
    return waitForEnd();
}

int ChildProcess::waitForEnd()
{
    int status = 0;
    if (process > 0) {
        waitpid(process, &status, 0);
        process = -1;
    }
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

} // namespace volvelle::test
