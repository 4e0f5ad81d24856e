#pragma once

#include "app/circle/MIDICircleViewDelegate.h"
#include "app/document/MIDIDocumentDelegate.h"
#include "base/NotificationCenter.h"
#include "services/documents/NSProgress.h"
#include "services/documents/UIDocument.h"
#include "services/files/PrivateFolder.h"
#include "services/musicsequence/MusicSequence.h"

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace volvelle {

class MIDISequence;

// A document of one Standard MIDI File, its events for the circle, and the way from a new arrangement to
// both. `data` is the truth, everything else is made from it. New content goes to the delegate, to be shown
// and to be played. No failure reaches the user from here: all are lines on the console. [main]
class MIDIDocument : public UIDocument, public MIDICircleViewDelegate {
public:
    // A new arrangement, on "New MIDI Idea.mid" in a temporary folder that goes with the document.
    static std::shared_ptr<MIDIDocument> make();

    // Without content until it is opened.
    static std::shared_ptr<MIDIDocument> make(const std::filesystem::path& fileURL);

    std::weak_ptr<MIDIDocumentDelegate> delegate;
    NSProgress loadProgress{.totalUnitCount = 10}; // nothing here advances it

private:
    NotificationCenter::Token docStateObserver;
    bool transfering = false;

public:
    std::optional<std::vector<std::uint8_t>> data; // a Standard MIDI File

private:
    std::vector<std::shared_ptr<AUMIDIEventEx>> fileEvents; // of `data`, at 48,000 Hz

public:
    std::vector<std::shared_ptr<AUMIDIEventEx>> getEvents() override;

    // The whole beats of what the root screen's transport holds, at least 16, and 16 without one.
    double getBeatCount() override;

    // A new arrangement as bytes, for the caller to put into `data`. They are shown and played before this
    // returns. Without a value where there are none; with a delegate that is a fatal stop.
    std::optional<std::vector<std::uint8_t>> generateMIDIFile();

    std::optional<DocumentContents> contents(const std::string& forType) override;

    // Never fails: what cannot be read leaves the document without events, what is no bytes without data.
    Result<> load(const DocumentContents& fromContents, const std::optional<std::string>& ofType) override;

    Result<> read(const std::filesystem::path& from) override;
    void handleError(const std::string& error, bool userInteractionPermitted) override;

private:
    explicit MIDIDocument(const std::filesystem::path& fileURL);

    virtual void updateDocumentState();
    virtual void handleDocStateForTransfers();
    // The version in the file's place wins.
    virtual void resolveDocumentConflict();

    static MusicSequence sequenceFromData(const std::vector<std::uint8_t>& bytes); // null where it fails
    static std::optional<std::vector<std::uint8_t>> sequenceData(const MusicSequence& sequence);
    void showEvents(MIDISequence& sequence);
    void play(const std::optional<std::vector<std::uint8_t>>& content);

    std::unique_ptr<PrivateFolder> folder; // of a document that has no other place
};

} // namespace volvelle
