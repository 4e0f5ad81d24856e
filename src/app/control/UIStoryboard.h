#pragma once

#include "app/control/UIViewController.h"

#include <memory>
#include <string>

namespace volvelle {

// Makes screens with their layouts: "MIDIDocumentViewController", and the destinations of the screen changes
// "showHelp" and "showInfo". [main]
class UIStoryboard {
public:
    virtual ~UIStoryboard() = default;

    // Null for an identifier that it does not know.
    virtual std::shared_ptr<UIViewController> instantiateViewController(const std::string& identifier) = 0;
};

// A change of screens under way. [main]
struct UIStoryboardSegue {
    std::string identifier;
    std::shared_ptr<UIViewController> destination;
};

} // namespace volvelle
