#include "app/shell/PictureCommand.h"

#include "app/control/DocumentOverview.h"
#include "app/document/FileCircle.h"
#include "app/screens/DiscImage.h"
#include "base/Text.h"
#include "cli/IdeaCompanions.h"
#include "services/files/FileFailure.h"
#include "services/files/NewFile.h"
#include "services/files/SafeFile.h"

#include <QBuffer>
#include <QGuiApplication>
#include <QPainter>

#include <cerrno>
#include <unistd.h>

namespace volvelle {

namespace {

// Reads a file and the number of its tracks.
OSStatus read(const std::filesystem::path& file, std::vector<std::uint8_t>& data, std::uint32_t& tracks)
{
    MusicSequence sequence;
    OSStatus status = readFile(file, data);
    status = status == noErr ? NewMusicSequenceFromData(data, kMusicSequenceLoadSMF_PreserveTracks, sequence)
                             : status;
    return status == noErr ? MusicSequenceGetTrackCount(sequence, tracks) : status;
}

QByteArray pngOf(FileCircle& circle, const std::vector<std::uint8_t>& data, const PictureOptions& options)
{
    const QImage disc =
        documentDiscImage(circle, overviewOf(data), options.beat, options.size, 1.0, Theme::dark);
    QImage picture(disc.size(), QImage::Format_RGB32);
    picture.fill(Tokens::of(Theme::dark).bg);
    QPainter(&picture).drawImage(0, 0, disc);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    picture.save(&buffer, "PNG");
    return bytes;
}

int write(const std::filesystem::path& out, const QByteArray& png)
{
    const std::span bytes(reinterpret_cast<const std::uint8_t*>(png.data()),
                          static_cast<std::size_t>(png.size()));
    if (out == standardOutputName) {
        return writeAll(STDOUT_FILENO, bytes.data(), png.size());
    }
    return putFile(out, bytes, true);
}

} // namespace

int runPicture(const PictureOptions& options, CommandOutput& output)
{
    const bool isNamed = options.out != standardOutputName;
    const std::filesystem::path out = isNamed ? options.out : "standard output";
    if (isNamed) {
        if (const std::string line = IdeaCompanions::misuseOfPicture(options.out, false); !line.empty()) {
            return output.misuse(line);
        }
    }
    std::vector<std::uint8_t> data;
    std::uint32_t tracks = 0;
    if (const OSStatus status = read(options.file, data, tracks); status != noErr) {
        return output.failure(readFailure(options.file, status));
    }
    if (tracks == 0) {
        return output.failure(trackFailure(options.file));
    }
    FileCircle circle(data);
    if (circle.notes() < 0) { // the memory did not suffice
        return output.failure(readFailure(options.file, fileIOErr));
    }
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_LOGGING_RULES", "*=false");
    int count = 1;
    char name[] = "volvelle";
    char* arguments[] = {name, nullptr};
    const QGuiApplication application(count, arguments);
    const QByteArray png = pngOf(circle, data, options);
    if (png.isEmpty()) {
        return output.failure(writeFailure(out, EIO));
    }
    if (const int failed = write(options.out, png); failed != 0) {
        return output.failure(writeFailure(out, failed));
    }
    if (isNamed) {
        output.remark(concat("Wrote '", options.out.string(), "'."));
    }
    return exitDone;
}

} // namespace volvelle
