#include "tests/services/musicsequence/SequenceTools.h"

#include <gtest/gtest.h>

namespace volvelle::test {

namespace {

const Bytes header = hex("\"MThd\" 00000006 0001 0001 0060");
const Bytes twoNotes = hex("00 903C64 60 3C00 00 3E64 60 3E00 00 FF2F00");
const Lines bothNotes{"0.0 note 0 60 100 0 1.0", "1.0 note 0 62 100 0 1.0"};

Bytes claiming(std::size_t length, const Bytes& body)
{
    Bytes chunk = chunkOf(body);
    for (std::size_t i = 0; i < 4; ++i) {
        chunk[4 + i] = static_cast<std::uint8_t>(length >> (24 - 8 * i));
    }
    return chunk;
}

Bytes oneTrack(std::string_view body)
{
    return joined({header, chunkOf(hex(body))});
}

// A file with a fault, the events of its first track, and all that is said about it.
struct Fault {
    std::string name;
    Bytes bytes;
    Lines events;
    Lines warnings;
};

void PrintTo(const Fault& fault, std::ostream* stream)
{
    *stream << fault.name;
}

class MalformedFiles : public testing::TestWithParam<Fault> {};

TEST_P(MalformedFiles, OpenWithWhatCouldBeReadAndAPlainWarning)
{
    const MusicSequence sequence = load(GetParam().bytes);
    ASSERT_GE(trackCountOf(sequence), 1U);
    EXPECT_EQ(eventsOf(trackOf(sequence, 0)), GetParam().events);
    EXPECT_EQ(warningsOf(sequence), GetParam().warnings);
    const Bytes mended = save(sequence);
    EXPECT_EQ(warningsOf(load(mended)), Lines{});
    EXPECT_EQ(save(load(mended)), mended);
}

const std::vector<Fault> faultsOfTheFile{
    {"junk_before_the_header",
     joined({hex("000102 \"junk\""), header, chunkOf(twoNotes)}),
     bothNotes,
     {"7 bytes that belong to no track were left out."}},
    {"no_header",
     chunkOf(hex("00 903C64 8360 3C00 00 FF2F00")),
     {"0.0 note 0 60 100 0 1.0"},
     {"The file header is missing; 480 ticks a beat were assumed."}},
    {"no_header_and_junk",
     joined({hex("00FF"), chunkOf(hex("00 903C64 8360 3C00 00 FF2F00"))}),
     {"0.0 note 0 60 100 0 1.0"},
     {"The file header is missing; 480 ticks a beat were assumed."}},
    {"header_length_zero",
     joined({hex("\"MThd\" 00000000 0001 0001 0060"), chunkOf(twoNotes)}),
     bothNotes,
     {"The file header has another length than it says."}},
    {"header_length_past_the_end",
     joined({hex("\"MThd\" FFFFFFFF 0001 0001 0060"), chunkOf(twoNotes)}),
     bothNotes,
     {"The file header has another length than it says."}},
    {"too_many_tracks_promised",
     joined({hex("\"MThd\" 00000006 0001 0010 0060"), chunkOf(twoNotes)}),
     bothNotes,
     {"The file promises 16 tracks and holds 1."}},
    {"too_few_tracks_promised",
     joined({hex("\"MThd\" 00000006 0001 0001 0060"), chunkOf(twoNotes), chunkOf(twoNotes)}),
     bothNotes,
     {"The file promises 1 track and holds 2."}},
    {"division_zero",
     joined({hex("\"MThd\" 00000006 0001 0001 0000"), chunkOf(hex("8360 C001 00 FF2F00"))}),
     {"1.0 message C0 01 00"},
     {"The file does not say how long a beat is; 480 ticks a beat were assumed."}},
    {"time_code_without_ticks",
     joined({hex("\"MThd\" 00000006 0001 0001 E700"), chunkOf(hex("8360 C001 00 FF2F00"))}),
     {"1.0 message C0 01 00"},
     {"The file's time code has no ticks; 480 ticks a beat were assumed."}},
    {"unknown_format",
     joined({hex("\"MThd\" 00000006 0007 0001 0060"), chunkOf(twoNotes)}),
     bothNotes,
     {"The file's format 7 is unknown; it was read as format 1."}},
    {"single_track_format_with_two",
     joined({hex("\"MThd\" 00000006 0000 0002 0060"), chunkOf(twoNotes), chunkOf(twoNotes)}),
     bothNotes,
     {"The file says that it has a single track; all were read."}},
    {"junk_between_tracks",
     joined({hex("\"MThd\" 00000006 0001 0002 0060"), chunkOf(twoNotes), hex("00000000 00000000 00"),
             chunkOf(twoNotes)}),
     bothNotes,
     {"9 bytes that belong to no track were left out."}},
    {"junk_behind_the_last_track",
     joined({header, chunkOf(twoNotes), hex("00")}),
     bothNotes,
     {"1 byte that belongs to no track was left out."}},
    {"foreign_chunk_past_the_end",
     joined({header, chunkOf(twoNotes), hex("\"LIST\" FFFFFFFF 00")}),
     bothNotes,
     {"9 bytes that belong to no track were left out."}},
};

const std::vector<Fault> faultsOfChunks{
    {"length_past_the_end",
     joined({header, claiming(0x7FFFFFFF, twoNotes)}),
     bothNotes,
     {"Track 1 has another length than the file says."}},
    {"length_too_long_over_the_next_track",
     joined({hex("\"MThd\" 00000006 0001 0002 0060"), claiming(twoNotes.size() + 10, twoNotes),
             chunkOf(twoNotes)}),
     bothNotes,
     {"Track 1 has another length than the file says."}},
    {"length_too_short",
     joined({header, claiming(6, twoNotes)}),
     bothNotes,
     {"Track 1 has another length than the file says."}},
    {"length_too_short_between_events",
     joined({header, claiming(7, twoNotes)}),
     bothNotes,
     {"Track 1 has another length than the file says."}},
    {"length_zero",
     joined({header, claiming(0, twoNotes)}),
     bothNotes,
     {"Track 1 has another length than the file says."}},
    {"cut_off_inside_an_event",
     joined({header, claiming(100, hex("00 903C64 60 3C00 00 3E"))}),
     {"0.0 note 0 60 100 0 1.0"},
     {"Track 1 ends early; 1 note was read."}},
    {"cut_off_inside_an_event_whose_chunk_says_so",
     oneTrack("00 903C64 60 3C00 00 3E"),
     {"0.0 note 0 60 100 0 1.0"},
     {"Track 1 ends early; 1 note was read."}},
    {"cut_off_behind_an_event",
     joined({header, claiming(100, hex("00 903C64 60 3C00"))}),
     {"0.0 note 0 60 100 0 1.0"},
     {"Track 1 ends early; 1 note was read."}},
    {"no_end_of_track",
     oneTrack("00 903C64 60 3C00"),
     {"0.0 note 0 60 100 0 1.0"},
     {"Track 1 has no end mark; it ends with its last event."}},
    {"no_end_of_track_before_another",
     joined({hex("\"MThd\" 00000006 0001 0002 0060"), chunkOf(hex("00 903C64 60 3C00")), chunkOf(twoNotes)}),
     {"0.0 note 0 60 100 0 1.0"},
     {"Track 1 has no end mark; it ends with its last event."}},
    {"events_behind_the_end_of_track",
     oneTrack("00 903C64 60 3C00 00 FF2F00 00 3E64 60 3E00 00 FF2F00"),
     {"0.0 note 0 60 100 0 1.0"},
     {"Track 1 goes on behind its end mark; what stands there was left out."}},
};

const std::vector<Fault> faultsOfEvents{
    {"note_without_an_end",
     oneTrack("00 903C64 60 FF2F00"),
     {"0.0 note 0 60 100 0 1.0"},
     {"Track 1: 1 note without an end was ended with the track."}},
    {"note_offs_without_a_note",
     oneTrack("00 803C40 00 C001 00 903C00 00 FF2F00"),
     {"0.0 message C0 01 00"},
     {"Track 1: 2 note-offs without a note were left out."}},
    {"data_byte_that_is_a_status",
     oneTrack("00 903C 903E64 60 3E00 00 FF2F00"),
     {"0.0 note 0 62 100 0 1.0"},
     {"Track 1: 1 damaged event was left out."}},
    {"data_bytes_without_a_status",
     oneTrack("00 3C64 C001 00 FF2F00"),
     {"0.0 message C0 01 00"},
     {"Track 1: 1 damaged event was left out."}},
    {"stray_system_messages",
     oneTrack("00 F10A 00 F20A0B 00 F30A 00 F6 00 F8 00 FE 00 C001 00 FF2F00"),
     {"0.0 message C0 01 00"},
     {"Track 1: 6 damaged events were left out."}},
    {"delta_time_of_five_bytes",
     oneTrack("FFFFFFFF7F C001 00 FF2F00"),
     {"2796202.65625 message C0 01 00"},
     {"Track 1: 1 number was too large and was cut."}},
    {"delta_time_that_never_ends",
     oneTrack("00 C001 FFFFFFFFFFFFFFFFFFFFFFFF"),
     {"0.0 message C0 01 00"},
     {"Track 1 ends early; 0 notes were read."}},
    {"meta_longer_than_the_track",
     oneTrack("00 903C64 60 3C00 00 FF0150 \"AB\" 00 FF2F00"),
     {"0.0 note 0 60 100 0 1.0"},
     {"Track 1 ends early; 1 note was read."}},
    {"exclusive_longer_than_the_track",
     oneTrack("00 F07F 01 02 F7 00 C001 00 FF2F00"),
     {"0.0 raw F0 01 02 F7", "0.0 message C0 01 00"},
     {"Track 1: 1 number was too large and was cut."}},
    {"packet_longer_than_the_track",
     oneTrack("00 C001 00 F77F 01 02 00 FF2F00"),
     {"0.0 message C0 01 00"},
     {"Track 1 ends early; 0 notes were read."}},
    {"tempo_of_zero",
     oneTrack("00 FF5103 000000 00 C001 00 FF2F00"),
     {"0.0 message C0 01 00"},
     {"Track 1: 1 tempo without a value was left out."}},
    {"tempo_of_two_bytes",
     oneTrack("00 FF5102 07A1 00 C001 00 FF2F00"),
     {"0.0 message C0 01 00"},
     {"Track 1: 1 tempo without a value was left out."}},
    {"end_of_track_with_bytes", oneTrack("00 C001 60 FF2F02 0102"), {"0.0 message C0 01 00"}, {}},
};

std::string nameOf(const testing::TestParamInfo<Fault>& information)
{
    return information.param.name;
}

INSTANTIATE_TEST_SUITE_P(FaultsOfTheFile, MalformedFiles, testing::ValuesIn(faultsOfTheFile), nameOf);
INSTANTIATE_TEST_SUITE_P(FaultsOfChunks, MalformedFiles, testing::ValuesIn(faultsOfChunks), nameOf);
INSTANTIATE_TEST_SUITE_P(FaultsOfEvents, MalformedFiles, testing::ValuesIn(faultsOfEvents), nameOf);

TEST(MalformedFilesTest, ATempoOfFourBytesCountsByItsFirstThree)
{
    const MusicSequence sequence = load(oneTrack("00 FF5104 07A120FF 00 FF2F00"));
    EXPECT_EQ(eventsOf(tempoTrackOf(sequence)), Lines{"0.0 tempo 120.0"});
}

TEST(MalformedFilesTest, WithoutAHeaderOrATrackWithAnEventItIsNoStandardMIDIFile)
{
    const std::vector<Bytes> files{{},
                                   hex("00"),
                                   hex("\"MTh\""),
                                   hex("\"MTrk\""),
                                   hex("\"MTrk\" 00000004 00FF2F00"),
                                   hex("\"RIFF\" 04000000 \"WAVE\""),
                                   hex("\"This is a text and no music at all.\""),
                                   Bytes(100'000, 0xFF)};
    for (const Bytes& file : files) {
        EXPECT_EQ(tryLoad(file), fileFormatErr);
    }
}

TEST(MalformedFilesTest, AHeaderAloneOpensWithoutTracks)
{
    const MusicSequence whole = load(header);
    EXPECT_EQ(trackCountOf(whole), 0U);
    EXPECT_EQ(warningsOf(whole), Lines{"The file promises 1 track and holds 0."});
    const MusicSequence cut = load(hex("\"MThd\" 0000"));
    EXPECT_EQ(trackCountOf(cut), 0U);
    EXPECT_EQ(warningsOf(cut), Lines{"The file header is not whole; 480 ticks a beat were assumed."});
}

TEST(MalformedFilesTest, AFileOfTracksWithoutAHeaderHasATempoTrackToo)
{
    const MusicSequence sequence =
        load(joined({chunkOf(hex("00 FF5103 07A120 00 FF2F00")), chunkOf(twoNotes)}));
    EXPECT_EQ(trackCountOf(sequence), 1U);
    EXPECT_EQ(eventsOf(tempoTrackOf(sequence)), Lines{"0.0 tempo 120.0"});
}

TEST(MalformedFilesTest, TheWarningsOfAJunkFileAreCapped)
{
    Bytes bytes = hex("\"MThd\" 00000006 0001 0064 0060");
    for (int i = 0; i < 100; ++i) {
        bytes = joined({bytes, chunkOf(hex("00 903C64"))});
    }
    const Lines warnings = warningsOf(load(bytes));
    ASSERT_EQ(warnings.size(), 21U);
    EXPECT_EQ(warnings.front(), "Track 1 has no end mark; it ends with its last event.");
    EXPECT_EQ(warnings.back(), "180 more places were mended.");
}

TEST(MalformedFilesTest, HugeClaimsCostNothing)
{
    EXPECT_EQ(
        warningsOf(
            load(joined({hex("\"MThd\" 00000006 0001 FFFF 0060"), claiming(0xFFFFFFFF, hex("00 FFFF"))}))),
        (Lines{"Track 1 ends early; 0 notes were read.", "The file promises 65535 tracks and holds 1."}));
}

// At one tick a beat each gap is 268,435,455 beats.
TEST(MalformedFilesTest, WhatStandsFurtherAwayThanAnyMusicIsLeftOut)
{
    Bytes body = hex("00 903C64 60 3C00 00 3E64");
    for (int i = 0; i < 400; ++i) {
        body = joined({body, hex("FFFFFF7F B00700")});
    }
    body = joined({body, hex("00 3E00 00 FF2F00")});
    const MusicSequence sequence = load(joined({hex("\"MThd\" 00000006 0001 0001 0001"), chunkOf(body)}));
    const Lines events = eventsOf(trackOf(sequence, 0));
    EXPECT_EQ(events.size(), 2U + 372U);
    EXPECT_EQ(warningsOf(sequence).back(), "29 events beyond 100,000,000,000 beats were left out.");
}

TEST(MalformedFilesTest, ManyEmptyTracksAreReadInOneGo)
{
    Bytes bytes = header;
    const Bytes chunk = hex("\"MTrk\" FFFFFFFF");
    for (int i = 0; i < 50'000; ++i) {
        bytes.insert(bytes.end(), chunk.begin(), chunk.end());
    }
    EXPECT_EQ(trackCountOf(load(bytes)), 49'999U);
}

} // namespace

} // namespace volvelle::test
