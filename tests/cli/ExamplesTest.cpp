#include "tests/cli/ProgramRun.h"
#include "tests/support/ProjectFolders.h"

#include <gmock/gmock.h>

#include <fstream>
#include <iterator>
#include <regex>
#include <set>

// What the texts and the helps show is there.
namespace volvelle::test {
namespace {

using Names = std::set<std::string>;

const std::vector<std::string> texts{"README.md", "library/README.md", "docs/library.md", "docs/volvelle.1"};

const std::vector<std::string> commands{
    "",        "generate",      "inspect",         "play",        "record", "render", "picture",
    "library", "library check", "library compile", "library hear"};

// The page's escapes are left out.
std::string contents(const std::string& name)
{
    std::ifstream stream(sourceFolder() / name);
    const std::string text{std::istreambuf_iterator<char>(stream), {}};
    return std::regex_replace(text, std::regex(R"(\\)"), "");
}

std::vector<std::smatch> matches(const std::string& text, const std::regex& form)
{
    return {std::sregex_iterator(text.begin(), text.end(), form), std::sregex_iterator()};
}

class Examples : public ProgramRun {
protected:
    std::string help(const std::string& command) const { return volvelle(command + " --help").output; }

    // Of the program or of one of its commands.
    Names commandsOf(const std::string& command) const
    {
        const std::string lines = help(command);
        const std::string below = lines.substr(std::min(lines.find("\nSubcommands:\n"), lines.size()));
        Names names;
        for (const auto& found : matches(below, std::regex(R"(\n  ([a-z]+) )"))) {
            names.insert(found[1]);
        }
        return names;
    }

    // The texts and the helps.
    std::vector<std::pair<std::string, std::string>> all() const
    {
        std::vector<std::pair<std::string, std::string>> result;
        for (const std::string& name : texts) {
            result.emplace_back(name, contents(name));
        }
        for (const std::string& command : commands) {
            result.emplace_back(command, help(command));
        }
        return result;
    }
};

TEST_F(Examples, EveryScoreIsThereThatIsNamed)
{
    const std::regex score(R"(library/[a-z-]+/([^\s`'"]+)\.score)");
    std::size_t count = 0;
    for (const auto& [place, text] : all()) {
        for (const auto& found : matches(text, score)) {
            const bool isForm = found[1].str().starts_with("NNN-");
            EXPECT_TRUE(isForm || std::filesystem::exists(sourceFolder() / found.str()))
                << place << ": " << found.str();
            ++count;
        }
    }
    EXPECT_GE(count, 5U);
}

TEST_F(Examples, EveryCommandIsOne)
{
    const std::regex command(R"((?:^|\n|`|'|\$ |Example: |\.B )(?:\./run|volvelle) ([a-z]+)(?: ([a-z]+))?)");
    const Names known = commandsOf("");
    const Names ofLibrary = commandsOf("library");
    EXPECT_THAT(known, testing::SizeIs(7));
    EXPECT_THAT(ofLibrary, testing::SizeIs(3));
    std::size_t count = 0;
    for (const auto& [place, text] : all()) {
        for (const auto& found : matches(text, command)) {
            EXPECT_TRUE(known.contains(found[1])) << place << ": " << found.str();
            EXPECT_TRUE(found[1] != "library" || ofLibrary.contains(found[2]))
                << place << ": " << found.str();
            ++count;
        }
    }
    EXPECT_GE(count, 30U);
}

TEST_F(Examples, EveryLinkLeadsToAFile)
{
    for (const std::string& name : texts) {
        const std::string text = contents(name);
        for (const auto& found : matches(text, std::regex(R"(\]\(([^)#:]+)\))"))) {
            const auto file = (sourceFolder() / name).parent_path() / found[1].str();
            EXPECT_TRUE(std::filesystem::exists(file)) << name << ": " << found[1];
        }
    }
}

} // namespace
} // namespace volvelle::test
