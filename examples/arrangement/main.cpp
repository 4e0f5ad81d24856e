// Makes an arrangement, saves it, and prints its notes: arrangement RESOURCES FILE
#include <base/Paths.h>
#include <midi/ChannelEvents.h>
#include <midi/TrackNode.h>
#include <phrases/MIDIClipGenerator.h>

#include <iostream>

int main(int argc, char** argv)
{
    if (argc != 3) {
        std::cerr << "arrangement RESOURCES FILE, as in arrangement /usr/share/volvelle Idea.mid\n";
        return 2;
    }
    volvelle::setResourcesFolder(argv[1]);
    volvelle::MIDIClipGenerator generator;
    const auto sequence = generator.makeArrangement();
    sequence->saveToFile(argv[2]);
    sequence->musicSequenceToSequenceNode();
    for (const auto& track : sequence->getSequenceNode()->tracks) {
        for (const auto& event : track->events) {
            if (const auto note = std::dynamic_pointer_cast<volvelle::MidiNoteEvent>(event)) {
                std::cout << note->position << " " << volvelle::channelLabel(note->channel) << " "
                          << int{note->number} << " for " << note->duration << " beats\n";
            }
        }
    }
}
