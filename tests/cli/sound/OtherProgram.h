#pragma once

#include "tests/services/audiodevice/SoundServersFolder.h"
#include "tests/support/ChildProcess.h"

#include <filesystem>
#include <memory>
#include <string>

namespace volvelle::test {

// Another program with a MIDI port "Speaker:keys" through JACK, that sends what a test says.
class OtherProgram {
public:
    // Its pipe stands in the folder.
    explicit OtherProgram(const std::filesystem::path& folder);
    ~OtherProgram();
    OtherProgram(const OtherProgram&) = delete;
    OtherProgram& operator=(const OtherProgram&) = delete;

    // Waits until someone hears its port, for half a minute at most.
    bool waitForHearer(const SoundServersFolder& servers) const;

    // Sends a line for each message, bytes in hexadecimal; "pause N" waits for N milliseconds.
    void send(const std::string& lines) const;

    // Closes its port, and waits for its end.
    void end();

private:
    int pipe = -1;
    std::unique_ptr<ChildProcess> process;
};

} // namespace volvelle::test
