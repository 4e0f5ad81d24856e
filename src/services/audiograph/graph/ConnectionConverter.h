#pragma once

#include <array>
#include <cstdint>
#include <memory>

struct SRC_STATE_tag;

namespace volvelle {

struct RenderStep;

// Brings what one connection delivers to another rate. It pulls its source ahead by what its filter needs,
// and no further however long it runs. Made and destroyed on the main thread; its state belongs to the
// connection and outlives a render plan.
class ConnectionConverter {
public:
    // Both above 0, and isPossible().
    ConnectionConverter(double fromRate, double toRate);
    ~ConnectionConverter();
    ConnectionConverter(const ConnectionConverter&) = delete;
    ConnectionConverter& operator=(const ConnectionConverter&) = delete;

    const double fromRate; // Hz
    const double toRate;   // Hz

    static bool isPossible(double fromRate, double toRate);

    // Writes `frames` frames at the new rate, and pulls from the source what that takes. [render]
    void pull(RenderStep& source, float* left, float* right, int frames) noexcept;

private:
    static constexpr int maximumFrames = 512; // of one block on either side

    void fill(RenderStep& source, int wanted) noexcept;
    int framesToPull(int frames) const noexcept;

    SRC_STATE_tag* state;
    std::int64_t pulled = 0;    // frames of the source
    std::int64_t delivered = 0; // frames at the new rate
    int position = 0;           // of the first frame of `input` that was not used yet
    int count = 0;              // frames in `input`
    std::array<float, std::size_t{2} * maximumFrames> input{};  // interleaved
    std::array<float, std::size_t{2} * maximumFrames> output{}; // interleaved
    std::array<float, maximumFrames> left{};
    std::array<float, maximumFrames> right{};
};

} // namespace volvelle
