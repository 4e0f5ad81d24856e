#include "MIDISequences/RenderEventPool.h"

#include "MIDISequences/RenderEventBlocks.h"
#include "base/Checked.h"

#include <algorithm>
#include <memory>
#include <new>

namespace volvelle {

namespace {

constexpr std::uint8_t inRecord = sizeof(AUMIDIEvent::data);
constexpr std::size_t headSize = offsetof(AUMIDIEvent, data);

enum class Size : std::uint8_t { small, medium, text, large, unpooled };

// What stands before each record.
struct Origin {
    void* block = nullptr; // what it was taken from
    Size size = Size::unpooled;
};

constexpr std::size_t blockSize(std::size_t length)
{
    return sizeof(Origin) + std::max(sizeof(AURenderEvent), headSize + length);
}

using SmallBlocks = RenderEventBlocks<blockSize(inRecord)>;
using MediumBlocks = RenderEventBlocks<blockSize(mediumRenderEvent)>;
using TextBlocks = RenderEventBlocks<blockSize(textRenderEvent)>;
using LargeBlocks = RenderEventBlocks<blockSize(largeRenderEvent)>;

constinit SmallBlocks smallBlocks;
constinit MediumBlocks mediumBlocks;
constinit TextBlocks textBlocks;
constinit LargeBlocks largeBlocks;

Origin& originOf(AURenderEvent* event)
{
    return *std::launder(reinterpret_cast<Origin*>(reinterpret_cast<std::byte*>(event) - sizeof(Origin)));
}

AURenderEvent* recordAt(std::byte* room, const Origin& origin)
{
    new (room) Origin(origin);
    return new (room + sizeof(Origin)) AURenderEvent;
}

AURenderEvent* unpooledRecord(std::size_t length)
{
    auto* const room = new std::byte[blockSize(length)];
    return recordAt(room, {room, Size::unpooled});
}

template <class Blocks>
AURenderEvent* pooledRecord(Blocks& blocks, Size size, std::size_t length)
{
    auto* const block = blocks.take();
    return block == nullptr ? unpooledRecord(length) : recordAt(block->room.data(), {block, size});
}

AURenderEvent* recordFor(std::size_t length)
{
    if (length <= inRecord) {
        return pooledRecord(smallBlocks, Size::small, length);
    }
    if (length <= mediumRenderEvent) {
        return pooledRecord(mediumBlocks, Size::medium, length);
    }
    if (length <= textRenderEvent) {
        return pooledRecord(textBlocks, Size::text, length);
    }
    if (length <= largeRenderEvent) {
        return pooledRecord(largeBlocks, Size::large, length);
    }
    return unpooledRecord(length);
}

// Blocks of one kind on their way back.
template <class Blocks>
struct Returned {
    typename Blocks::Block* first = nullptr;
    typename Blocks::Block* last = nullptr;

    void add(void* given)
    {
        auto* const block = static_cast<typename Blocks::Block*>(given);
        if (first == nullptr) {
            last = block;
        } else {
            block->next.store(first->number, std::memory_order_relaxed);
        }
        first = block;
    }

    void give(Blocks& blocks)
    {
        if (first != nullptr) {
            blocks.give(*first, *last);
        }
    }
};

} // namespace

AURenderEvent* makeRenderEvent(const AUMIDIEvent& record, const std::uint8_t* bytes)
{
    AURenderEvent* const made = recordFor(record.length);
    made->MIDI = record;
    made->MIDI.next = nullptr;
    std::copy_n(bytes, record.length, reinterpret_cast<std::uint8_t*>(made) + headSize);
    return made;
}

void releaseRenderEvents(AURenderEvent* head) noexcept
{
    Returned<SmallBlocks> small;
    Returned<MediumBlocks> medium;
    Returned<TextBlocks> text;
    Returned<LargeBlocks> large;
    while (head != nullptr) {
        const Origin origin = originOf(head);
        head = head->head.next;
        switch (origin.size) {
        case Size::small:
            small.add(origin.block);
            break;
        case Size::medium:
            medium.add(origin.block);
            break;
        case Size::text:
            text.add(origin.block);
            break;
        case Size::large:
            large.add(origin.block);
            break;
        case Size::unpooled:
            delete[] static_cast<std::byte*>(origin.block);
        }
    }
    small.give(smallBlocks);
    medium.give(mediumBlocks);
    text.give(textBlocks);
    large.give(largeBlocks);
}

RenderEventRoom::RenderEventRoom(RenderEventCounts counts) : counts(counts)
{
    smallBlocks.reserve(counts.small);
    mediumBlocks.reserve(counts.medium);
    textBlocks.reserve(counts.text);
    largeBlocks.reserve(counts.large);
}

RenderEventRoom::~RenderEventRoom()
{
    smallBlocks.reserve(-counts.small);
    mediumBlocks.reserve(-counts.medium);
    textBlocks.reserve(-counts.text);
    largeBlocks.reserve(-counts.large);
}

} // namespace volvelle
