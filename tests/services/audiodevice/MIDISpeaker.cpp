// Opens a MIDI port "keys" through JACK, writes "ready", then sends each line of standard input, bytes in
// hexadecimal, as one message, and ends where the input does. A line "pause N" waits for N milliseconds.
#include <RtMidi.h>
#include <chrono>
#include <cstdio>
#include <iostream>
#include <sstream>
#include <string>
#include <thread>

namespace {

void send(RtMidiOut& output, const std::string& line)
{
    std::istringstream words(line);
    words >> std::hex;
    std::vector<unsigned char> bytes;
    for (unsigned int byte = 0; words >> byte;) {
        bytes.push_back(static_cast<unsigned char>(byte));
    }
    output.sendMessage(&bytes);
}

} // namespace

int main()
{
    try {
        RtMidiOut output(RtMidi::UNIX_JACK, "Speaker");
        output.openVirtualPort("keys");
        std::printf("ready\n");
        std::fflush(stdout);
        for (std::string line; std::getline(std::cin, line);) {
            if (line.starts_with("pause ")) {
                std::this_thread::sleep_for(std::chrono::milliseconds(std::stoi(line.substr(6))));
            } else {
                send(output, line);
            }
        }
        return 0;
    } catch (const RtMidiError&) {
        return 1;
    }
}
