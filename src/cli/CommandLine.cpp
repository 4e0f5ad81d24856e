#include "cli/CommandLine.h"

#include "base/Console.h"
#include "base/FatalStop.h"
#include "base/MainQueue.h"
#include "base/Paths.h"
#include "base/PendingFiles.h"
#include "cli/CommandOutput.h"
#include "cli/GenerateCommand.h"
#include "cli/InspectCommand.h"
#include "cli/LibraryCheckCommand.h"
#include "cli/LibraryCompileCommand.h"

#include <CLI/CLI.hpp>

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <limits>
#include <unistd.h>

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
    RenderOptions render;
    Action action;
};

const SoundCommands* soundCommands = nullptr; // of this process, null for none

void endAfterFatalStop()
{
    removePendingFiles();
    std::_Exit(exitFailed);
}

void endAfterSignal(int signal)
{
    removePendingFiles();
    _exit(128 + signal);
}

void addCommonOptions(CLI::App& command, Request& request)
{
    command.add_option("--resources", request.common.resources, "folder that holds Phrases and Phrases2")
        ->option_text("DIR");
    command.add_flag("--verbose", request.common.verbose, "show the console lines");
    command.add_flag("--quiet", request.common.quiet, "say nothing but what was asked for");
}

void addGenerate(CLI::App& app, Request& request)
{
    CLI::App& command = *app.add_subcommand("generate", "Write a new musical idea as a MIDI file");
    GenerateOptions& options = request.generate;
    const CLI::Range positive(1, std::numeric_limits<int>::max(), "POSITIVE");
    command.add_option("--out", options.out, "the file to write")->option_text("F.mid");
    command.add_option("--count", options.count, "number of files, \"NAME 1.mid\" upward")
        ->check(positive)
        ->option_text("N");
    command.add_option("--long", options.longCount, "number of arrangements in a file")
        ->check(positive)
        ->option_text("N");
    addCommonOptions(command, request);
    command.callback([&request] {
        request.action = [&request](CommandOutput& output) { return runGenerate(request.generate, output); };
    });
}

void addInspect(CLI::App& app, Request& request)
{
    CLI::App& command = *app.add_subcommand("inspect", "Show what a MIDI file holds");
    command.add_option("FILE", request.inspect.file, "the MIDI file")->required();
    command.add_flag("--json", request.inspect.json, "as JSON");
    addCommonOptions(command, request);
    command.callback([&request] {
        request.action = [&request](CommandOutput& output) { return runInspect(request.inspect, output); };
    });
}

void addLibrary(CLI::App& app, Request& request)
{
    CLI::App& library = *app.add_subcommand("library", "Check or compile the phrase library");
    library.require_subcommand(1);

    CLI::App& check = *library.add_subcommand("check", "Load every phrase as the generator does");
    check.add_option("DIR", request.libraryCheck.folder, "folder that holds Phrases and Phrases2");
    check.add_flag("--ear", request.libraryCheck.ear, "measure 1,000 arrangements, and hold their bounds");
    addCommonOptions(check, request);
    check.callback([&request] {
        request.action = [&request](CommandOutput& output) {
            return runLibraryCheck(request.libraryCheck, output);
        };
    });

    CLI::App& compile = *library.add_subcommand("compile", "Turn text scores into phrases");
    compile.add_option("SCORES", request.libraryCompile.scores, "folder of the scores")->required();
    compile.add_option("DIR", request.libraryCompile.out, "folder for Phrases and Phrases2")->required();
    addCommonOptions(compile, request);
    compile.callback([&request] {
        request.action = [&request](CommandOutput& output) {
            return runLibraryCompile(request.libraryCompile, output);
        };
    });
}

// Replaces this process by the program with sound beside it. Returns only where that fails.
int handOver(char** argv, CommandOutput& output)
{
    std::error_code error;
    const auto self = std::filesystem::read_symlink("/proc/self/exe", error);
    const std::string other = (self.parent_path() / "volvelle-sound").string();
    execv(other.c_str(), argv);
    return output.failure("The program 'volvelle-sound' is missing beside this one: it plays and renders.");
}

void addPlay(CLI::App& app, Request& request, char** argv)
{
    CLI::App& command = *app.add_subcommand("play", "Play a MIDI file");
    PlayOptions& options = request.play;
    auto* file = command.add_option("FILE", options.file, "the MIDI file");
    command.add_option("--port", options.port, "a MIDI port of another program, or \"list\"")
        ->option_text("NAME|list");
    command.add_option("--bank", options.bank, "the sound bank")->option_text("F");
    addCommonOptions(command, request);
    command.callback([&request, file, argv] {
        if (file->count() == 0 && request.play.port != "list") {
            throw CLI::RequiredError("FILE");
        }
        request.action = [&request, argv](CommandOutput& output) {
            return soundCommands != nullptr ? soundCommands->play(request.play, output)
                                            : handOver(argv, output);
        };
    });
}

void addRender(CLI::App& app, Request& request, char** argv)
{
    CLI::App& command = *app.add_subcommand("render", "Turn a MIDI file into sound");
    RenderOptions& options = request.render;
    command.add_option("FILE", options.file, "the MIDI file")->required();
    command.add_option("--out", options.out, "the file to write: .wav, .flac or .ogg")
        ->required()
        ->option_text("F");
    command.add_option("--bank", options.bank, "the sound bank")->option_text("F");
    command.add_option("--rate", options.rate, "frames per second, 8000 to 192000")
        ->check(CLI::Range(8000, 192000))
        ->option_text("N");
    command.add_option("--cores", options.cores, "cores to use, all without it")
        ->check(CLI::Range(1, 64))
        ->option_text("N");
    addCommonOptions(command, request);
    command.callback([&request, argv] {
        request.action = [&request, argv](CommandOutput& output) {
            return soundCommands != nullptr ? soundCommands->render(request.render, output)
                                            : handOver(argv, output);
        };
    });
}

int run(const Request& request)
{
    StandardOutputSink sink;
    if (request.common.verbose) {
        console().setSink(&sink);
    }
    if (request.common.resources) {
        setResourcesFolder(request.common.resources);
    }
    CommandOutput output(request.common.quiet);
    const int status = request.action(output);
    mainQueue().drain();
    console().setSink(nullptr);
    return status;
}

} // namespace

int runCommandLine(int argc, char** argv, const SoundCommands* sound)
{
    soundCommands = sound;
    mainQueue();
    setFinalStep(endAfterFatalStop);
    std::signal(SIGINT, endAfterSignal);
    std::signal(SIGTERM, endAfterSignal);

    CLI::App app("Volvelle makes musical ideas: sixteen-track MIDI files from a library of phrases.",
                 "volvelle");
    app.set_version_flag("--version", "volvelle " VOLVELLE_VERSION);
    app.require_subcommand(1);
    Request request;
    addGenerate(app, request);
    addInspect(app, request);
    addLibrary(app, request);
    addPlay(app, request, argv);
    addRender(app, request, argv);
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? exitDone : exitUsage;
    }
    return run(request);
}

} // namespace volvelle
