#pragma once

namespace volvelle {

// Seconds since some moment, never going back unless a clock says otherwise. The default reads the system's
// steady clock; tests turn one by hand.
class Clock {
public:
    virtual ~Clock() = default;
    virtual double now() const = 0; // [any]
};

// The system's steady clock.
class SteadyClock : public Clock {
public:
    double now() const override;
};

} // namespace volvelle
