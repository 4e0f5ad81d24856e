#include "cli/CommandLine.h"
#include "cli/sound/PlayCommand.h"
#include "cli/sound/RecordCommand.h"
#include "cli/sound/RenderCommand.h"

int main(int argc, char** argv)
{
    return volvelle::runCommandLine(
        argc, argv,
        {.play = volvelle::runPlay, .record = volvelle::runRecord, .render = volvelle::runRender});
}
