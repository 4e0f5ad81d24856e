#pragma once

#include <string>

// The parts of a layout that a screen's logic sets. [main]
namespace volvelle {

class UIButton {
public:
    virtual ~UIButton() = default;

    // A hidden button keeps its room.
    virtual void setHidden(bool isHidden) = 0;
};

class UILabel {
public:
    virtual ~UILabel() = default;

    virtual void setText(const std::string& text) = 0;
};

} // namespace volvelle
