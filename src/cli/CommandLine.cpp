#include "cli/CommandLine.h"

#include "base/Console.h"
#include "base/MainQueue.h"
#include "base/Paths.h"
#include "base/Text.h"
#include "cli/CommandOutput.h"
#include "cli/GenerateCommand.h"
#include "cli/InspectCommand.h"
#include "cli/LibraryCheckCommand.h"
#include "cli/LibraryCompileCommand.h"
#include "cli/NearestName.h"
#include "cli/SiblingProgram.h"
#include "cli/SuddenEnds.h"
#include "services/files/FileNames.h"

#include <CLI/CLI.hpp>

#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <limits>
#include <optional>
#include <string>
#include <unistd.h>
#include <vector>

namespace volvelle {

namespace {

using Action = std::function<int(CommandOutput&)>;

// The arguments' values, and what is to be done with them once all are known.
struct Request {
    CommonOptions common;
    GenerateOptions generate;
    InspectOptions inspect;
    LibraryCheckOptions libraryCheck;
    LibraryCompileOptions libraryCompile;
    PlayOptions play;
    RecordOptions record;
    RenderOptions render;
    PictureOptions picture;
    AppOptions app;
    Action action;
};

HandedCommands handed; // that this process has

// For all commands: they are understood before and after the name of one.
void addCommonOptions(CLI::App& app, Request& request)
{
    app.add_option("--resources", request.common.resources, "folder that holds Phrases and Phrases2")
        ->option_text("DIR");
    app.add_flag("--verbose", request.common.verbose, "show the console lines");
    app.add_flag("--quiet", request.common.quiet, "say nothing but what was asked for");
    app.set_version_flag("--version", "volvelle " VOLVELLE_VERSION, "tell the version");
}

CLI::App& addCommand(CLI::App& app, const std::string& name, const std::string& purpose,
                     const std::string& footer)
{
    CLI::App& command = *app.add_subcommand(name, purpose);
    command.fallthrough();
    command.footer(footer);
    return command;
}

void addGenerate(CLI::App& app, Request& request)
{
    CLI::App& command = addCommand(app, "generate", "Write a new musical idea as a MIDI file",
                                   "Also --resources DIR, --verbose, --quiet.\n"
                                   "Example: volvelle generate --out Idea.mid --count 4");
    GenerateOptions& options = request.generate;
    command
        .add_option("--out", options.out,
                    "the file to write or replace, \"-\" for standard output; without it the next free "
                    "\"New MIDI Idea.mid\"")
        ->option_text("F.mid");
    command.add_option("--count", options.count, "number of files, \"NAME 1.mid\" upward; 1 without it")
        ->check(CLI::Range(1, std::numeric_limits<int>::max(), "POSITIVE"))
        ->option_text("N");
    command
        .add_option(
            "--long", options.longCount,
            concat("number of arrangements in a file, up to ", GenerateOptions::longest, "; 1 without it"))
        ->check(CLI::Range(1, GenerateOptions::longest))
        ->option_text("N");
    command.add_option("--png", options.png, "its circle as a picture, to write or replace")
        ->option_text("F.png");
    command.add_option("--wav", options.wav, "its sound, to write or replace")->option_text("F.wav");
    command.callback([&request] {
        request.action = [&request](CommandOutput& output) { return runGenerate(request.generate, output); };
    });
}

void addInspect(CLI::App& app, Request& request)
{
    CLI::App& command =
        addCommand(app, "inspect", "Show what MIDI files hold", "Example: volvelle inspect Idea.mid --json");
    command.add_option("FILE", request.inspect.files, "the MIDI files")
        ->required()
        ->option_text("F.mid ... (required)");
    command.add_flag("--json", request.inspect.json, "as JSON, a line for each file");
    command.callback([&request] {
        request.action = [&request](CommandOutput& output) { return runInspect(request.inspect, output); };
    });
}

void addLibraryCheck(CLI::App& library, Request& request)
{
    CLI::App& check = addCommand(library, "check", "Load every phrase as the generator does",
                                 "Also --resources DIR, --verbose, --quiet.\n"
                                 "Example: volvelle library check build/release/resources --ear");
    check
        .add_option("DIR", request.libraryCheck.folder,
                    "folder of phrases or of scores, or one score; the one in use without it")
        ->option_text(" ");
    check.add_flag("--ear", request.libraryCheck.ear, "measure 1,000 arrangements, and hold their bounds");
    check.callback([&request] {
        request.action = [&request](CommandOutput& output) {
            if (request.common.resources && request.libraryCheck.folder) {
                return output.misuse("DIR and --resources name one thing each: leave one of them out.");
            }
            return runLibraryCheck(request.libraryCheck, output);
        };
    });
}

void addLibraryCompile(CLI::App& library, Request& request)
{
    CLI::App& compile = addCommand(library, "compile", "Turn text scores into phrases",
                                   "Also --quiet.\nExample: volvelle library compile library phrases");
    compile.add_option("SCORES", request.libraryCompile.scores, "folder of the scores")
        ->required()
        ->option_text("(required)");
    compile.add_option("DIR", request.libraryCompile.out, "folder for Phrases and Phrases2")
        ->required()
        ->option_text("(required)");
    compile.callback([&request] {
        request.action = [&request](CommandOutput& output) {
            if (request.common.resources) {
                return output.misuse("'library compile' takes no --resources: DIR is the folder of phrases.");
            }
            return runLibraryCompile(request.libraryCompile, output);
        };
    });
}

void addLibrary(CLI::App& app, Request& request)
{
    CLI::App& library =
        addCommand(app, "library", "Check or compile the phrase library", "Example: volvelle library check");
    library.require_subcommand(1);
    addLibraryCheck(library, request);
    addLibraryCompile(library, request);
}

// Replaces this process by another one beside it. Returns only where that fails.
int handOver(char** argv, const char* program, CommandOutput& output)
{
    execv(siblingProgram(program).c_str(), argv);
    return tellMissingSibling(program, output);
}

// An action of this process where it has it, else of `program`.
template <class Options>
Action actionOf(int (*command)(const Options&, CommandOutput&), const Options& options, char** argv,
                const char* program)
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

void addPlay(CLI::App& app, Request& request, char** argv)
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
    command.callback([&request, file, argv] {
        if (file->count() == 0 && request.play.port != "list") {
            throw CLI::RequiredError("FILE");
        }
        request.action = actionOf(handed.play, request.play, argv, soundProgram);
    });
}

void addRecord(CLI::App& app, Request& request, char** argv)
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
    command.callback([&request, out, argv] {
        if (out->count() == 0 && request.record.port != "list") {
            throw CLI::RequiredError("--out");
        }
        request.action = actionOf(handed.record, request.record, argv, soundProgram);
    });
}

void addRender(CLI::App& app, Request& request, char** argv)
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
    command.callback(
        [&request, argv] { request.action = actionOf(handed.render, request.render, argv, soundProgram); });
}

void addPicture(CLI::App& app, Request& request, char** argv)
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
    command.callback([&request, argv] {
        request.action = actionOf(handed.picture, request.picture, argv, screenProgram);
    });
}

// Without a command the files are opened in the window.
void addApp(CLI::App& app, Request& request, char** argv)
{
    app.add_option("FILE", request.app.files, "MIDI files to open in the window")->option_text("F.mid ...");
    app.add_flag("--self-test", request.app.isSelfTest,
                 "walk one whole road of the window, without a display");
    request.action = actionOf(handed.open, request.app, argv, screenProgram);
}

int run(const Request& request)
{
    StandardOutputSink sink;
    const bool isFree = request.generate.out != standardOutputName &&
                        request.render.out != standardOutputName &&
                        request.record.out != standardOutputName && request.picture.out != standardOutputName;
    if (request.common.verbose && isFree) {
        console().setSink(&sink);
    }
    if (request.common.resources) {
        setResourcesFolder(request.common.resources);
    }
    CommandOutput output(request.common.quiet);
    const int status = request.action(output);
    mainQueue().drain();
    console().setSink(nullptr);
    return output.finish(status);
}

// A word in the place of a command, with the one that was meant.
int tellUnknownCommand(const CLI::App& app, const std::string& word)
{
    std::vector<std::string> names;
    for (const CLI::App* command : app.get_subcommands([](const CLI::App*) { return true; })) {
        names.push_back(command->get_name());
    }
    const std::string meant = nearestName(word, names);
    CommandOutput output(false);
    return output.misuse(concat("There is no command '", word, "'",
                                meant.empty() ? "" : concat(": '", meant, "' is the nearest"),
                                ". --help lists all."));
}

// A word in the place of a command that is no file and not named like one.
std::optional<std::string> unknownWord(const CLI::App& app, const AppOptions& options)
{
    std::error_code error;
    if (!app.get_subcommands().empty() || options.files.empty()) {
        return std::nullopt;
    }
    const std::filesystem::path& first = options.files.front();
    const bool isFile =
        std::filesystem::exists(first, error) || isMIDIFileName(first) || first.has_parent_path();
    return isFile ? std::nullopt : std::optional(first.string());
}

std::vector<std::string> namesOf(const std::vector<std::filesystem::path>& files)
{
    return {files.begin(), files.end()};
}

// `words` are those that no command took.
int tellMisuse(const CLI::App& app, const CLI::ParseError& error, std::vector<std::string> words)
{
    const auto given = app.get_subcommands();
    const CLI::App& last = given.empty() ? app : *given.front();
    const bool lacksCommand = last.get_require_subcommand_min() > 0 && last.get_subcommands().empty();
    const auto more = app.remaining();
    words.insert(words.end(), more.begin(), more.end());
    for (const std::string& word : words) {
        if (lacksCommand && !word.starts_with('-')) {
            return tellUnknownCommand(last, word);
        }
    }
    const int status = app.exit(error) == 0 ? exitDone : exitUsage;
    return CommandOutput(false).finish(status);
}

} // namespace

int runCommandLine(int argc, char** argv, const HandedCommands& commands)
{
    handed = commands;
    mainQueue();
    prepareSuddenEnds();
    holdStandardStreams();

    CLI::App app("Volvelle makes musical ideas: sixteen-track MIDI files from a library of phrases.",
                 "volvelle");
    app.require_subcommand(0, 1);
    app.footer("Without a command the window opens. Each command has a --help of its own.\nExample: volvelle "
               "generate --out Idea.mid");
    Request request;
    addCommonOptions(app, request);
    addGenerate(app, request);
    addInspect(app, request);
    addLibrary(app, request);
    addPlay(app, request, argv);
    addRecord(app, request, argv);
    addRender(app, request, argv);
    addPicture(app, request, argv);
    addApp(app, request, argv);
    try {
        app.parse(argc, argv);
        if (const auto word = unknownWord(app, request.app)) {
            return tellUnknownCommand(app, *word);
        }
        if (!app.get_subcommands().empty() && !request.app.files.empty()) {
            throw CLI::ExtrasError(namesOf(request.app.files));
        }
    } catch (const CLI::ParseError& error) {
        return tellMisuse(app, error, namesOf(request.app.files));
    }
    return run(request);
}

} // namespace volvelle
