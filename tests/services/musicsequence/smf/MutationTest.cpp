#include "tests/services/musicsequence/SequenceTools.h"

#include <array>
#include <gtest/gtest.h>
#include <random>

namespace volvelle::test {

namespace {

std::vector<Bytes> seeds()
{
    const Bytes conductor = hex("00 FF5103 07A120 00 FF5804 04021808 8360 FF5103 0F4240 00 FF2F00");
    const Bytes notes =
        hex("00 FF0304 \"Bass\" 00 C005 00 B00764 00 903C64 60 3C00 00 3E64 10 3E32 60 803E40 00 3E41"
            "8360 E00040 00 903C01 00 3C00 60 FF2F00");
    const Bytes exclusives = hex("00 F0057E7F0901F7 00 F00343 0102 10 F7030405F7 00 F701F8 00 FF7F03000041"
                                 "FFFFFF7F FF7F00 10 D001 00 A03C01 00 FF2F00");
    const Bytes file = fileOf(1, 480, {conductor, notes, exclusives});
    return {file, fileOf(0, 96, {notes}), fileOf(2, 0xE728, {notes, exclusives}),
            joined({hex("\"RIFF\" 00000000 \"RMIDdata\" 00000000"), file}), chunkOf(notes)};
}

void mutate(Bytes& bytes, std::mt19937& random)
{
    constexpr std::array<std::uint8_t, 10> telling{0x00, 0x7F, 0x80, 0x90, 0xC0,
                                                   0xF0, 0xF7, 0xFF, 0x2F, 0x51};
    const std::size_t place = random() % bytes.size();
    const auto at = bytes.begin() + static_cast<std::ptrdiff_t>(place);
    switch (random() % 6) {
    case 0:
        bytes[place] = static_cast<std::uint8_t>(random());
        break;
    case 1:
        bytes[place] = telling.at(random() % telling.size());
        break;
    case 2:
        bytes.insert(at, static_cast<std::uint8_t>(random()));
        break;
    case 3:
        bytes.erase(at);
        break;
    case 4:
        bytes.resize(place);
        break;
    default:
        bytes[place] ^= static_cast<std::uint8_t>(1U << (random() % 8));
    }
}

void check(const Bytes& bytes)
{
    for (const MusicSequenceLoadFlags flags : {0U, 1U}) {
        const MusicSequence sequence = newSequence();
        const OSStatus status =
            MusicSequenceFileLoadData(sequence, bytes, kMusicSequenceFile_MIDIType, flags);
        ASSERT_TRUE(status == noErr || status == fileFormatErr);
        Bytes mended;
        ASSERT_EQ(MusicSequenceFileCreateData(sequence, kMusicSequenceFile_MIDIType, 1, 480, mended), noErr);
        const MusicSequence again = load(mended, flags);
        ASSERT_EQ(warningsOf(again), Lines{}) << hexOf(bytes);
        const Bytes settled = save(again);
        ASSERT_EQ(save(load(settled, flags)), settled) << hexOf(bytes);
    }
}

TEST(Mutations, NoMutationOfAFileCrashesTheReader)
{
    std::mt19937 random(19'830'801);
    for (const Bytes& seed : seeds()) {
        for (int round = 0; round < 2000; ++round) {
            Bytes bytes = seed;
            for (std::size_t i = random() % 4; i < 5 && !bytes.empty(); ++i) {
                mutate(bytes, random);
            }
            check(bytes);
            ASSERT_FALSE(HasFatalFailure());
        }
    }
}

TEST(Mutations, NoTruncationOfAFileCrashesTheReader)
{
    for (const Bytes& seed : seeds()) {
        for (std::size_t size = 0; size <= seed.size(); ++size) {
            check({seed.begin(), seed.begin() + static_cast<std::ptrdiff_t>(size)});
            ASSERT_FALSE(HasFatalFailure());
        }
    }
}

TEST(Mutations, NoRunOfRandomBytesCrashesTheReader)
{
    std::mt19937 random(7);
    for (int round = 0; round < 500; ++round) {
        Bytes body(random() % 400);
        for (std::uint8_t& byte : body) {
            byte = static_cast<std::uint8_t>(random());
        }
        check(joined({hex("\"MThd\" 00000006 0001 0001 01E0"), chunkOf(body)}));
        check(body);
        ASSERT_FALSE(HasFatalFailure());
    }
}

} // namespace

} // namespace volvelle::test
