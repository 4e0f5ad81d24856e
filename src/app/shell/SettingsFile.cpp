#include "app/shell/SettingsFile.h"

#include "base/Console.h"
#include "base/PlainText.h"
#include "base/Text.h"
#include "services/files/FileFailure.h"
#include "services/files/FileNames.h"
#include "services/files/SafeFile.h"

#include <QFile>
#include <QVariant>

#include <utility>

namespace volvelle {

namespace {

const QString emptyKey = "%"; // which is no quoted key

QString quoted(const std::string& key)
{
    return key.empty() ? emptyKey : QString(QByteArray::fromStdString(key).toPercentEncoding());
}

std::string unquoted(const QString& key)
{
    return key == emptyKey ? "" : QByteArray::fromPercentEncoding(key.toUtf8()).toStdString();
}

// A kind that ends in this has its text as bytes, since it would not come back as it is.
const QString asBytes = " in bytes";

bool isPlain(const std::string& words)
{
    return QString::fromStdString(words).toStdString() == words;
}

QString kindOf(const SettingsValue& value)
{
    static constexpr const char* names[] = {"text",  "integer", "float", "double",
                                            "truth", "url",     "frame", "bytes"};
    const QString name = names[value.index()];
    return isPlain(text(value)) ? name : name + asBytes;
}

// A value as the text that follows its kind in the file.
QString bodyOf(const SettingsValue& value)
{
    if (const auto* held = std::get_if<std::vector<std::uint8_t>>(&value)) {
        return QByteArray(reinterpret_cast<const char*>(held->data()), static_cast<qsizetype>(held->size()))
            .toBase64();
    }
    if (const auto* frame = std::get_if<SettingsFrame>(&value)) {
        QStringList parts;
        for (const auto& [key, number] : *frame) {
            parts << quoted(key) + "=" + QString::fromStdString(text(number));
        }
        return parts.join('&');
    }
    const std::string words = text(value);
    return isPlain(words) ? QString::fromStdString(words) : QByteArray::fromStdString(words).toBase64();
}

SettingsFrame frameOf(const QString& body)
{
    SettingsFrame frame;
    for (const QString& part : body.split('&', Qt::SkipEmptyParts)) {
        const qsizetype at = part.indexOf('=');
        frame[unquoted(part.left(at))] = part.mid(at + 1).toFloat();
    }
    return frame;
}

std::optional<SettingsValue> valueOf(const QString& kind, const QString& body)
{
    if (kind.endsWith(asBytes)) {
        const std::string words = QByteArray::fromBase64(body.toUtf8()).toStdString();
        return kind == "url" + asBytes ? SettingsValue(SettingsURL{words}) : SettingsValue(words);
    }
    if (kind == "text") {
        return body.toStdString();
    }
    if (kind == "integer") {
        return static_cast<std::int64_t>(body.toLongLong());
    }
    if (kind == "float") {
        return body.toFloat();
    }
    if (kind == "double") {
        return body.toDouble();
    }
    if (kind == "truth") {
        return body == "true";
    }
    if (kind == "url") {
        return SettingsURL{body.toStdString()};
    }
    if (kind == "frame") {
        return frameOf(body);
    }
    if (kind == "bytes") {
        const QByteArray bytes = QByteArray::fromBase64(body.toUtf8());
        return std::vector<std::uint8_t>(bytes.begin(), bytes.end());
    }
    return std::nullopt;
}

} // namespace

SettingsFile::SettingsFile(const std::string& name)
    : settings(QSettings::IniFormat, QSettings::UserScope, "volvelle", QString::fromStdString(name))
{
    settings.setFallbacksEnabled(false);
    settings.setAtomicSyncRequired(true);
}

std::optional<SettingsValue> SettingsFile::value(const std::string& key) const
{
    const std::lock_guard lock(mutex);
    const QVariant held = settings.value(quoted(key));
    const QStringList parts = held.toStringList();
    auto typed = parts.size() == 2 ? valueOf(parts[0], parts[1]) : std::nullopt;
    if (typed || !held.isValid()) {
        return typed;
    }
    return parts.join(',').toStdString(); // written by hand
}

void SettingsFile::setValue(const std::string& key, std::optional<SettingsValue> value)
{
    const std::lock_guard lock(mutex);
    if (!keepOther()) {
        return;
    }
    if (value) {
        settings.setValue(quoted(key), QStringList{kindOf(*value), bodyOf(*value)});
    } else {
        settings.remove(quoted(key));
    }
}

bool SettingsFile::keepOther()
{
    const std::filesystem::path file(QFile::encodeName(settings.fileName()).toStdString());
    std::vector<std::uint8_t> bytes;
    if (std::exchange(isKept, true) || readFile(file, bytes) != noErr ||
        utf8Length({reinterpret_cast<const char*>(bytes.data()), bytes.size()}) == bytes.size()) {
        return true;
    }
    const std::filesystem::path first = std::filesystem::path(file).replace_extension(".kept.ini");
    std::vector<std::uint8_t> there;
    int number = 1;
    while (readFile(numberedFile(first, number), there) == noErr && there != bytes) {
        ++number;
    }
    const std::filesystem::path place = numberedFile(first, number);
    const int failed = there == bytes ? 0 : putFile(place, bytes, false);
    isKept = failed == 0;
    safeprint("SettingsFile::setValue() : '", file.string(), "' is not in UTF-8; ",
              isKept ? concat("it was kept as '", place.string(), "'.")
                     : concat("nothing is written to it: ", writeFailure(place, failed)));
    return isKept;
}

std::map<std::string, SettingsValue> SettingsFile::entries() const
{
    const std::lock_guard lock(mutex);
    std::map<std::string, SettingsValue> all;
    for (const QString& key : settings.allKeys()) {
        if (const auto found = value(unquoted(key))) {
            all.emplace(unquoted(key), *found);
        }
    }
    return all;
}

std::shared_ptr<SettingsStore> openSettings(const std::string& name)
{
    auto store = std::make_shared<SettingsFile>(name.empty() ? "volvelle" : name);
    return name.empty() || store->isWritable() ? store : nullptr;
}

} // namespace volvelle
