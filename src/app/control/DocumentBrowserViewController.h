#pragma once

#include "app/control/MIDIDocumentViewController.h"
#include "app/control/UIDocumentBrowserViewController.h"
#include "app/control/UIOpenURLContext.h"
#include "app/control/UIStoryboard.h"
#include "app/document/DocumentBrowser.h"
#include "audio/AudioUnitMIDISynth.h"
#include "audio/MIDISequencer.h"
#include "audio/MIDISequencerDelegate.h"
#include "base/NotificationCenter.h"
#include "base/realtime/AudioSink.h"
#include "services/audiograph/graph/AVAudioEngine.h"

#include <array>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace volvelle {

// What posts these is the application's shell.
inline constexpr std::string_view UIApplicationDidEnterBackgroundNotification =
    "UIApplicationDidEnterBackgroundNotification";
inline constexpr std::string_view UIApplicationWillEnterForegroundNotification =
    "UIApplicationWillEnterForegroundNotification";
inline constexpr std::string_view UIApplicationWillTerminateNotification =
    "UIApplicationWillTerminateNotification";

// What the root screen is given by the application's shell.
struct BrowserServices {
    std::shared_ptr<UIStoryboard> storyboard;             // of the layout "Main"
    std::function<std::shared_ptr<AudioSink>()> makeSink; // what the engine plays into; empty: nothing pulls
    std::function<void(const std::string& url)> openURL;  // in the system's browser
    std::string helpSite;                                 // the maker's; empty: nothing is opened
    std::shared_ptr<TrashCan> trash;
};

// The root screen and the owner of the sound: it shows the documents, makes and opens them, and holds the
// engine, the internal synthesizer and the transport for the whole run. Everything that sounds goes through
// playSequence(). There is one, which the global `browserViewController` leads to. [main]
class DocumentBrowserViewController : public UIDocumentBrowserViewController,
                                      public UIDocumentBrowserViewControllerDelegate,
                                      public MIDISequencerDelegate,
                                      public DocumentBrowser {
public:
    static std::shared_ptr<DocumentBrowserViewController> make(BrowserServices services);

    ~DocumentBrowserViewController() override;
    DocumentBrowserViewController(const DocumentBrowserViewController&) = delete;
    DocumentBrowserViewController& operator=(const DocumentBrowserViewController&) = delete;

    // "play" hides Play, Save and Generate of the document screen, "stop" shows them.
    void onSequencerStateChanged(std::string_view state) override;
    void onSequencerProgress(double current, double total) override;
    void onSequencerComplete() override;
    void onMIDILoad(const std::filesystem::path& url) override;

    // Opens the maker's site, where there is one, and the help.
    virtual void showHelp();

private:
    std::filesystem::path resourcesPath;
    std::filesystem::path documentsPath;
    std::filesystem::path sharedPath;  // nothing fills it
    std::filesystem::path sharedPath2; // nothing fills it
    std::shared_ptr<AVAudioEngine> engine;
    std::shared_ptr<AudioUnitMIDISynth> synth;

public:
    std::shared_ptr<MIDISequencer> sequencer; // a new one for each playing
    bool isPresenting = false;                // a document or an alert is up, or coming up

    // Puts the example document into the user's folder, once.
    virtual void provideDefaultDocuments();

    void documentBrowserDidRequestDocumentCreation(const CreationHandler& handler) override;
    void documentBrowserDidImportDocument(const std::filesystem::path& source,
                                          const std::filesystem::path& destination) override;
    void documentBrowserFailedToImportDocument(const std::filesystem::path& url,
                                               const std::string& error) override;
    void documentBrowserDidPickDocuments(const std::vector<std::filesystem::path>& urls) override;

    std::shared_ptr<MIDIDocumentViewController> documentViewController; // of the document that is up

    // Opens a document and shows its screen; refused, and kept in `waitingDocuments`, while another is up.
    virtual void presentDocument(const std::filesystem::path& url);

    // Above a document too, which stays up.
    void showMessage(const std::string& caption, const std::string& message) override;

    // MARK: Screens

    void viewDidLoad() override;
    void prepareForSegue(const UIStoryboardSegue& segue);
    // Above the topmost screen, unless that is the help already.
    void performSegue(const std::string& identifier);

    // Writes the selector.
    bool canPerformAction(std::string_view selector) override;

    // Also while a document that could not be saved waits for the user's word.
    bool isOccupied() const override { return isPresenting || unsaved; }

    bool isCovered() const override { return documentViewController && documentViewController->isUp(); }

    // MARK: The engine

    void startEngine(); // without an engine a fatal stop
    void stopEngine() override;
    void pauseEngine();
    double getSamplerate() const; // Hz

    // Plays the bytes of a MIDI file from their beginning. Without an engine or a synthesizer a fatal stop.
    void playSequence(const std::vector<std::uint8_t>& data);

    std::optional<double> playingBeats() const override;

    void onBackground();
    void onForeground();
    void onTerminate();

    // What plays the sound, or does not; null before the engine is built.
    const std::shared_ptr<AudioSink>& sink() const { return output; }

    // MARK: Beside the documents

    // Files that were to be opened while another was up, in their order; told by onBrowserChanged.
    const std::vector<UIOpenURLContext>& waitingDocuments() const { return waiting; }

    // "'Slow tide' waits to be opened.", "3 ideas wait to be opened."; empty for none.
    std::string waitingLine() const;

    // Copies a file from elsewhere here and opens it; refused, and kept, as by presentDocument().
    void importOrWait(const std::filesystem::path& file);

    // Leaves the document that is up, and opens the first one that waits.
    void openWaitingDocument();
    void forgetWaitingDocuments();

    // Why a file cannot be opened, or where another version of the one that was is kept, in a line that is in
    // nobody's way; empty for none. Told by onBrowserChanged.
    const std::string& quietLine() const { return quiet; }

    void tellQuietly(std::string line);

    // Tells the version, and whose the parts are.
    void showAbout();

    // Keeps a document that could not be saved when its screen went, and asks the user what to do: to try
    // again, to save elsewhere where `askForPlace` asks for a place, or to drop it.
    void keepUnsavedDocument(const std::shared_ptr<MIDIDocument>& document);
    std::function<void(const std::filesystem::path& proposal,
                       std::function<void(std::optional<std::filesystem::path>)> chosen)>
        askForPlace;

    // When the application may end and may go on: stops the music, and saves a document that could not be
    // saved before; where that fails again, what it holds is kept as a version of its file. The user's answer
    // about it still counts.
    void prepareForQuestion();

    // The same before the application ends: nobody is asked any more.
    void prepareForEnd();

    const std::shared_ptr<MIDIDocument>& unsavedDocument() const { return unsaved; }

protected:
    explicit DocumentBrowserViewController(BrowserServices services);
    Result<> checkCreation() const override;

private:
    void initializeEngine();
    void setupNotifications();
    void getDirectories();
    void showAlert(const std::string& alertTitle, const std::string& message,
                   std::vector<UIAlertAction> actions);
    std::shared_ptr<DocumentBrowserViewController> self();
    void refuse(UIOpenURLContext context);
    void openFirstWaiting();
    void offerUnsaved();
    void closeUnsaved();
    void dropUnsaved();
    void stopSequencer() const;
    bool keepUnsavedAsVersion();
    void saveUnsavedElsewhere();
    void saveUnsavedTo(const std::optional<std::filesystem::path>& chosen);

    BrowserServices services;
    std::shared_ptr<AudioSink> output;
    std::array<NotificationCenter::Token, 3> observers;
    std::vector<UIOpenURLContext> waiting;
    std::string quiet;
    int alerts = 0; // that are up
    std::shared_ptr<MIDIDocument> unsaved;
    bool isUnsavedKept = false; // as a version
};

// The one that `browserViewController` leads to; null for none. [main]
std::shared_ptr<DocumentBrowserViewController> currentBrowserViewController();

} // namespace volvelle
