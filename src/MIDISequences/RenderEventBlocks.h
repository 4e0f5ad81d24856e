#pragma once

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>

namespace volvelle {

// Blocks of one size in a free list that takes no lock. The list is linked by numbers, and its head carries a
// count of changes, so that a number that went and came back is not mistaken. Blocks are made by the chunk
// and never given up. Made once for the process, without a constructor that runs. [any]
template <std::size_t Bytes>
class RenderEventBlocks {
public:
    static constexpr std::uint32_t chunkSize = 256; // blocks
    static constexpr std::uint32_t maximumChunks = 1U << 14;
    static constexpr std::uint32_t none = 0xFFFFFFFF;

    struct Block {
        std::atomic<std::uint32_t> next{none}; // in the free list
        std::uint32_t number = none;
        alignas(8) std::array<std::byte, Bytes> room;
    };

    // Takes a block; a chunk is made where none is free. Null where the last chunk is used up.
    Block* take()
    {
        while (true) {
            if (Block* const block = pop()) {
                return block;
            }
            if (!grow()) {
                return nullptr;
            }
        }
    }

    // Gives back blocks that are linked by their numbers from `first` to `last`.
    void give(Block& first, Block& last) noexcept
    {
        std::uint64_t before = head.load(std::memory_order_relaxed);
        do {
            last.next.store(static_cast<std::uint32_t>(before), std::memory_order_relaxed);
        } while (!head.compare_exchange_weak(before, changed(before, first.number), std::memory_order_release,
                                             std::memory_order_relaxed));
    }

    // Sees to it that there are as many blocks as all reservations together ask for; below 0 gives one up.
    void reserve(int count)
    {
        const std::int64_t all = reserved.fetch_add(count, std::memory_order_relaxed) + count;
        while (std::int64_t{chunkCount.load(std::memory_order_relaxed)} * chunkSize < all && grow()) {
        }
    }

private:
    using Chunk = std::array<Block, chunkSize>;

    static std::uint64_t changed(std::uint64_t before, std::uint32_t number)
    {
        return (((before >> 32) + 1) << 32) | number;
    }

    Block& at(std::uint32_t number) const
    {
        return (*chunks[number / chunkSize].load(std::memory_order_acquire))[number % chunkSize];
    }

    Block* pop() noexcept
    {
        std::uint64_t before = head.load(std::memory_order_acquire);
        while (static_cast<std::uint32_t>(before) != none) {
            Block& block = at(static_cast<std::uint32_t>(before));
            const std::uint32_t next = block.next.load(std::memory_order_relaxed);
            if (head.compare_exchange_weak(before, changed(before, next), std::memory_order_acquire,
                                           std::memory_order_acquire)) {
                return &block;
            }
        }
        return nullptr;
    }

    bool grow()
    {
        if (chunkCount.load(std::memory_order_relaxed) >= maximumChunks) {
            return false;
        }
        const std::uint32_t index = chunkCount.fetch_add(1, std::memory_order_relaxed);
        if (index >= maximumChunks) {
            return false;
        }
        auto chunk = std::make_unique<Chunk>();
        for (std::uint32_t i = 0; i < chunkSize; ++i) {
            (*chunk)[i].number = index * chunkSize + i;
            (*chunk)[i].next.store(index * chunkSize + i + 1, std::memory_order_relaxed);
        }
        Chunk& made = *chunk;
        chunks[index].store(chunk.release(), std::memory_order_release);
        give(made.front(), made.back());
        return true;
    }

    std::atomic<std::uint64_t> head{none}; // changes so far, and the number of the first free block
    std::atomic<std::uint32_t> chunkCount{0};
    std::atomic<std::int64_t> reserved{0}; // blocks
    std::array<std::atomic<Chunk*>, maximumChunks> chunks{};
};

} // namespace volvelle
