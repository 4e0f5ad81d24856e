#pragma once

#include <memory>
#include <optional>

namespace volvelle {

// What documents and the program's entry ask of the root screen. [main]
class DocumentBrowser {
public:
    virtual ~DocumentBrowser() = default;

    // The length of what the transport holds, in beats; without a value where there is no transport.
    virtual std::optional<double> playingBeats() const = 0;

    virtual void stopEngine() = 0;
};

// The one root screen, once it has loaded. [main]
extern std::weak_ptr<DocumentBrowser> browserViewController;

} // namespace volvelle
