#pragma once

#include <QLocalServer>
#include <QLockFile>
#include <QObject>
#include <QStringList>

#include <functional>
#include <memory>

namespace volvelle {

// One running application for each user and display: a second start hands its files to the first, which
// comes to the front. [main]
class OneInstance : public QObject {
public:
    // `files` are absolute paths, none for a start without any.
    using Receive = std::function<void(const QStringList& files)>;

    explicit OneInstance(QString place);
    ~OneInstance() override;

    // True where this process is the first and listens now. False where another one took the files: this one
    // ends. A first one that does not answer, or a place where none can listen, counts as none: true.
    bool begin(const QStringList& files, Receive handler);

    // From now on another process is the first: before what this one still has to do.
    void end();

    // The name for this user and display.
    static QString usualName();

private:
    enum class Answer { none, absent, taken };

    Answer handOver(const QStringList& files) const;
    void listen();
    void take();

    const QString name;
    QLockFile lock;
    QLocalServer server;
    Receive receive;
};

} // namespace volvelle
