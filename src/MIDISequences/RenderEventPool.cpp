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

// What stands before each record.
struct Origin {
    void* block = nullptr; // what it was taken from
    bool isSmall = false;
    bool isPooled = false;
};

constexpr std::size_t blockSize(std::size_t length)
{
    return sizeof(Origin) + std::max(sizeof(AURenderEvent), headSize + length);
}

using SmallBlocks = RenderEventBlocks<blockSize(inRecord)>;
using LargeBlocks = RenderEventBlocks<blockSize(largeRenderEvent)>;

constinit SmallBlocks smallBlocks;
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
    return recordAt(room, {.block = room, .isSmall = false, .isPooled = false});
}

template <class Blocks>
AURenderEvent* pooledRecord(Blocks& blocks, std::size_t length)
{
    auto* const block = blocks.take();
    if (block == nullptr) {
        return unpooledRecord(length);
    }
    return recordAt(block->room.data(), {.block = block, .isSmall = length <= inRecord, .isPooled = true});
}

AURenderEvent* recordFor(std::size_t length)
{
    if (length <= inRecord) {
        return pooledRecord(smallBlocks, length);
    }
    if (length <= largeRenderEvent) {
        return pooledRecord(largeBlocks, length);
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

template <class Blocks>
void prepare(Blocks& blocks, int count)
{
    Returned<Blocks> taken;
    for (int i = 0; i < count; ++i) {
        if (auto* const block = blocks.take()) {
            taken.add(block);
        }
    }
    taken.give(blocks);
}

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
    Returned<LargeBlocks> large;
    while (head != nullptr) {
        const Origin origin = originOf(head);
        head = head->head.next;
        if (!origin.isPooled) {
            delete[] static_cast<std::byte*>(origin.block);
        } else if (origin.isSmall) {
            small.add(origin.block);
        } else {
            large.add(origin.block);
        }
    }
    small.give(smallBlocks);
    large.give(largeBlocks);
}

void prepareRenderEvents(int count)
{
    prepare(smallBlocks, count);
    prepare(largeBlocks, count);
}

} // namespace volvelle
