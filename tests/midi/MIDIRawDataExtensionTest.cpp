#include "midi/MIDIRawDataExtension.h"

#include <gtest/gtest.h>

#include <cstring>
#include <numeric>

namespace volvelle {
namespace {

using Bytes = std::vector<std::uint8_t>;

Bytes counting(std::size_t count)
{
    Bytes bytes(count);
    std::iota(bytes.begin(), bytes.end(), std::uint8_t{1});
    return bytes;
}

template <class Owner>
class LengthOwner : public testing::Test {};

using LengthOwners = testing::Types<MyMIDIRawData, MyMusicEventUserData>;
TYPED_TEST_SUITE(LengthOwner, LengthOwners);

TYPED_TEST(LengthOwner, IsEmptyWithoutBytes)
{
    const TypeParam none;
    const TypeParam empty((Bytes()));
    for (const TypeParam* owner : {&none, &empty}) {
        EXPECT_EQ(owner->ptr->length, 0U);
        EXPECT_EQ(owner->ext.ptr, &owner->ext.data);
        EXPECT_EQ(owner->dataPtr, owner->ext.data.bytes.data());
        EXPECT_EQ(owner->dataPtr, owner->ptr->data);
        EXPECT_EQ(owner->ext.data.bytes, MIDIRawDataExtension().bytes);
    }
}

TYPED_TEST(LengthOwner, HoldsTheBytesBehindItsHead)
{
    const TypeParam owner(Bytes{0xF0, 1, 2, 0xF7});
    EXPECT_EQ(owner.ptr->length, 4U);
    EXPECT_EQ(Bytes(owner.dataPtr, owner.dataPtr + 4), (Bytes{0xF0, 1, 2, 0xF7}));
    EXPECT_EQ(owner.dataPtr[4], 0);
}

TYPED_TEST(LengthOwner, CutsAt1024BytesWithoutAMessage)
{
    const TypeParam whole(counting(1024));
    EXPECT_EQ(whole.ptr->length, 1024U);
    const TypeParam cut(counting(1025));
    EXPECT_EQ(cut.ptr->length, 1024U);
    EXPECT_EQ(Bytes(cut.dataPtr, cut.dataPtr + 1024), counting(1024));
}

TEST(MyMIDIMetaEvent, HoldsTheBytesAndTakesItsTypeFromTheCaller)
{
    const MyMIDIMetaEvent owner(Bytes{7, 161, 32});
    EXPECT_EQ(owner.ptr->metaEventType, 0);
    owner.ptr->metaEventType = 0x51;
    EXPECT_EQ(owner.ext.metaEventType, 0x51);
    EXPECT_EQ(owner.ptr->dataLength, 3U);
    EXPECT_EQ(owner.ptr->data, owner.dataPtr);
    EXPECT_EQ(Bytes(owner.dataPtr, owner.dataPtr + 3), (Bytes{7, 161, 32}));
    EXPECT_EQ(owner.ext.ptr, &owner.ext.data);
}

TEST(MyMIDIMetaEvent, CutsAt1024Bytes)
{
    const MyMIDIMetaEvent none;
    EXPECT_EQ(none.ptr->dataLength, 0U);
    const MyMIDIMetaEvent cut(counting(1025));
    EXPECT_EQ(cut.ptr->dataLength, 1024U);
    EXPECT_EQ(Bytes(cut.dataPtr, cut.dataPtr + 1024), counting(1024));
}

TEST(MyMIDIPacket, TakesNoMoreThanItsRoom)
{
    const MyMIDIPacket packet(Bytes{0x90, 60, 100});
    EXPECT_EQ(packet.ptr->timeStamp, 0U);
    EXPECT_EQ(packet.ptr->length, 3);
    EXPECT_EQ(packet.ext.data, (std::array<std::uint8_t, 4>{0x90, 60, 100, 0}));
    EXPECT_EQ(packet.dataPtr, packet.ptr->data);
    const MyMIDIPacket cut(counting(9));
    EXPECT_EQ(cut.ptr->length, 4);
    EXPECT_EQ(cut.ext.data, (std::array<std::uint8_t, 4>{1, 2, 3, 4}));
}

TEST(MIDIPacketEx, IsMadeFromItsParts)
{
    const MIDIPacketEx packet(5, 2, {1, 2, 3, 4});
    EXPECT_EQ(packet.timeStamp, 5U);
    EXPECT_EQ(packet.length, 2);
    EXPECT_EQ(packet.data, (std::array<std::uint8_t, 4>{1, 2, 3, 4}));
    EXPECT_EQ(MIDIPacketEx().timeStamp, 0U);
}

TEST(MyMetaEvent, IsOneBlockWithTheHeadOfARecord)
{
    const MyMetaEvent event(0x7F, {0, 0, 0});
    EXPECT_EQ(event.size, 15);
    EXPECT_EQ(Bytes(event.mem, event.mem + 4), (Bytes{0x7F, 0, 0, 0}));
    std::uint32_t count = 0;
    std::memcpy(&count, event.mem + 4, 4);
    EXPECT_EQ(count, 3U);
    const MyMetaEvent text(0x01, {'a', 'b'});
    EXPECT_EQ(Bytes(text.mem + 8, text.mem + text.size), (Bytes{'a', 'b', 0, 0, 0, 0}));
}

TEST(MyMetaEvent, GivesItsBlockAsARecord)
{
    const MyMetaEvent event(0x7F, Bytes(2000, 9));
    int calls = 0;
    event.withMIDIMetaEventPtr([&](const MIDIMetaEvent* record) {
        ++calls;
        EXPECT_EQ(record->metaEventType, 0x7F);
        EXPECT_EQ(record->dataLength, 2000U);
        EXPECT_EQ(record->data[0], 9);
    });
    EXPECT_EQ(calls, 1);
    test_MyMetaEvent();
}

TEST(MIDIRawDataExtension, WalksAnySequenceOfBytes)
{
    Bytes seen;
    const auto keep = [&seen](std::uint8_t byte) { seen.push_back(byte); };
    iterate(std::array<std::uint8_t, 2>{1, 2}, keep);
    iterate(Bytes{3}, keep);
    EXPECT_EQ(seen, (Bytes{1, 2, 3}));
}

} // namespace
} // namespace volvelle
