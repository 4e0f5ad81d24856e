#pragma once

#include <functional>
#include <string>
#include <vector>

namespace volvelle {

struct UIAlertAction {
    std::string title;
    std::function<void()> handler; // empty for none
};

// A dialogue with a text and buttons. Return and closing it otherwise are the first button, so that nothing
// that loses something happens by itself. [main]
struct UIAlertController {
    std::string title;
    std::string message;
    std::vector<UIAlertAction> actions;
};

} // namespace volvelle
