#include "tests/services/musicsequence/SequenceTools.h"
#include "tests/support/AllocationCount.h"

#include <gtest/gtest.h>

namespace volvelle::test {

namespace {

constexpr std::size_t mebibyte = 1U << 20U;

// What a load may allocate in all, whether it is freed meanwhile or not.
std::size_t boundOf(const Bytes& bytes)
{
    return 64 * mebibyte + 8 * bytes.size();
}

std::size_t allocatedBy(const Bytes& bytes, MusicSequenceLoadFlags flags)
{
    const MusicSequence sequence = newSequence();
    const AllocationCount allocations;
    EXPECT_EQ(MusicSequenceFileLoadData(sequence, bytes, kMusicSequenceFile_MIDIType, flags), noErr);
    return allocations.bytes;
}

void put32(Bytes& bytes, std::size_t value)
{
    for (unsigned shift = 32; shift > 0; shift -= 8) {
        bytes.push_back(static_cast<std::uint8_t>(value >> (shift - 8)));
    }
}

void putTrackHead(Bytes& bytes, std::size_t claim)
{
    bytes.insert(bytes.end(), {'M', 'T', 'r', 'k'});
    put32(bytes, claim);
}

Bytes header()
{
    return hex("\"MThd\" 00000006 0001 0001 01E0");
}

// A file of `size` bytes after its header: tracks of the body that each claim all that is left.
Bytes nestedTracks(const Bytes& body, std::size_t size)
{
    Bytes bytes = header();
    const std::size_t end = bytes.size() + size;
    while (bytes.size() + 8 + body.size() <= end) {
        putTrackHead(bytes, end - bytes.size() - 8);
        bytes.insert(bytes.end(), body.begin(), body.end());
    }
    bytes.resize(end);
    return bytes;
}

// A track's bytes that repeat some, after the first ones, and its end.
Bytes bodyOf(const Bytes& first, const Bytes& repeated, std::size_t size)
{
    Bytes body = first;
    while (body.size() < size) {
        body.insert(body.end(), repeated.begin(), repeated.end());
    }
    return joined({body, hex("00 FF2F00")});
}

// A file of one such track.
Bytes repeatedIn(const Bytes& first, const Bytes& repeated, std::size_t size)
{
    return joined({header(), chunkOf(bodyOf(first, repeated, size))});
}

Bytes bends(std::size_t size)
{
    return bodyOf(hex("00 E00000"), hex("00 0000"), size);
}

// A file of tracks of the same bytes.
Bytes tracksOf(const Bytes& body, std::size_t size)
{
    Bytes bytes = header();
    while (bytes.size() < size) {
        putTrackHead(bytes, body.size());
        bytes.insert(bytes.end(), body.begin(), body.end());
    }
    return bytes;
}

struct GreedyFile {
    std::string name;
    Bytes bytes;
};

std::vector<GreedyFile> greedyFiles()
{
    constexpr std::size_t size = 5 * mebibyte;
    const Bytes end = hex("00 FF2F00");
    const Bytes programs = bodyOf(hex("00 C000"), hex("00 01"), 100'000);
    return {{"nested tracks", nestedTracks(end, 960'000)},
            {"more nested tracks", nestedTracks(end, 3'600'000)},
            {"nested tracks of programs", nestedTracks(programs, 2 * size)},
            {"tracks of programs", tracksOf(programs, 2 * size)},
            {"bends and tracks of a note", joined({header(), chunkOf(bends(2 * size)),
                                                   tracksOf(hex("00 903C40 00 3C00 00 FF2F00"), size)})},
            {"tracks without a byte", tracksOf({}, size)},
            {"tracks of nothing but an end", tracksOf(end, size)},
            {"tracks of a note", tracksOf(hex("00 903C40 00 3C00 00 FF2F00"), size)},
            {"notes", repeatedIn(hex("00 9000 40 00 0000"), hex("00 3C40 00 3C00"), size)},
            {"notes without an end", repeatedIn(hex("00 903C40"), hex("00 3C40"), size)},
            {"programs", repeatedIn(hex("00 C000"), hex("00 01"), size)},
            {"controllers", repeatedIn(hex("00 B00700"), hex("00 0701"), size)},
            {"metas", repeatedIn({}, hex("00 FF0100"), size)},
            {"exclusives", repeatedIn({}, hex("00 F005 7E7F0901F7"), size)},
            {"packets", repeatedIn({}, hex("00 F700"), size)},
            {"tempos", repeatedIn({}, hex("00 FF5103 07A120"), size)},
            {"one long exclusive", repeatedIn({}, joined({hex("00 F0 C08000"), Bytes(mebibyte)}), size)},
            {"bytes of no meaning", repeatedIn({}, hex("00 01"), size)}};
}

TEST(LoadMemory, AllThatALoadAllocatesIs64MebibytesAndEightTimesTheFileAtMost)
{
    for (const GreedyFile& file : greedyFiles()) {
        for (const MusicSequenceLoadFlags flags :
             {kMusicSequenceLoadSMF_PreserveTracks, kMusicSequenceLoadSMF_ChannelsToTracks}) {
            EXPECT_LE(allocatedBy(file.bytes, flags), boundOf(file.bytes))
                << file.name << ", flags " << flags;
        }
    }
}

TEST(LoadMemory, AFileThatAsksForMoreEndsEarly)
{
    const Bytes bytes = repeatedIn(hex("00 C000"), hex("00 01"), 12 * mebibyte);
    const MusicSequence sequence = load(bytes);
    EXPECT_EQ(warningsOf(sequence), Lines{"Track 1 ends early; 0 notes were read."});
    EXPECT_EQ(trackCountOf(sequence), 1U);
}

TEST(LoadMemory, TracksBehindOneThatAsksForMoreAreReadWithWhatTheirBytesAskFor)
{
    const Bytes greedy = bends(9 * mebibyte);
    const Bytes note = hex("00 903C40 01 3C00 00 FF2F00");
    const MusicSequence sequence = load(fileOf(1, 1, {greedy, note, greedy, note, note}));
    EXPECT_EQ(warningsOf(sequence),
              (Lines{"Track 1 ends early; 0 notes were read.", "Track 3 ends early; 0 notes were read."}));
    ASSERT_EQ(trackCountOf(sequence), 5U);
    for (const std::uint32_t index : {1U, 3U, 4U}) {
        EXPECT_EQ(eventsOf(trackOf(sequence, index)), Lines{"0.0 note 0 60 64 0 1.0"}) << index;
    }
}

TEST(LoadMemory, AFileOfMillionsOfNotesThatDoNotEndMayEndEarly)
{
    const MusicSequence sequence = load(repeatedIn(hex("00 903C40"), hex("00 3C40"), 10 * mebibyte));
    const Lines warnings = warningsOf(sequence);
    ASSERT_EQ(warnings.size(), 2U);
    EXPECT_TRUE(warnings.front().starts_with("Track 1 ends early; ")) << warnings.front();
    EXPECT_EQ(trackCountOf(sequence), 1U);
}

// Of six bytes at least, its beginning and its end.
TEST(LoadMemory, AFileOfNotesThatEndIsReadToItsEndHoweverLongItIs)
{
    const Bytes bytes = repeatedIn(hex("00 903C40 00 3C00"), hex("00 3C40 01 3C00"), 10 * mebibyte);
    const MusicSequence sequence = load(bytes);
    EXPECT_EQ(warningsOf(sequence), Lines{});
    EXPECT_EQ(lengthOf(trackOf(sequence, 0)), 1'747'626 / 480.0);
}

// The tempos of a file in frames a second are left out; what remains is in order, however many there were.
TEST(LoadMemory, TenThousandEventsAreReadInOrder)
{
    Bytes body;
    Lines expected;
    for (int i = 0; i < 10'000; ++i) {
        const auto number = static_cast<std::uint8_t>(i % 128);
        const Bytes event = i % 3 == 0 ? hex("00 FF5103 07A120") : Bytes{0, 0xC0, number};
        body.insert(body.end(), event.begin(), event.end());
        if (i % 3 != 0) {
            expected.push_back("0.0 message C0" + hexOf({number}) + " 00");
        }
    }
    const Bytes end = hex("00 FF2F00");
    body.insert(body.end(), end.begin(), end.end());
    const MusicSequence sequence = load(fileOf(1, 0xE728, {body, end}));
    EXPECT_EQ(eventsOf(trackOf(sequence, 0)), expected);
    EXPECT_EQ(eventsOf(tempoTrackOf(sequence)), Lines{});
}

// A small file with every kind of event, and with damage that is told.
TEST(LoadMemory, WhateverAllocationFailsTheLoadTellsItAndChangesNothing)
{
    const Bytes bytes = fileOf(1, 480,
                               {hex("00 FF5103 07A120 00 FF2F00"),
                                hex("00 FF0304 \"Bass\" 00 C005 00 B00764 00 903C64 60 3C00 00 913E64 10 F0"
                                    "05 7E7F0901F7 10 3E00 00 80"),
                                hex("00 FF5103 07A120 00 903C64")});
    for (const MusicSequenceLoadFlags flags : {0U, 1U}) {
        OSStatus status = fileIOErr;
        std::size_t refused = 0;
        for (; status != noErr && refused < 1000; ++refused) {
            const MusicSequence sequence = newSequence();
            addNote(newTrack(sequence), 3.0, 60);
            addTempo(sequence, 1.0, 90.0);
            {
                const AllocationCount allocations(refused);
                status = MusicSequenceFileLoadData(sequence, bytes, kMusicSequenceFile_MIDIType, flags);
            }
            if (status != noErr) {
                EXPECT_EQ(status, fileIOErr);
                EXPECT_EQ(trackCountOf(sequence), 1U);
                EXPECT_EQ(eventsOf(trackOf(sequence, 0)), Lines{"3.0 note 0 60 100 0 1.0"});
                EXPECT_EQ(eventsOf(tempoTrackOf(sequence)), Lines{"1.0 tempo 90.0"});
                EXPECT_EQ(warningsOf(sequence), Lines{});
            }
        }
        EXPECT_GT(refused, 8U);
        EXPECT_EQ(status, noErr);
    }
}

} // namespace

} // namespace volvelle::test
