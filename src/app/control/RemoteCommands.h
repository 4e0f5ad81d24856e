#pragma once

#include <memory>
#include <string>

namespace volvelle {

class DocumentBrowserViewController;
class MIDIDocumentViewController;

// What the desktop's media keys and panels can do: with the document that is up, and nothing without one.
// [main]
class RemoteCommands {
public:
    explicit RemoteCommands(std::weak_ptr<DocumentBrowserViewController> root);

    // Plays from the beginning; goes on where it plays.
    void play() const;
    void stop() const;
    void playOrStop() const;

    // A new arrangement.
    void next() const;

    bool isAvailable() const { return screen() != nullptr; }

    bool isPlaying() const;
    double position() const; // seconds
    double length() const;   // seconds
    std::string title() const;

private:
    std::shared_ptr<MIDIDocumentViewController> screen() const;

    std::weak_ptr<DocumentBrowserViewController> root;
};

} // namespace volvelle
