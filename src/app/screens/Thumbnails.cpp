#include "app/screens/Thumbnails.h"

#include "app/document/FileCircle.h"
#include "app/screens/DiscImage.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QSaveFile>
#include <QStandardPaths>
#include <QThreadPool>

#include <algorithm>
#include <utility>

namespace volvelle {

namespace {

namespace fs = std::filesystem;

constexpr int formOfPictures = 2; // raised when they look otherwise
const QString notesKey = "Notes";
const QString versionKey = "Version";

QString cached(const fs::path& folder, const Thumbnails::Key& key)
{
    return QFile::decodeName((folder / key.name().toStdString()).c_str());
}

std::string mark(const Thumbnails::Key& key)
{
    return (key.name() + key.version()).toStdString();
}

// The picture of that version of the document, where it is there.
std::optional<Thumbnails::Thumbnail> read(const QString& file, const QString& version)
{
    Thumbnails::Thumbnail thumbnail{QImage(file), -1};
    bool isNumber = false;
    thumbnail.notes = thumbnail.disc.text(notesKey).toInt(&isNumber);
    const bool isOld = thumbnail.disc.text(versionKey) != version;
    return thumbnail.disc.isNull() || !isNumber || isOld ? std::nullopt : std::optional(thumbnail);
}

void write(const QString& file, Thumbnails::Thumbnail thumbnail, const QString& version)
{
    thumbnail.disc.setText(versionKey, version);
    thumbnail.disc.setText(notesKey, QString::number(thumbnail.notes));
    QSaveFile out(file);
    if (out.open(QIODevice::WriteOnly) && thumbnail.disc.save(&out, "PNG")) {
        out.commit();
    }
}

} // namespace

QString Thumbnails::Key::name() const
{
    QCryptographicHash hash(QCryptographicHash::Sha1);
    hash.addData(QByteArray::fromStdString(file.string()));
    hash.addData(
        QString(" %1 %2 %3").arg(side * ratio).arg(static_cast<int>(theme)).arg(formOfPictures).toUtf8());
    return hash.result().toHex() + ".png";
}

QString Thumbnails::Key::version() const
{
    return QString(" %1.%2 %3").arg(modified).arg(nanoseconds).arg(size);
}

Thumbnails::Thumbnails(fs::path where) : folder(std::move(where)), pool(std::make_unique<QThreadPool>())
{
    pool->setMaxThreadCount(1);
    pool->setThreadPriority(QThread::LowPriority);
    if (!folder.empty()) {
        QDir().mkpath(QFile::decodeName(folder.c_str()));
        pool->start([this] { prune(); });
    }
}

Thumbnails::~Thumbnails()
{
    waiting.clear();
    end.request_stop();
    pool->waitForDone();
}

void Thumbnails::prune() const
{
    qint64 kept = 0;
    const QDir place(QFile::decodeName(folder.c_str()));
    for (const QFileInfo& file : place.entryInfoList({"*.png"}, QDir::Files, QDir::Time)) {
        kept += file.size();
        if (kept > mostOnDisk) {
            QFile::remove(file.filePath());
        }
    }
}

fs::path Thumbnails::usualFolder()
{
    const QString cache = QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation);
    return cache.isEmpty() ? fs::path() : fs::path(cache.toStdString()) / "volvelle" / "tiles";
}

Thumbnails::Thumbnail Thumbnails::make(const Key& key, const std::stop_token& stop)
{
    const bool isTooLarge = key.size > mostOfAFile;
    FileCircle circle(isTooLarge ? fs::path() : key.file, stop);
    Thumbnail thumbnail;
    thumbnail.notes = circle.notes();
    thumbnail.disc = smallDiscImage(circle, key.side, key.ratio, key.theme, stop);
    return thumbnail;
}

std::optional<Thumbnails::Thumbnail> Thumbnails::find(const Key& key)
{
    const auto found = known.find(mark(key));
    if (found != known.end()) {
        return found->second;
    }
    std::erase(waiting, key);
    waiting.push_front(key);
    if (waiting.size() > mostWaiting) {
        waiting.pop_back();
    }
    begin();
    return std::nullopt;
}

void Thumbnails::begin()
{
    if (isMaking || waiting.empty()) {
        return;
    }
    isMaking = true;
    const Key key = waiting.front();
    waiting.pop_front();
    pool->start([this, key] { makeOnThread(key); });
}

void Thumbnails::makeOnThread(const Key& key)
{
    const QString file = folder.empty() ? QString() : cached(folder, key);
    auto thumbnail = file.isEmpty() ? std::nullopt : read(file, key.version());
    if (!thumbnail) {
        thumbnail = make(key, end.get_token());
        if (end.stop_requested()) {
            return;
        }
        if (!file.isEmpty()) {
            write(file, *thumbnail, key.version());
        }
    }
    QMetaObject::invokeMethod(
        this, [this, key, made = *thumbnail] { take(key, made); }, Qt::QueuedConnection);
}

void Thumbnails::take(const Key& key, const Thumbnail& thumbnail)
{
    isMaking = false;
    const std::string name = mark(key);
    if (known.emplace(name, thumbnail).second) {
        order.push_back(name);
        bytes += thumbnail.disc.sizeInBytes();
    }
    while (bytes > mostBytes && order.size() > 1) {
        const auto oldest = known.find(order.front());
        bytes -= oldest->second.disc.sizeInBytes();
        known.erase(oldest);
        order.pop_front();
    }
    Q_EMIT made(key.file);
    begin();
}

} // namespace volvelle
