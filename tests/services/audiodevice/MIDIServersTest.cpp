#include "base/realtime/BoundedQueue.h"
#include "services/audiodevice/MIDIPorts.h"
#include "tests/services/audiodevice/SoundServersFolder.h"
#include "tests/support/ChildProcess.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <csignal>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <jack/jack.h>
#include <jack/midiport.h>
#include <memory>
#include <thread>

namespace volvelle::test {

namespace {

// Keeps the messages that come, short ones and few.
class KeepingReceiver : public MIDIReceiver {
public:
    struct Message {
        Moment arrived;
        std::array<std::uint8_t, 16> bytes{};
        std::size_t length = 0;
    };

    void receive(Moment arrived, std::span<const std::uint8_t> bytes) noexcept override
    {
        Message message;
        message.arrived = arrived;
        message.length = std::min(bytes.size(), message.bytes.size());
        std::copy_n(bytes.begin(), message.length, message.bytes.begin());
        queue.push(message);
    }

    // The next message, for ten seconds at most, or so many hundredths of one.
    std::vector<std::uint8_t> next(int most = 1000)
    {
        Message message;
        for (int tries = 0; tries < most; ++tries) {
            if (queue.pop(message)) {
                EXPECT_GE(message.arrived, last);
                last = message.arrived;
                return {message.bytes.begin(),
                        message.bytes.begin() + static_cast<std::ptrdiff_t>(message.length)};
            }
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        }
        return {};
    }

    // When the last one came that was asked for.
    Moment last = std::chrono::steady_clock::now();

private:
    BoundedQueue<Message> queue{64};
};

using Bytes = std::vector<std::uint8_t>;

std::string allPorts(const SoundServersFolder& servers)
{
    ChildProcess listing({"jack_lsp", "-s", servers.serverName()});
    std::string all;
    for (std::string line = listing.readLine(); !line.empty(); line = listing.readLine()) {
        all += line + "\n";
    }
    return all;
}

// Counts the programs that come to the server while it stands.
class Newcomers {
public:
    Newcomers() : client(jack_client_open("Newcomers", JackNoStartServer, nullptr))
    {
        jack_set_client_registration_callback(client, note, this);
        EXPECT_EQ(jack_activate(client), 0);
    }

    ~Newcomers() { jack_client_close(client); }

    Newcomers(const Newcomers&) = delete;
    Newcomers& operator=(const Newcomers&) = delete;

    std::atomic<int> count{0};

private:
    static void note(const char* /*name*/, int isNew, void* newcomers)
    {
        static_cast<Newcomers*>(newcomers)->count += isNew != 0 ? 1 : 0;
    }

    jack_client_t* client;
};

// Another program's port, which sends two notes in one period.
class Striker {
public:
    static constexpr jack_nframes_t first = 10;
    static constexpr jack_nframes_t second = 400;

    Striker() : client(jack_client_open("Striker", JackNoStartServer, nullptr))
    {
        port = jack_port_register(client, "out", JACK_DEFAULT_MIDI_TYPE, JackPortIsOutput, 0);
        jack_set_process_callback(client, process, this);
        EXPECT_EQ(jack_activate(client), 0);
    }

    ~Striker() { jack_client_close(client); }

    Striker(const Striker&) = delete;
    Striker& operator=(const Striker&) = delete;

    std::atomic<bool> strikes{false};

private:
    static int process(jack_nframes_t frames, void* striker)
    {
        auto& self = *static_cast<Striker*>(striker);
        void* const buffer = jack_port_get_buffer(self.port, frames);
        jack_midi_clear_buffer(buffer);
        if (frames > second && self.strikes.exchange(false)) {
            for (const jack_nframes_t frame : {first, second}) {
                const std::array<jack_midi_data_t, 3> note{0x90, 60, 100};
                jack_midi_event_write(buffer, frame, note.data(), note.size());
            }
        }
        return 0;
    }

    jack_client_t* client;
    jack_port_t* port = nullptr;
};

// Another program's port that sends what a shell script writes.
std::vector<std::string> speaking(const std::string& script)
{
    return {"sh", "-c", "{ " + script + "; } | exec '" VOLVELLE_MIDI_SPEAKER "'"};
}

} // namespace

TEST(MIDIServersTest, SendsANoteThroughJACKToAnotherProgram)
{
    const SoundServersFolder servers(SoundServersFolder::Kind::shared);
    USE_SERVER(servers, "jack");
    ChildProcess listener({VOLVELLE_MIDI_LISTENER, "2"});
    ASSERT_EQ(listener.readLine(), "ready");
    const auto ports = makeMIDIPorts({false, MIDIServices::present().jack});
    const auto names = ports->outputNames();
    ASSERT_TRUE(names) << names.error();
    EXPECT_THAT(*names, testing::Contains(testing::HasSubstr("Listener:notes")));
    EXPECT_EQ(ports->openOutput("").error(), "There is no MIDI port \"\".");
    const auto port = ports->openOutput("listener:NOTES");
    ASSERT_TRUE(port) << port.error();
    EXPECT_THAT((*port)->name(), testing::HasSubstr("Listener:notes"));
    EXPECT_EQ((*port)->send(std::array<std::uint8_t, 3>{0x92, 60, 100}).error(), "");
    EXPECT_EQ((*port)->send(std::array<std::uint8_t, 2>{0xC2, 5}).error(), "");
    EXPECT_EQ(listener.readLine(), "92 3C 64");
    EXPECT_EQ(listener.readLine(), "C2 05");
    EXPECT_EQ(listener.waitForEnd(), 0);
}

TEST(MIDIServersTest, OpensAPortForOtherPrograms)
{
    const SoundServersFolder servers(SoundServersFolder::Kind::shared);
    USE_SERVER(servers, "jack");
    const auto ports = makeMIDIPorts({false, true});
    const auto port = ports->openVirtualOutput("ideas");
    ASSERT_TRUE(port) << port.error();
    EXPECT_EQ((*port)->name(), "ideas");
    EXPECT_EQ((*port)->send(std::array<std::uint8_t, 3>{0x90, 60, 100}).error(), "");
    EXPECT_THAT(allPorts(servers), testing::HasSubstr("Volvelle:ideas"));
}

TEST(MIDIServersTest, HearsAnotherProgramThroughJACK)
{
    const SoundServersFolder servers(SoundServersFolder::Kind::shared);
    USE_SERVER(servers, "jack");
    ChildProcess speaker(speaking("sleep 2; echo 92 3C 64; echo C2 05; echo F8; echo FE; "
                                  "echo F0 7E 7F 09 01 F7; sleep 1"));
    ASSERT_EQ(speaker.readLine(), "ready");
    const auto ports = makeMIDIPorts({false, MIDIServices::present().jack});
    const auto names = ports->inputNames();
    ASSERT_TRUE(names) << names.error();
    EXPECT_THAT(*names, testing::Contains(testing::HasSubstr("Speaker:keys")));
    const auto receiver = std::make_shared<KeepingReceiver>();
    const auto port = ports->openInput("speaker:KEYS", receiver);
    ASSERT_TRUE(port) << port.error();
    EXPECT_THAT((*port)->name(), testing::HasSubstr("Speaker:keys"));
    EXPECT_FALSE((*port)->isLost());
    EXPECT_EQ(receiver->next(), (Bytes{0x92, 60, 100}));
    EXPECT_EQ(receiver->next(), (Bytes{0xC2, 5}));
    EXPECT_EQ(receiver->next(), (Bytes{0xF0, 0x7E, 0x7F, 9, 1, 0xF7}));
    EXPECT_EQ(speaker.waitForEnd(), 0);
    EXPECT_TRUE((*port)->isLost());
    EXPECT_EQ(ports->openInput("speaker:keys", receiver).error(), "There is no MIDI port \"speaker:keys\".");
}

TEST(MIDIServersTest, MessagesOfOnePeriodComeAtTheirFrames)
{
    const SoundServersFolder servers(SoundServersFolder::Kind::shared);
    USE_SERVER(servers, "jack");
    Striker striker;
    const auto receiver = std::make_shared<KeepingReceiver>();
    const auto port = makeMIDIPorts({false, true})->openInput("striker:out", receiver);
    ASSERT_TRUE(port) << port.error();
    std::this_thread::sleep_for(std::chrono::milliseconds(300));
    striker.strikes = true;
    EXPECT_EQ(receiver->next(), (Bytes{0x90, 60, 100}));
    const auto before = receiver->last;
    EXPECT_EQ(receiver->next(), (Bytes{0x90, 60, 100}));
    const std::chrono::duration<double> between = receiver->last - before;
    EXPECT_NEAR(between.count(), (Striker::second - Striker::first) / 48000.0, 1e-4);
}

TEST(MIDIServersTest, AnInputWhosePortCameBackIsLost)
{
    const SoundServersFolder servers(SoundServersFolder::Kind::shared);
    USE_SERVER(servers, "jack");
    ChildProcess first(speaking("sleep 1"));
    ASSERT_EQ(first.readLine(), "ready");
    const auto input =
        makeMIDIPorts({false, true})->openInput("speaker:keys", std::make_shared<KeepingReceiver>());
    ASSERT_TRUE(input) << input.error();
    EXPECT_FALSE((*input)->isLost());
    EXPECT_EQ(first.waitForEnd(), 0);
    ChildProcess second(speaking("sleep 1"));
    ASSERT_EQ(second.readLine(), "ready");
    EXPECT_THAT(allPorts(servers), testing::HasSubstr("Speaker:keys"));
    EXPECT_TRUE((*input)->isLost());
    EXPECT_EQ(second.waitForEnd(), 0);
}

TEST(MIDIServersTest, AskingWhetherAnInputIsLostOpensNoProgram)
{
    const SoundServersFolder servers(SoundServersFolder::Kind::shared);
    USE_SERVER(servers, "jack");
    const auto input =
        makeMIDIPorts({false, true})->openVirtualInput("ears", std::make_shared<KeepingReceiver>());
    ASSERT_TRUE(input) << input.error();
    const Newcomers newcomers;
    for (int i = 0; i < 3; ++i) {
        EXPECT_FALSE((*input)->isLost());
    }
    EXPECT_TRUE(MIDIServices::present().jack); // which does
    for (int tries = 0; tries < 100 && newcomers.count == 0; ++tries) {
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    EXPECT_EQ(newcomers.count, 1);
}

TEST(MIDIServersTest, OpensAPortThatOtherProgramsPlayTo)
{
    const SoundServersFolder servers(SoundServersFolder::Kind::shared);
    USE_SERVER(servers, "jack");
    const auto receiver = std::make_shared<KeepingReceiver>();
    const auto ports = makeMIDIPorts({false, true});
    const auto input = ports->openVirtualInput("ears", receiver);
    ASSERT_TRUE(input) << input.error();
    EXPECT_EQ((*input)->name(), "ears");
    EXPECT_THAT(allPorts(servers), testing::HasSubstr("Volvelle:ears"));
    for (std::uint8_t time = 0; time < 20; ++time) {
        const auto output = ports->openOutput("volvelle:ears");
        ASSERT_TRUE(output) << output.error();
        EXPECT_EQ((*output)->send(std::array<std::uint8_t, 3>{0x90, 60, time}).error(), "");
        EXPECT_EQ(receiver->next(100), (Bytes{0x90, 60, time})) << "the first message";
    }
    EXPECT_FALSE((*input)->isLost());
}

TEST(MIDIServersTest, AnInputWhoseServerIsKilledIsLostAndIsLeftInPeace)
{
    SoundServersFolder servers(SoundServersFolder::Kind::own);
    servers.start("jack");
    USE_SERVER(servers, "jack");
    const auto receiver = std::make_shared<KeepingReceiver>();
    auto input = makeMIDIPorts({false, true})->openVirtualInput("ears", receiver);
    ASSERT_TRUE(input) << input.error();
    EXPECT_FALSE((*input)->isLost());
    servers.signal("jack", SIGKILL);
    bool isLost = false;
    for (int tries = 0; tries < 100 && !isLost; ++tries) {
        isLost = (*input)->isLost();
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    EXPECT_TRUE(isLost);
    EXPECT_TRUE((*input)->isLost());
}

} // namespace volvelle::test
