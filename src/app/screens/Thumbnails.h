#pragma once

#include "app/screens/Tokens.h"

#include <QImage>
#include <QObject>
#include <QString>

#include <cstdint>
#include <deque>
#include <filesystem>
#include <memory>
#include <optional>
#include <stop_token>
#include <string>
#include <unordered_map>

class QThreadPool;

namespace volvelle {

// The small discs of documents, made on a thread of their own and kept in the cache folder. A file that
// changed is made anew. [main]
class Thumbnails : public QObject {
    Q_OBJECT

public:
    // What tells one picture from another.
    struct Key {
        std::filesystem::path file;
        std::int64_t modified = 0;    // seconds since 1970
        std::int64_t nanoseconds = 0; // and beyond
        std::int64_t size = 0;        // bytes
        int side = 0;                 // lengths
        double ratio = 1.0;           // pixels of the screen to a length
        Theme theme = Theme::dark;

        bool operator==(const Key&) const = default;
        QString name() const;    // of its file in the cache: one for all that the document was
        QString version() const; // what the document was
    };

    struct Thumbnail {
        QImage disc;
        int notes = -1; // unknown: the file could not be read, or is too large
    };

    // Pictures are kept in `folder`, nowhere where it is empty; the oldest go where there are too many.
    explicit Thumbnails(std::filesystem::path where);
    ~Thumbnails() override; // gives up the picture that is being made

    // The picture, where it is there; else it is made and told. What was asked for last comes first.
    std::optional<Thumbnail> find(const Key& key);

    // Makes one at once, from the file; asked to stop, what there is of it. [any]
    static Thumbnail make(const Key& key, const std::stop_token& stop = {});

    // "volvelle/tiles" in the user's cache folder.
    static std::filesystem::path usualFolder();

Q_SIGNALS:
    void made(const std::filesystem::path& file);

private:
    void begin();
    void makeOnThread(const Key& key);
    void prune() const;
    void take(const Key& key, const Thumbnail& thumbnail);

    static constexpr qsizetype mostBytes = 128 << 20;    // of pictures in memory
    static constexpr qint64 mostOnDisk = 64 << 20;       // bytes of pictures in the folder
    static constexpr std::int64_t mostOfAFile = 2 << 20; // bytes; a larger one would hold up all others
    static constexpr std::size_t mostWaiting = 1024;     // more than a screen holds; older wishes are dropped

    const std::filesystem::path folder;
    std::unordered_map<std::string, Thumbnail> known; // by name and version
    std::deque<std::string> order;                    // of them, the oldest first
    qsizetype bytes = 0;                              // of them
    std::deque<Key> waiting;                          // the newest first
    bool isMaking = false;
    std::stop_source end;
    std::unique_ptr<QThreadPool> pool;
};

} // namespace volvelle
