#pragma once

namespace volvelle {

// A factor that goes to a new value along one block; the first block starts at its value. [render]
class GainRamp {
public:
    void apply(float target, float* left, float* right, int frames) noexcept;

private:
    float current = 0.0F;
    bool isSet = false;
};

} // namespace volvelle
