#include "base/Text.h"
#include "cli/CommandRequest.h"
#include "cli/GenerateCommand.h"
#include "cli/InspectCommand.h"
#include "cli/LibraryCheckCommand.h"
#include "cli/LibraryCompileCommand.h"
#include "cli/LibraryHearCommand.h"

#include <filesystem>
#include <limits>
#include <string>

namespace volvelle {

namespace {

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
    CLI::App& command = addCommand(app, "inspect", "Show what MIDI files hold",
                                   "Also --verbose.\nExample: volvelle inspect Idea.mid --json");
    command.add_option("FILE", request.inspect.files, "the MIDI files")
        ->required()
        ->option_text("F.mid ... (required)");
    command.add_flag("--json", request.inspect.json,
                     "as JSON, a line for each file; without the console lines");
    command.callback([&request] {
        request.action = [&request](CommandOutput& output) { return runInspect(request.inspect, output); };
    });
}

void addLibraryCheck(CLI::App& library, Request& request)
{
    CLI::App& check =
        addCommand(library, "check", "Load every phrase as the generator does, and hold the rules",
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
    CLI::App& compile = addCommand(library, "compile", "Turn text scores and MIDI files into phrases",
                                   "Also --verbose, --quiet.\n"
                                   "Example: volvelle library compile library phrases");
    compile
        .add_option("SCORES", request.libraryCompile.scores,
                    "folder of the scores, or of MIDI files of 16 beats in their place")
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

void addLibraryHear(CLI::App& library, Request& request)
{
    CLI::App& hear =
        addCommand(library, "hear", "Play a score in three new arrangements",
                   "Also --resources DIR, --verbose, --quiet.\n"
                   "Example: volvelle library hear library/leads/004-three-coins-one-pocket.score");
    LibraryHearOptions& options = request.libraryHear;
    hear.add_option("SCORE", options.score, "the score or MIDI file, in a folder of its kind")
        ->required()
        ->option_text("(required)");
    hear.add_option("--out", options.out,
                    "folder that keeps the three as MIDI files, under the next free numbers; none is kept "
                    "without it")
        ->option_text("DIR");
    hear.add_option("--port", options.port, "a MIDI port of another program; the sound device without it")
        ->option_text("NAME");
    hear.add_option("--bank", options.bank, "the sound bank; the best one installed without it")
        ->option_text("F");
    hear.callback([&request] {
        request.action = [&request](CommandOutput& output) {
            return runLibraryHear(request.libraryHear, output);
        };
    });
}

void addLibrary(CLI::App& app, Request& request)
{
    CLI::App& library = addCommand(app, "library", "Check, compile or hear the phrase library",
                                   "Example: volvelle library check");
    library.require_subcommand(1);
    addLibraryCheck(library, request);
    addLibraryCompile(library, request);
    addLibraryHear(library, request);
}

} // namespace

void addOwnCommands(CLI::App& app, Request& request)
{
    addGenerate(app, request);
    addInspect(app, request);
    addLibrary(app, request);
}

} // namespace volvelle
