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

constexpr int formOfPictures = 1; // raised when they look otherwise
const QString notesKey = "Notes";

QString cached(const fs::path& folder, const Thumbnails::Key& key)
{
    return QFile::decodeName((folder / key.name().toStdString()).c_str());
}

std::optional<Thumbnails::Thumbnail> read(const QString& file)
{
    Thumbnails::Thumbnail thumbnail{QImage(file), -1};
    bool isNumber = false;
    thumbnail.notes = thumbnail.disc.text(notesKey).toInt(&isNumber);
    return thumbnail.disc.isNull() || !isNumber ? std::nullopt : std::optional(thumbnail);
}

void write(const QString& file, Thumbnails::Thumbnail thumbnail)
{
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
    hash.addData(QString(" %1 %2 %3 %4 %5")
                     .arg(modified)
                     .arg(size)
                     .arg(side * ratio)
                     .arg(static_cast<int>(theme))
                     .arg(formOfPictures)
                     .toUtf8());
    return hash.result().toHex() + ".png";
}

Thumbnails::Thumbnails(fs::path where) : folder(std::move(where)), pool(std::make_unique<QThreadPool>())
{
    pool->setMaxThreadCount(1);
    pool->setThreadPriority(QThread::LowPriority);
    if (!folder.empty()) {
        QDir().mkpath(QFile::decodeName(folder.c_str()));
    }
}

Thumbnails::~Thumbnails()
{
    waiting.clear();
    pool->waitForDone();
}

fs::path Thumbnails::usualFolder()
{
    const QString cache = QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation);
    return cache.isEmpty() ? fs::path() : fs::path(cache.toStdString()) / "volvelle" / "tiles";
}

Thumbnails::Thumbnail Thumbnails::make(const Key& key)
{
    FileCircle circle(key.file);
    Thumbnail thumbnail;
    thumbnail.notes = circle.notes();
    thumbnail.disc = smallDiscImage(circle, key.side, key.ratio, key.theme);
    return thumbnail;
}

std::optional<Thumbnails::Thumbnail> Thumbnails::find(const Key& key)
{
    const auto found = known.find(key.name().toStdString());
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
    pool->start([this, key] {
        const QString file = folder.empty() ? QString() : cached(folder, key);
        auto thumbnail = file.isEmpty() ? std::nullopt : read(file);
        if (!thumbnail) {
            thumbnail = make(key);
            if (!file.isEmpty()) {
                write(file, *thumbnail);
            }
        }
        QMetaObject::invokeMethod(
            this, [this, key, made = *thumbnail] { take(key, made); }, Qt::QueuedConnection);
    });
}

void Thumbnails::take(const Key& key, const Thumbnail& thumbnail)
{
    isMaking = false;
    const std::string name = key.name().toStdString();
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
    Q_EMIT made(QFile::decodeName(key.file.c_str()));
    begin();
}

} // namespace volvelle
