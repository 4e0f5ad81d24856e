#include "cli/CommandLine.h"
#include "cli/sound/PlayCommand.h"
#include "cli/sound/RenderCommand.h"

int main(int argc, char** argv)
{
    const volvelle::SoundCommands sound{volvelle::runPlay, volvelle::runRender};
    return volvelle::runCommandLine(argc, argv, &sound);
}
