#pragma once

#include "services/files/SafeFile.h"
#include "tests/services/documents/PlainDocument.h"
#include "tests/support/TemporaryFolder.h"

#include <cstdlib>
#include <gtest/gtest.h>

namespace volvelle::test {

// A folder for documents and one for the state of the program, both empty.
class Documents : public testing::Test {
protected:
    using Lines = std::vector<std::string>;
    using States = std::vector<int>;

    static constexpr auto forCreating = UIDocumentSaveOperation::forCreating;
    static constexpr auto forOverwriting = UIDocumentSaveOperation::forOverwriting;
    static constexpr auto done = UIDocumentChangeKind::done;
    static constexpr auto cleared = UIDocumentChangeKind::cleared;

    Documents() { setenv("XDG_STATE_HOME", states.path.c_str(), 1); }

    ~Documents() override { unsetenv("XDG_STATE_HOME"); }

    static std::string contentOf(const std::filesystem::path& file)
    {
        std::vector<std::uint8_t> bytes;
        return readFile(file, bytes) == noErr ? std::string(bytes.begin(), bytes.end()) : "unread";
    }

    // An open document on "a.mid" that holds "old".
    std::shared_ptr<PlainDocument> opened()
    {
        auto document = std::make_shared<PlainDocument>(folder.write("a.mid", "old"));
        EXPECT_EQ(document->open(), "yes");
        document->takeCalls();
        return document;
    }

    // Where versions of a file in the folder stand.
    std::filesystem::path versionsOf(const char* kind, const char* name) const
    {
        return states.path / "volvelle/versions" / kind /
               std::filesystem::canonical(folder.path).relative_path() / name;
    }

    TemporaryFolder folder;
    TemporaryFolder states;
    const std::filesystem::path file = folder.path / "a.mid";
};

} // namespace volvelle::test
