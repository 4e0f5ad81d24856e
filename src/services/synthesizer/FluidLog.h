#pragma once

// Private to the library: what FluidSynth has to say goes to the log, by way of the ring for rendering
// threads where the thread is one.
namespace volvelle {

// [any]
void routeFluidLog();

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
