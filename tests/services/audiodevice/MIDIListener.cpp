// Opens a MIDI port "notes" through JACK, writes "ready", then each message that comes in as a line of
// hexadecimal bytes, and ends after as many as its argument says or after ten seconds.
#include <RtMidi.h>
#include <chrono>
#include <condition_variable>
#include <cstdio>
#include <cstdlib>
#include <mutex>

namespace {

struct Inbox {
    std::mutex mutex;
    std::condition_variable changed;
    int messages = 0;
};

void print(double /*time*/, std::vector<unsigned char>* bytes, void* user)
{
    auto& inbox = *static_cast<Inbox*>(user);
    const std::lock_guard lock(inbox.mutex);
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
    Inbox inbox;
    try {
        RtMidiIn input(RtMidi::UNIX_JACK, "Listener");
        input.ignoreTypes(false, false, false);
        input.setCallback(print, &inbox);
        input.openVirtualPort("notes");
        std::printf("ready\n");
        std::fflush(stdout);
        std::unique_lock lock(inbox.mutex);
        const bool enough =
            inbox.changed.wait_for(lock, std::chrono::seconds(10), [&] { return inbox.messages >= wanted; });
        lock.unlock();
        return enough ? 0 : 1;
    } catch (const RtMidiError&) {
        return 1;
    }
}
