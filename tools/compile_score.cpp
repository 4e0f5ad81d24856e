#include "scores/ScoreCompiler.h"

#include <algorithm>
#include <cstdio>
#include <string>
#include <string_view>

// compile-score FOLDER IN OUT: one score of that library folder to one phrase.
int main(int argc, char** argv)
{
    using namespace volvelle;
    if (argc != 4) {
        std::fputs("usage: compile-score FOLDER IN OUT\n", stderr);
        return 2;
    }
    const auto kind = std::ranges::find(allScoreKinds, std::string_view(argv[1]), scoreFolder);
    if (kind == allScoreKinds.end()) {
        std::fprintf(stderr, "compile-score: '%s' is no folder of the library\n", argv[1]);
        return 2;
    }
    std::string error;
    if (!compileScore(argv[2], argv[3], *kind, error)) {
        std::fprintf(stderr, "%s: %s\n", argv[2], error.c_str());
        return 1;
    }
    return 0;
}
