#include "cli/CommandLine.h"
#include "cli/sound/PlayCommand.h"
#include "cli/sound/RenderCommand.h"
#include "services/audiodevice/AudioFileWriter.h"

int main(int argc, char** argv)
{
    const volvelle::SoundCommands sound{volvelle::runPlay, volvelle::runRender,
                                        volvelle::removePendingAudioFiles};
    return volvelle::runCommandLine(argc, argv, &sound);
}
