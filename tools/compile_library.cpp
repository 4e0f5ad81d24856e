#include "scores/ScoreCompiler.h"

#include <cstdio>

// compile-library SCORES OUT: a folder of scores to a folder of phrases; each fault is a line with its place.
int main(int argc, char** argv)
{
    if (argc != 3) {
        std::fputs("usage: compile-library SCORES OUT\n", stderr);
        return 2;
    }
    volvelle::LibraryReport report;
    const bool done = volvelle::compileLibrary(argv[1], argv[2], report);
    for (const auto& error : report.errors) {
        const bool isOfScores = !error.starts_with('\'');
        std::fprintf(stderr, "%s%s%s\n", isOfScores ? argv[1] : "", isOfScores ? "/" : "", error.c_str());
    }
    return done ? 0 : 1;
}
