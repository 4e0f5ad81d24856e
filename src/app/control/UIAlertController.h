#pragma once

#include <functional>
#include <string>
#include <vector>

namespace volvelle {

struct UIAlertAction {
    std::string title;
    std::function<void()> handler; // empty for none
};

// A dialogue with a text and buttons. Closing it otherwise is the last button. [main]
struct UIAlertController {
    std::string title;
    std::string message;
    std::vector<UIAlertAction> actions;
};

} // namespace volvelle
