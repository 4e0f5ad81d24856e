#pragma once

namespace volvelle {

// Would listen to changes of a sequence. It is told of nothing.
class SequenceChangedDelegate {
public:
    virtual ~SequenceChangedDelegate() = default;
};

} // namespace volvelle
