#pragma once

#include <filesystem>
#include <string>

// Lets the test's programs find a server. GTEST_SKIP and FAIL end the function that they stand in.
#define USE_SERVER(servers, name)                                                                            \
    if (const std::string reason = (servers).use(name); SoundServersFolder::isMissing(reason)) {             \
        GTEST_SKIP() << reason;                                                                              \
    } else if (!reason.empty()) {                                                                            \
        FAIL() << reason;                                                                                    \
    }

namespace volvelle::test {

// The folder of the sound servers that a test talks to, by way of the environment: those of all tests, or its
// own. Without a server of its own a test finds none of the machine's either.
class SoundServersFolder {
public:
    enum class Kind { shared, own };

    explicit SoundServersFolder(Kind kind);
    ~SoundServersFolder(); // ends its own servers
    SoundServersFolder(const SoundServersFolder&) = delete;
    SoundServersFolder& operator=(const SoundServersFolder&) = delete;

    // Starts a server of its own, "pulse" or "jack".
    void start(const std::string& server);

    // Sends a signal to a server's process.
    void signal(const std::string& server, int number) const;

    // Lets the test's programs find a server; why there is none, empty where there is one.
    std::string use(const std::string& server) const;

    // True where such a reason is one to skip a test for: the server is not installed, and CI does not run
    // the tests, which installs all. A server that does not start is a failure.
    static bool isMissing(const std::string& reason);

    // The name of the JACK server.
    std::string serverName() const { return contents("jack.name"); }

    const std::filesystem::path path;

private:
    void run(const std::string& command, const std::string& server) const;
    std::string contents(const std::string& name) const;

    Kind kind;
};

} // namespace volvelle::test
