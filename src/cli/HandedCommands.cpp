#include "base/Text.h"
#include "cli/CommandRequest.h"
#include "cli/SiblingProgram.h"

#include <cmath>
#include <cstdlib>
#include <string>
#include <unistd.h>

namespace volvelle {

namespace {

// Replaces this process by another one beside it. Returns only where that fails.
int handOver(char** argv, const char* program, CommandOutput& output)
{
    execv(siblingProgram(program).c_str(), argv);
    return tellMissingSibling(program, output);
}

// An action of this process where it has it, else of `program`.
template <class Options>
std::function<int(CommandOutput&)> actionOf(int (*command)(const Options&, CommandOutput&),
                                            const Options& options, char** argv, const char* program)
{
    return [=, &options](CommandOutput& output) {
        return command != nullptr ? command(options, output) : handOver(argv, program, output);
    };
}

void addEngine(CLI::App& command, std::string& engine)
{
    command
        .add_option("--engine", engine,
                    "what plays: \"platform\", or \"render\" for the realtime sequencer; platform without it")
        ->check(CLI::IsMember({platformEngine, renderEngine}))
        ->option_text("platform|render");
}

void addPlay(CLI::App& app, Request& request, const HandedCommands& handed, char** argv)
{
    CLI::App& command = addCommand(app, "play", "Play a MIDI file",
                                   "Keys: the space bar pauses and goes on, q and Ctrl-C end.\n"
                                   "Also --resources DIR, --verbose, --quiet.\n"
                                   "Example: volvelle play Idea.mid");
    PlayOptions& options = request.play;
    auto* file = command.add_option("FILE", options.file, "the MIDI file")
                     ->option_text("F.mid (required but for --port list)");
    command
        .add_option("--port", options.port,
                    "a MIDI port of another program, or \"list\" to see them; the sound device without it")
        ->option_text("NAME|list");
    command.add_option("--bank", options.bank, "the sound bank; the best one installed without it")
        ->option_text("F");
    addEngine(command, options.engine);
    command.callback([&request, &handed, file, argv] {
        if (file->count() == 0 && request.play.port != "list") {
            throw CLI::RequiredError("FILE");
        }
        request.action = actionOf(handed.play, request.play, argv, soundProgram);
    });
}

void addRecord(CLI::App& app, Request& request, const HandedCommands& handed, char** argv)
{
    CLI::App& command = addCommand(app, "record", "Record a MIDI port into a MIDI file",
                                   "Keys: q and Ctrl-C end the recording, and it is saved.\n"
                                   "Also --verbose, --quiet.\n"
                                   "Example: volvelle record --port list");
    RecordOptions& options = request.record;
    command
        .add_option("--port", options.port,
                    "the MIDI port of a device or another program, or \"list\" to see them")
        ->required()
        ->option_text("NAME|list (required)");
    auto* out = command
                    .add_option("--out", options.out,
                                "the file to write or replace, \"-\" for standard output; required but for "
                                "--port list")
                    ->option_text("F.mid");
    command.add_option("--seconds", options.seconds, "how long, up to 86400; until it is ended without it")
        ->check([](const std::string& word) {
            const double seconds = std::strtod(word.c_str(), nullptr);
            const bool isGood = seconds > 0.0 && seconds <= RecordOptions::longest;
            return isGood ? "" : concat("Value ", word, " is not above 0 and up to 86400");
        })
        ->option_text("N");
    command.callback([&request, &handed, out, argv] {
        if (out->count() == 0 && request.record.port != "list") {
            throw CLI::RequiredError("--out");
        }
        request.action = actionOf(handed.record, request.record, argv, soundProgram);
    });
}

void addRender(CLI::App& app, Request& request, const HandedCommands& handed, char** argv)
{
    CLI::App& command = addCommand(app, "render", "Turn a MIDI file into sound",
                                   "Also --resources DIR, --verbose, --quiet.\n"
                                   "Example: volvelle render Idea.mid --out Idea.flac");
    RenderOptions& options = request.render;
    command.add_option("FILE", options.file, "the MIDI file")->required()->option_text("F.mid (required)");
    command
        .add_option("--out", options.out,
                    "the file to write or replace: .wav, .flac or .ogg; \"-\" for WAV on standard output; "
                    "a pipe or a device takes WAV, too")
        ->required()
        ->option_text("F (required)");
    command.add_option("--bank", options.bank, "the sound bank; the best one installed without it")
        ->option_text("F");
    addEngine(command, options.engine);
    command.add_option("--rate", options.rate, "frames per second, 8000 to 192000; 48000 without it")
        ->check(CLI::Range(8000, 192000))
        ->option_text("N");
    command.add_option("--cores", options.cores, "cores to use, 1 to 64; all without it")
        ->check(CLI::Range(1, 64))
        ->option_text("N");
    command.callback([&request, &handed, argv] {
        request.action = actionOf(handed.render, request.render, argv, soundProgram);
    });
}

void addPicture(CLI::App& app, Request& request, const HandedCommands& handed, char** argv)
{
    CLI::App& command = addCommand(app, "picture", "Paint the circle of a MIDI file",
                                   "Also --verbose, --quiet.\n"
                                   "Example: volvelle picture Idea.mid --out Idea.png");
    PictureOptions& options = request.picture;
    command.add_option("FILE", options.file, "the MIDI file")->required()->option_text("F.mid (required)");
    command.add_option("--out", options.out, "the PNG to write or replace, \"-\" for standard output")
        ->required()
        ->option_text("F.png (required)");
    command.add_option("--size", options.size, "pixels of a side, 64 to 8192; 1024 without it")
        ->check(CLI::Range(PictureOptions::smallest, PictureOptions::largest))
        ->option_text("N");
    command.add_option("--beat", options.beat, "show it playing at that beat, from 0")
        ->check(CLI::Range(0.0, 1e9))
        ->check([](const std::string& word) {
            return std::isfinite(std::strtod(word.c_str(), nullptr)) ? "" : "Value is not a number";
        })
        ->option_text("B");
    command.callback([&request, &handed, argv] {
        request.action = actionOf(handed.picture, request.picture, argv, screenProgram);
    });
}

// Without a command the files are opened in the window.
void addApp(CLI::App& app, Request& request, const HandedCommands& handed, char** argv)
{
    app.add_option("FILE", request.app.files, "MIDI files to open in the window")->option_text("F.mid ...");
    app.add_flag("--self-test", request.app.isSelfTest,
                 "walk one whole road of the window, without a display");
    request.action = actionOf(handed.open, request.app, argv, screenProgram);
}

} // namespace

void addHandedCommands(CLI::App& app, Request& request, const HandedCommands& handed, char** argv)
{
    addPlay(app, request, handed, argv);
    addRecord(app, request, handed, argv);
    addRender(app, request, handed, argv);
    addPicture(app, request, handed, argv);
    addApp(app, request, handed, argv);
}

} // namespace volvelle
