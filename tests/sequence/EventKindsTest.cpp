#include "sequence/EventKinds.h"

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <utility>

// The table of kinds: what its rows must have so that writing, reading and flattening find the same kind.
namespace volvelle::test {
namespace {

template <class Body>
void forEachKind(Body body)
{
    EventKinds::withFirst(
        [&body](const auto& kind) {
            body(kind);
            return false;
        },
        [](const auto& /*kind*/) {});
}

TEST(EventKindsTest, ANewNodeCarriesTheCodeOfItsRow)
{
    int count = 0;
    forEachKind([&count]<class Node>(const EventKind<Node>& kind) {
        const Node node;
        if constexpr (EventKind<Node>::isMeta) {
            EXPECT_EQ(node.type, kind.code) << node.className();
            EXPECT_EQ(node.statusMask, 0) << node.className();
        } else if (kind.message != nullptr) {
            EXPECT_EQ(node.statusMask, kind.code) << node.className();
        }
        ++count;
    });
    EXPECT_EQ(count, 39);
    EXPECT_EQ(MetaUnknownEvent().type, EventKinds::unknownMeta.code);
}

TEST(EventKindsTest, NoTwoRowsAreFoundByTheSameRecordAndCode)
{
    std::set<std::pair<MusicEventType, int>> read;
    std::set<std::pair<bool, int>> written;
    forEachKind([&]<class Node>(const EventKind<Node>& kind) {
        EXPECT_TRUE(read.emplace(kind.record, kind.code).second) << Node().className();
        if (kind.message != nullptr) {
            EXPECT_TRUE(written.emplace(kind.isMeta, kind.code).second) << Node().className();
        }
    });
}

TEST(EventKindsTest, WhatIsWrittenHasATextForItsFailureThatEndsWithTheChannelWhereThereIsOne)
{
    forEachKind([]<class Node>(const EventKind<Node>& kind) {
        EXPECT_EQ(kind.failure.empty(), kind.message == nullptr) << Node().className();
        EXPECT_EQ(kind.failure.ends_with(" Kanal"), kind.hasChannel()) << Node().className();
    });
}

TEST(EventKindsTest, EveryRowTellsTheListener)
{
    forEachKind([]<class Node>(const EventKind<Node>& kind) {
        EXPECT_TRUE(kind.found != nullptr) << Node().className();
    });
}

TEST(EventKindsTest, DataBytesAreTheFieldsOfTheMessageInTheirOrder)
{
    MidiControllerEvent controller;
    EXPECT_EQ(dataBytes(controller), (std::array{&controller.number, &controller.value}));
    MidiPitchBendEvent pitch;
    EXPECT_EQ(dataBytes(pitch), (std::array{&pitch.bend.msb, &pitch.bend.lsb}));
    SystemSongPositionPointerEvent pointer;
    EXPECT_EQ(dataBytes(pointer), (std::array{&pointer.msb, &pointer.lsb}));
    MidiProgramChangeEvent program;
    EXPECT_EQ(dataBytes(program), (std::array{&program.value}));
    const SystemStartEvent start;
    EXPECT_TRUE(dataBytes(start).empty());
}

} // namespace
} // namespace volvelle::test
