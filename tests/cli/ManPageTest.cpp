#include "tests/cli/ProgramRun.h"

#include <gmock/gmock.h>

#include <fstream>
#include <iterator>
#include <set>
#include <sstream>

namespace volvelle::test {
namespace {

using testing::HasSubstr;
using Lines = std::multiset<std::string>;

std::string contents(const std::filesystem::path& file)
{
    std::ifstream stream(file);
    return {std::istreambuf_iterator<char>(stream), {}};
}

// Words with one space between them.
std::string spaced(const std::string& text)
{
    std::istringstream words(text);
    std::string result;
    for (std::string word; words >> word;) {
        result += (result.empty() ? "" : " ") + word;
    }
    return result;
}

// A line of the page without macros of fonts, their quotation marks, and escapes.
std::string plain(std::string line)
{
    const bool isMacro = line.starts_with(".B");
    if (isMacro) {
        line.erase(0, line.find(' '));
    }
    std::string result;
    for (const char c : line) {
        if (c != '\\' && !(isMacro && c == '"')) {
            result += c;
        }
    }
    return result;
}

// The options of a help: "--out F.mid the file to write", without --help itself.
Lines optionsOfHelp(const std::string& help)
{
    Lines options;
    const std::size_t begin = help.find("\nOptions:\n");
    std::istringstream lines(help.substr(begin, help.find("\n\n", begin + 1) - begin));
    for (std::string line; std::getline(lines, line);) {
        if (line.starts_with("  --")) {
            options.insert(spaced(line));
        }
    }
    return options;
}

class ManPage : public ProgramRun {
protected:
    // What stands below a headline, up to the next.
    std::string section(const std::string& headline) const
    {
        const std::size_t begin = page.find(headline + "\n");
        EXPECT_NE(begin, std::string::npos) << headline;
        return page.substr(begin, page.find("\n.S", begin) - begin);
    }

    static Lines optionsOf(const std::string& text)
    {
        Lines options;
        std::size_t at = text.find("\n.TP\n");
        while (at != std::string::npos) {
            const std::size_t next = text.find("\n.TP\n", at + 1);
            std::istringstream lines(text.substr(at + 5, next - at - 5));
            std::string option;
            for (std::string line; std::getline(lines, line);) {
                option += plain(line) + " ";
            }
            options.insert(spaced(option));
            at = next;
        }
        return options;
    }

    const std::string page = contents(VOLVELLE_MAN_PAGE);
};

TEST_F(ManPage, TheOptionsOfEachCommandAreThoseOfItsHelp)
{
    for (const char* command : {"generate", "inspect", "play", "record", "render", "picture", "library check",
                                "library compile", "library hear"}) {
        EXPECT_EQ(optionsOf(section(std::string(".SS ") + command)),
                  optionsOfHelp(volvelle(std::string(command) + " --help").output))
            << command;
    }
}

TEST_F(ManPage, TheCommonOptionsAreThoseOfTheHelp)
{
    Lines options = optionsOf(section(".SH OPTIONS"));
    EXPECT_EQ(options.erase("--help Print this help message and exit; each command has a help of its own"),
              1U);
    EXPECT_EQ(options, optionsOfHelp(volvelle("--help").output));
}

TEST_F(ManPage, ItNamesEveryCommandAndTheVersion)
{
    std::string help = volvelle("--help").output;
    help = help.substr(help.find("\nSubcommands:\n") + 14);
    std::istringstream lines(help.substr(0, help.find("\n\n")));
    for (std::string line; std::getline(lines, line);) {
        EXPECT_THAT(page, HasSubstr("\n.SS " + spaced(line).substr(0, spaced(line).find(' '))));
    }
    std::string version = spaced(volvelle("--version").output);
    version.front() = 'V';
    EXPECT_THAT(page, HasSubstr("\"" + version + "\""));
}

} // namespace
} // namespace volvelle::test
