#pragma once

#include "app/circle/MIDICircleView.h"
#include "app/control/ScreenControls.h"
#include "app/control/UIViewController.h"
#include "app/document/MIDIDocument.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace volvelle {

class DocumentBrowserViewController;

// The screen of one open document: the circle, the file's name, Generate, Play, Save and Done. It stops what
// sounds, then acts on its document, whose delegate it is. Made by make() for each document. [main]
class MIDIDocumentViewController : public UIViewController, public MIDIDocumentDelegate {
public:
    // Connects the layout's parts: `contentView`, labels and buttons.
    using Layout = std::function<void(MIDIDocumentViewController& screen)>;

    static std::shared_ptr<MIDIDocumentViewController> make(Layout layout);

    ~MIDIDocumentViewController() override;
    MIDIDocumentViewController(const MIDIDocumentViewController&) = delete;
    MIDIDocumentViewController& operator=(const MIDIDocumentViewController&) = delete;

    void midiDocumentUpdateEvents(const std::vector<std::shared_ptr<AUMIDIEventEx>>& events) override;
    void midiDocumentPlaySequence(const std::vector<std::uint8_t>& data) override;

    // The parts of the layout; null until it is connected.
    std::shared_ptr<MIDICircleView> contentView;
    std::shared_ptr<UIButton> buttonDone;
    // Leaves; what was not saved since the last Save stays so.
    virtual void onButtonDone();
    std::shared_ptr<UILabel> labelFile;
    std::shared_ptr<UIButton> buttonGenerate;
    // A new arrangement, which plays at once. It counts as no unsaved change.
    virtual void onGenerate();
    std::shared_ptr<UIButton> buttonSave;
    // Saves and leaves.
    virtual void onButtonSave();
    std::shared_ptr<UIButton> buttonPlay;
    // Plays from the beginning, each time.
    virtual void onButtonPlay();
    std::weak_ptr<DocumentBrowserViewController> browser;

    const std::shared_ptr<MIDIDocument>& document() const { return shown; }

    // The layout must be connected, and the document given: fatal stops.
    virtual void setDocument(std::shared_ptr<MIDIDocument> document);

    // Plays where nothing plays, stops what does: a click on the disc.
    void playOrStop();
    bool isPlaying() const;

    // Told before new content plays, and after the music began or ended, so that a layout can follow; may be
    // empty.
    std::function<void(const std::vector<std::uint8_t>& data)> onContentChanged;
    std::function<void()> onPlayingChanged;

    // A document that is closed, or in conflict, is a fatal stop.
    void viewWillAppear(bool animated) override;
    void viewDidDisappear(bool animated) override;
    void viewWillLayoutSubviews() override;

protected:
    explicit MIDIDocumentViewController(Layout layout);
    void loadView() override;

private:
    void stopSequencer() const;
    void leave();

    Layout layout;
    std::shared_ptr<MIDIDocument> shown;
};

} // namespace volvelle
