#pragma once

#include <chrono>
#include <string>
#include <sys/types.h>
#include <vector>

namespace volvelle::test {

// Another program, ended with the life of its object.
class ChildProcess {
public:
    // Runs a program found in the path; its standard output goes to `outputFile`, or can be read where that
    // is empty.
    explicit ChildProcess(const std::vector<std::string>& command, const std::string& outputFile = {});
    ~ChildProcess();
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    // The next line of its output; empty at the end, and where none comes within half a minute.
    std::string readLine();

    // The next bytes of its output, as the last.
    std::string readBytes();

    // Sends a signal.
    void signal(int number) const;

    // Sends SIGTERM, to one that is suspended too, waits for the end, and gives the exit status.
    int terminate();

    // Waits for the end, and gives the exit status.
    int waitForEnd();

private:
    pid_t process = -1;
    int output = -1;
    std::string buffer;
};

} // namespace volvelle::test
