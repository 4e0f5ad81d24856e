// Opens a MIDI port "notes" through JACK, writes "ready", then each message that comes in as a line of
// hexadecimal bytes, and ends after as many as its first argument says, or after as many seconds as its
// second says, ten without it, or at SIGTERM. With a third, the lines begin with the milliseconds since the
// message before.
#include <RtMidi.h>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <mutex>

namespace {

std::atomic<bool> ending{false};

struct Inbox {
    std::mutex mutex;
    std::condition_variable changed;
    int messages = 0;
    bool tellsTimes = false;
};

void print(double time, std::vector<unsigned char>* bytes, void* user)
{
    auto& inbox = *static_cast<Inbox*>(user);
    const std::lock_guard lock(inbox.mutex);
    if (inbox.tellsTimes) {
        std::printf("%.0f ", time * 1000.0);
    }
    for (std::size_t i = 0; i < bytes->size(); ++i) {
        std::printf("%s%02X", i == 0 ? "" : " ", static_cast<unsigned int>((*bytes)[i]));
    }
    std::printf("\n");
    std::fflush(stdout);
    ++inbox.messages;
    inbox.changed.notify_all();
}

} // namespace

int main(int argc, char** argv)
{
    const int wanted = argc > 1 ? std::atoi(argv[1]) : 1;
    const int longest = argc > 2 ? std::atoi(argv[2]) : 10;
    std::signal(SIGTERM, [](int) { ending = true; });
    Inbox inbox;
    inbox.tellsTimes = argc > 3;
    try {
        RtMidiIn input(RtMidi::UNIX_JACK, "Listener");
        input.ignoreTypes(false, false, false);
        input.setCallback(print, &inbox);
        input.openVirtualPort("notes");
        std::printf("ready\n");
        std::fflush(stdout);
        const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(longest);
        std::unique_lock lock(inbox.mutex);
        while (!ending && inbox.messages < wanted && std::chrono::steady_clock::now() < end) {
            inbox.changed.wait_for(lock, std::chrono::milliseconds(50));
        }
        const bool enough = inbox.messages >= wanted;
        lock.unlock();
        return enough ? 0 : 1;
    } catch (const RtMidiError&) {
        return 1;
    }
}
