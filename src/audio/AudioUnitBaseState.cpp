#include "audio/AudioUnitBase.h"
#include "audio/PropertyList.h"
#include "base/Console.h"
#include "base/Text.h"
#include "services/files/SafeFile.h"

#include <system_error>

namespace volvelle {

void AudioUnitBase::saveFullState(const std::filesystem::path& url) const
{
    if (!audioUnit) {
        directPrint("AudioUnitBase::saveFullState(): ERROR: The audio unit (", className(), ") is nil.");
        return;
    }
    const auto bytes = propertyListData(audioUnit->fullState());
    if (!bytes) {
        directPrint("AudioUnitBase::saveFullState(): FEHLER: Die Daten konnten nicht serialisiert werden.");
        return;
    }
    if (replaceFile(url, *bytes, true) != noErr) {
        directPrint("AudioUnitBase::saveFullState(): ERROR: The file could not be written.");
    }
}

void AudioUnitBase::loadFullState(const std::filesystem::path& url)
{
    if (!audioUnit) {
        directPrint("AudioUnitBase::loadFullState(): ERROR: The audio unit (", className(), ") is nil.");
        return;
    }
    std::error_code missing;
    if (!std::filesystem::exists(url, missing)) {
        directPrint("AudioUnitBase::loadFullState(): ERROR: The path ", url.string(),
                    " for loading presets does not exist.");
        return;
    }
    std::vector<std::uint8_t> bytes;
    if (readFile(url, bytes) != noErr) {
        directPrint("AudioUnitBase::loadFullState(): ERROR: The file is not readable.");
        return;
    }
    const auto state = propertyListFromData(bytes);
    if (!state) {
        directPrint("AudioUnitBase::loadFullState(): FEHLER: Die Datei konnte nicht eingelesen werden: ",
                    state.error(), ", Format: ", propertyListXMLFormat);
        return;
    }
    audioUnit->setFullState(*state);
}

} // namespace volvelle
