#pragma once

#include <cstdint>

// Private to the library: what FluidSynth has to say goes to the log. While a thread renders its lines are
// counted instead.
namespace volvelle {

// [any thread]
void routeFluidLog();
std::uint64_t unprintedFluidLines();

// Marks the calling thread as one that renders, for its lifetime.
class RenderingMark {
public:
    RenderingMark() noexcept;
    ~RenderingMark();
    RenderingMark(const RenderingMark&) = delete;
    RenderingMark& operator=(const RenderingMark&) = delete;

private:
    bool before;
};

} // namespace volvelle
