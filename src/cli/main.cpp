#include "cli/CommandLine.h"

int main(int argc, char** argv)
{
    return volvelle::runCommandLine(argc, argv);
}
