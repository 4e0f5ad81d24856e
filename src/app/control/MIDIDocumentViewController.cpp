#include "app/control/MIDIDocumentViewController.h"

#include "app/control/DocumentBrowserViewController.h"
#include "app/control/LocalizedName.h"
#include "base/Checked.h"
#include "base/Console.h"
#include "base/Text.h"
#include "phrases/PhraseLibrary.h"

#include <utility>

namespace volvelle {

namespace {

constexpr std::string_view unknownName = "Unknown Document";

} // namespace

std::shared_ptr<MIDIDocumentViewController> MIDIDocumentViewController::make(Layout layout)
{
    return std::shared_ptr<MIDIDocumentViewController>(new MIDIDocumentViewController(std::move(layout)));
}

MIDIDocumentViewController::MIDIDocumentViewController(Layout layout) : layout(std::move(layout)) {}

MIDIDocumentViewController::~MIDIDocumentViewController()
{
    if (contentView) {
        contentView->setDelegate(nullptr);
    }
}

void MIDIDocumentViewController::loadView()
{
    if (layout) {
        layout(*this);
    }
}

void MIDIDocumentViewController::midiDocumentUpdateEvents(
    const std::vector<std::shared_ptr<AUMIDIEventEx>>& /*events*/)
{
    directPrint("MIDIDocumentViewController::midiDocumentUpdateEvents()");
    MIDICircleView& circle = required(contentView);
    circle.backgroundColor = UIColor::clearColor();
    circle.setNeedsDisplay();
}

void MIDIDocumentViewController::midiDocumentPlaySequence(const std::vector<std::uint8_t>& data)
{
    directPrint("MIDIDocumentViewController::midiDocumentPlaySequence()");
    if (onContentChanged) {
        onContentChanged(data);
    }
    if (const auto root = browser.lock()) {
        root->playSequence(data);
    }
}

void MIDIDocumentViewController::setDocument(std::shared_ptr<MIDIDocument> document)
{
    shown = std::move(document);
    required(shown).delegate = std::static_pointer_cast<MIDIDocumentViewController>(shared_from_this());
    required(contentView).setDelegate(shown.get());
    loadViewIfNeeded();
}

void MIDIDocumentViewController::onGenerate()
{
    if (!shown) {
        return;
    }
    stopSequencer();
    if (const auto root = browser.lock()) {
        if (const auto checked = checkPhraseLibrary(); !checked) {
            root->showMessage("File Error", checked.error());
            return;
        }
    }
    shown->data = shown->generateMIDIFile();
    shown->updateChangeCount(UIDocumentChangeKind::cleared);
}

void MIDIDocumentViewController::onButtonPlay()
{
    if (!shown) {
        return;
    }
    stopSequencer();
    midiDocumentPlaySequence(required(shown->data));
}

void MIDIDocumentViewController::onButtonSave()
{
    stopSequencer();
    required(shown).updateChangeCount(UIDocumentChangeKind::done);
    leave();
}

void MIDIDocumentViewController::onButtonDone()
{
    stopSequencer();
    leave();
}

void MIDIDocumentViewController::leave()
{
    if (!isUp()) {
        return;
    }
    dismiss(true, [root = browser] {
        if (const auto there = root.lock()) {
            there->isPresenting = false;
        }
    });
}

bool MIDIDocumentViewController::isPlaying() const
{
    const auto root = browser.lock();
    return root && root->sequencer && root->sequencer->isPlaying();
}

void MIDIDocumentViewController::playOrStop()
{
    if (isPlaying()) {
        stopSequencer();
    } else if (shown && shown->data) {
        onButtonPlay();
    }
}

void MIDIDocumentViewController::stopSequencer() const
{
    const auto root = browser.lock();
    if (root && root->sequencer) {
        root->sequencer->stop();
    }
}

void MIDIDocumentViewController::viewWillAppear(bool animated)
{
    UIViewController::viewWillAppear(animated);
    const int state = required(shown).documentState();
    if ((state & UIDocumentState::closed) != 0) {
        fatalStop("MIDIDocumentViewController::viewWillAppear() : Error: Document is opened.");
    }
    if ((state & UIDocumentState::inConflict) != 0) {
        fatalStop("MIDIDocumentViewController::viewWillAppear() : Document conflicts not resolved.");
    }
    title = localizedName(shown->fileURL());
    required(labelFile).setText(concat("File: ", title.value_or(std::string(unknownName))));
    directPrint(title.value_or(std::string(unknownName)));
}

void MIDIDocumentViewController::viewDidDisappear(bool animated)
{
    UIViewController::viewDidDisappear(animated);
    required(shown).closeWithCompletionHandler([this](bool isClosed) {
        const auto root = currentBrowserViewController();
        if (!isClosed) {
            directPrint("MIDIDocumentViewController::viewDidDisappear() : Error closing document.");
            if (root) {
                root->keepUnsavedDocument(shown);
            }
            return;
        }
        directPrint("MIDIDocumentViewController::viewDidDisappear() : Document closed.");
        if (root) {
            if (root->sequencer) {
                root->sequencer->stop();
            }
            root->isPresenting = false;
            root->refreshAndSelect(shown->fileURL());
        }
    });
}

void MIDIDocumentViewController::viewWillLayoutSubviews()
{
    if (contentView) {
        contentView->setNeedsDisplay();
    }
}

} // namespace volvelle
