#include "app/control/RemoteCommands.h"

#include "app/control/DocumentBrowserViewController.h"

#include <utility>

namespace volvelle {

RemoteCommands::RemoteCommands(std::weak_ptr<DocumentBrowserViewController> root) : root(std::move(root)) {}

std::shared_ptr<MIDIDocumentViewController> RemoteCommands::screen() const
{
    const auto browser = root.lock();
    const auto shown = browser ? browser->documentViewController : nullptr;
    return shown && shown->isUp() ? shown : nullptr;
}

void RemoteCommands::play() const
{
    if (!isPlaying()) {
        playOrStop();
    }
}

void RemoteCommands::stop() const
{
    if (isPlaying()) {
        playOrStop();
    }
}

void RemoteCommands::playOrStop() const
{
    if (const auto shown = screen()) {
        shown->playOrStop();
    }
}

void RemoteCommands::next() const
{
    if (const auto shown = screen()) {
        shown->onGenerate();
    }
}

bool RemoteCommands::isPlaying() const
{
    const auto shown = screen();
    return shown && shown->isPlaying();
}

double RemoteCommands::position() const
{
    return isPlaying() ? root.lock()->sequencer->getTime() : 0.0;
}

double RemoteCommands::length() const
{
    const auto browser = root.lock();
    return isAvailable() && browser->sequencer ? browser->sequencer->getLength() : 0.0;
}

std::string RemoteCommands::title() const
{
    const auto shown = screen();
    return shown ? shown->title.value_or("") : "";
}

} // namespace volvelle
