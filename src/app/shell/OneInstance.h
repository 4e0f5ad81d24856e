#pragma once

#include <QLocalServer>
#include <QLockFile>
#include <QObject>
#include <QStringList>

#include <functional>
#include <memory>

class QLocalSocket;

namespace volvelle {

// One running application for each user and display: a second start hands its files to the first, which
// comes to the front. [main]
class OneInstance : public QObject {
public:
    // `files` are absolute paths, none for a start without any.
    using Receive = std::function<void(const QStringList& files)>;

    explicit OneInstance(QString place);
    ~OneInstance() override;

    enum class Start {
        first,      // this process listens now
        handedOver, // another one took the files: this one ends
        refused     // another one runs and did not take them: this one ends too
    };

    // A first one that does not answer in time, and drops the files then, or a place where none can listen,
    // counts as none.
    Start begin(const QStringList& files, Receive handler);

    // From now on another process is the first: before what this one still has to do.
    void end();

    // The name for this user and display.
    static QString usualName();

private:
    enum class Answer { none, absent, brokenOff, taken, refused };

    Answer handOver(const QStringList& files) const;
    void listen();
    bool isOfNobody() const; // the lock
    void take();
    void takeFrom(QLocalSocket& socket);

    const QString name;
    QLockFile lock;
    QLocalServer server;
    Receive receive;
};

} // namespace volvelle
