#include "tests/cli/sound/OtherProgram.h"

#include <chrono>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>
#include <utility>
#include <vector>

namespace volvelle::test {

OtherProgram::OtherProgram(const std::filesystem::path& folder)
{
    const std::string name = (folder / "pipe").string();
    EXPECT_EQ(mkfifo(name.c_str(), 0600), 0);
    pipe = open(name.c_str(), O_RDWR | O_CLOEXEC);
    process = std::make_unique<ChildProcess>(
        std::vector<std::string>{"sh", "-c", "exec '" VOLVELLE_MIDI_SPEAKER "' <'" + name + "'"});
    EXPECT_EQ(process->readLine(), "ready");
}

OtherProgram::~OtherProgram()
{
    if (pipe >= 0) {
        end();
    }
}

bool OtherProgram::waitForHearer(const SoundServersFolder& servers) const
{
    for (int tries = 0; tries < 300; ++tries) {
        ChildProcess listing({"jack_lsp", "-s", servers.serverName(), "-c"});
        for (std::string line = listing.readLine(); !line.empty(); line = listing.readLine()) {
            if (line == "   Speaker:keys") {
                return true;
            }
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
    }
    return false;
}

void OtherProgram::send(const std::string& lines) const
{
    EXPECT_EQ(write(pipe, lines.data(), lines.size()), static_cast<ssize_t>(lines.size()));
}

void OtherProgram::end()
{
    close(std::exchange(pipe, -1));
    process->waitForEnd();
}

} // namespace volvelle::test
