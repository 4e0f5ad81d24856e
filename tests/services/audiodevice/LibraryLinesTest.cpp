#include "services/audiodevice/LibraryLines.h"
#include "services/audiodevice/RtAudioSink.h"

#include <gtest/gtest.h>
#include <iostream>
#include <sstream>
#include <thread>

namespace volvelle::test {

namespace {

// As RtAudio writes where a JACK server dies.
void writeAsLibrary(std::ostream& stream)
{
    stream << "\nRtApiJack: the Jack server is shutting down this client ... stream stopped and closed!!\n"
           << std::endl;
}

} // namespace

TEST(LibraryLines, LinesOfTheLibraryAreDroppedAndAllElsePasses)
{
    std::ostringstream stream;
    {
        const LibraryLines lines(stream);
        stream << "before\n";
        writeAsLibrary(stream);
        stream << '\n' << "behind" << '\n';
        writeAsLibrary(stream);
        stream << "\n\nand more " << 7 << std::endl;
        stream << "MidiOutJack::initialize: JACK server not running?" << "\n\n";
        stream << "\nMidiInAlsa::alsaMidiHandler: event parsing error or not a MIDI event!\n\n";
        stream << "MidiInAlsa::alsaMidiHandler: MIDI input buffer overrun!" << "\n\n";
        stream << "RtApiPulse::probeDeviceOpen: error\n" << 'x' << '\n';
    }
    writeAsLibrary(stream);
    EXPECT_EQ(stream.str(),
              "before\n\nbehind\n\n\nand more 7\nx\n"
              "\nRtApiJack: the Jack server is shutting down this client ... stream stopped and "
              "closed!!\n\n");
}

TEST(LibraryLines, WhatAnotherThreadWritesMeanwhilePasses)
{
    std::ostringstream stream;
    const LibraryLines lines(stream);
    stream << "\nRtApiJack: half a line";
    std::thread other([&stream] { stream << '\n' << "other\n"; });
    other.join();
    stream << '\n';
    EXPECT_EQ(stream.str(), "\nother\n");
}

TEST(LibraryLines, StandardErrorIsHeardBehindThePreparationOfTheSink)
{
    RtAudioSink::prepare();
    RtAudioSink::prepare();
    testing::internal::CaptureStderr();
    writeAsLibrary(std::cerr);
    std::cerr << "heard" << std::endl;
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "heard\n");
}

} // namespace volvelle::test
