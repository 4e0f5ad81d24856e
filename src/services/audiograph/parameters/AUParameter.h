#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <string>

namespace volvelle {

using AUParameterAddress = std::uint64_t;
using AUParameterObserver = std::function<void(AUParameterAddress address, float value)>;
// Names an observer; 0 is none.
using AUParameterObserverToken = std::uint64_t;

class AUParameterTree;

// One value of a unit that may be turned while it sounds. Owned by its tree.
class AUParameter {
public:
    AUParameter(AUParameterAddress address, std::string identifier, std::string displayName, float minimum,
                float maximum, float value);

    const AUParameterAddress address;
    const std::string identifier;
    const std::string displayName;
    const float minValue;
    const float maxValue;

    // [any]
    float value() const { return stored.load(std::memory_order_relaxed); }

    // Stores the value, brought into the range, and tells it to the observers of the tree, on this thread and
    // before it returns, but not to `originator`. A value that is not a number is ignored.
    // [main, worker]
    void setValue(float value, AUParameterObserverToken originator = 0);

private:
    friend class AUParameterTree;

    std::atomic<float> stored;
    AUParameterTree* tree = nullptr; // owns this
};

} // namespace volvelle
