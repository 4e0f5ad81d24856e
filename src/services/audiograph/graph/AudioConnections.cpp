#include "services/audiograph/graph/AudioConnections.h"

#include <algorithm>

namespace volvelle {

void AudioConnections::add(AudioConnection connection)
{
    removeOutputs(*connection.from);
    removeInput(*connection.to, connection.toBus);
    list.push_back(std::move(connection));
}

void AudioConnections::removeInput(const AVAudioNode& node, int bus)
{
    std::erase_if(list, [&](const AudioConnection& c) { return c.to.get() == &node && c.toBus == bus; });
}

void AudioConnections::removeInputs(const AVAudioNode& node)
{
    std::erase_if(list, [&](const AudioConnection& c) { return c.to.get() == &node; });
}

void AudioConnections::removeOutputs(const AVAudioNode& node)
{
    std::erase_if(list, [&](const AudioConnection& c) { return c.from.get() == &node; });
}

const AudioConnection* AudioConnections::input(const AVAudioNode& node, int bus) const
{
    const auto found = std::find_if(list.begin(), list.end(), [&](const AudioConnection& c) {
        return c.to.get() == &node && c.toBus == bus;
    });
    return found == list.end() ? nullptr : &*found;
}

const AudioConnection* AudioConnections::output(const AVAudioNode& node) const
{
    const auto found = std::find_if(list.begin(), list.end(),
                                    [&](const AudioConnection& c) { return c.from.get() == &node; });
    return found == list.end() ? nullptr : &*found;
}

std::vector<AudioConnection*> AudioConnections::inputs(const AVAudioNode& node)
{
    std::vector<AudioConnection*> result;
    for (AudioConnection& connection : list) {
        if (connection.to.get() == &node) {
            result.push_back(&connection);
        }
    }
    std::stable_sort(result.begin(), result.end(), [](auto* a, auto* b) { return a->toBus < b->toBus; });
    return result;
}

bool AudioConnections::leads(const AVAudioNode& from, const AVAudioNode& to) const
{
    const AVAudioNode* node = &from;
    while (node != nullptr && node != &to) {
        const AudioConnection* next = output(*node);
        node = next == nullptr ? nullptr : next->to.get();
    }
    return node == &to;
}

} // namespace volvelle
