#include "tests/app/document/MIDIDocumentFixture.h"

#include "base/Text.h"

namespace volvelle::test {

namespace {

struct Probe : UIDocument {
    static void set(UIDocument& document, int state) { (document.*(&Probe::setDocumentState))(state); }
};

UIDocument::Completion noteIn(bool& told)
{
    return [&told](bool success) { told = success; };
}

} // namespace

std::vector<std::uint8_t> MIDIDocuments::smallFile()
{
    return {'M', 'T',  'h',  'd', 0,    0,    0,    6,  0, 0,  0, 1, // one track
            1,   0xE0, 'M',  'T', 'r',  'k',  0,    0,  0, 31,       // 480 ticks to the beat
            0,   0x90, 60,   100, 0x83, 0x60, 0x80, 60, 0,           // channel 0, one beat
            0,   0x91, 64,   90,  0x83, 0x60, 0x81, 64, 0,           // channel 1
            0,   0x90, 62,   80,  0x81, 0x70, 0x80, 62, 0,           // half a beat
            0,   0xFF, 0x2F, 0};
}

void setState(UIDocument& document, int state)
{
    Probe::set(document, state);
}

bool opens(UIDocument& document)
{
    bool told = false;
    document.openWithCompletionHandler(noteIn(told));
    return told;
}

bool closes(UIDocument& document)
{
    bool told = false;
    document.closeWithCompletionHandler(noteIn(told));
    return told;
}

bool saves(UIDocument& document, UIDocumentSaveOperation operation)
{
    bool told = false;
    document.saveToURL(document.fileURL(), operation, noteIn(told));
    return told;
}

std::vector<std::string> textsOf(const std::vector<std::shared_ptr<AUMIDIEventEx>>& events)
{
    std::vector<std::string> texts;
    for (const auto& event : events) {
        std::string line = text(event->pEvent()->eventSampleTime);
        for (const std::uint8_t byte : event->array()) {
            line += concat(" ", int{byte});
        }
        texts.push_back(line);
    }
    return texts;
}

} // namespace volvelle::test
