#include "cli/CommandLine.h"

#include "base/Console.h"
#include "base/MainQueue.h"
#include "base/Paths.h"
#include "base/Text.h"
#include "cli/CommandRequest.h"
#include "cli/NearestName.h"
#include "cli/SuddenEnds.h"
#include "services/files/FileNames.h"

#include <algorithm>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace volvelle {

namespace {

// For all commands: they are understood before and after the name of one.
void addCommonOptions(CLI::App& app, Request& request)
{
    app.add_option("--resources", request.common.resources, "folder that holds Phrases and Phrases2")
        ->option_text("DIR");
    app.add_flag("--verbose", request.common.verbose, "show the console lines");
    app.add_flag("--quiet", request.common.quiet, "say nothing but what was asked for");
    app.set_version_flag("--version", "volvelle " VOLVELLE_VERSION, "tell the version");
}

// The device of standard output stands for standard output: opened as a file, it would write over what stands
// there.
void nameStandardOutput(Request& request)
{
    const auto isDevice = [](const std::filesystem::path& out) {
        return out == "/dev/stdout" || out == "/dev/fd/1" || out == "/proc/self/fd/1";
    };
    for (auto* const out :
         {&request.generate.out, &request.generate.png, &request.generate.wav, &request.record.out}) {
        if (out->has_value() && isDevice(**out)) {
            *out = standardOutputName;
        }
    }
    for (auto* const out : {&request.render.out, &request.picture.out}) {
        if (isDevice(*out)) {
            *out = standardOutputName;
        }
    }
}

int run(const Request& request)
{
    StandardOutputSink sink;
    const bool isFree = request.generate.out != standardOutputName &&
                        request.render.out != standardOutputName &&
                        request.record.out != standardOutputName &&
                        request.picture.out != standardOutputName && !request.inspect.json;
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

// Whether an option of that name, of the program or of a command, takes a value.
bool takesValue(const CLI::App& app, const std::string& name)
{
    const CLI::Option* option = app.get_option_no_throw(name);
    if (option != nullptr && option->get_items_expected_max() > 0) {
        return true;
    }
    const auto commands = app.get_subcommands([](const CLI::App*) { return true; });
    return std::ranges::any_of(commands,
                               [&name](const CLI::App* command) { return takesValue(*command, name); });
}

// The arguments, the last one first. "--out=" becomes two words, as the next one would be its value else.
std::vector<std::string> wordsOf(const CLI::App& app, int argc, char** argv)
{
    std::vector<std::string> words;
    bool areOptions = true;
    for (int i = 1; i < argc; ++i) {
        const std::string word = argv[i];
        const std::string name = word.substr(0, word.find('='));
        areOptions = areOptions && word != "--";
        if (areOptions && name.size() + 1 == word.size() && takesValue(app, name)) {
            words.insert(words.end(), {name, ""});
        } else {
            words.push_back(word);
        }
    }
    std::ranges::reverse(words);
    return words;
}

// A plain line where an option has an empty value, else nothing.
std::string emptyValue(const CLI::App& app)
{
    for (const CLI::Option* option : app.get_options()) {
        const auto& values = option->results();
        if (!option->get_lnames().empty() && std::ranges::find(values, "") != values.end()) {
            const std::string name = option->get_name();
            return name == "--port" ? "A MIDI port has a name: --port list shows them all."
                                    : concat(name, " is given an empty value.");
        }
    }
    for (const CLI::App* command : app.get_subcommands()) {
        if (std::string line = emptyValue(*command); !line.empty()) {
            return line;
        }
    }
    return "";
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
    CommandOutput output(false);
    if (error.get_exit_code() == 0) {
        app.exit(error); // help or the version
        return output.finish(exitDone);
    }
    output.misuse(error.what());
    return output.misuse("Run with --help for more information.");
}

} // namespace

CLI::App& addCommand(CLI::App& app, const std::string& name, const std::string& purpose,
                     const std::string& footer)
{
    CLI::App& command = *app.add_subcommand(name, purpose);
    command.fallthrough();
    command.footer(footer);
    return command;
}

int runCommandLine(int argc, char** argv, const HandedCommands& commands)
{
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
    addOwnCommands(app, request);
    addHandedCommands(app, request, commands, argv);
    try {
        app.parse(wordsOf(app, argc, argv));
        if (const std::string line = emptyValue(app); !line.empty()) {
            return CommandOutput(false).misuse(line);
        }
        if (const auto word = unknownWord(app, request.app)) {
            return tellUnknownCommand(app, *word);
        }
        if (!app.get_subcommands().empty() && !request.app.files.empty()) {
            throw CLI::ExtrasError(namesOf(request.app.files));
        }
    } catch (const CLI::ParseError& error) {
        return tellMisuse(app, error, namesOf(request.app.files));
    }
    nameStandardOutput(request);
    return run(request);
}

} // namespace volvelle
