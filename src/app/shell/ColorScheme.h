#pragma once

#include "app/screens/Tokens.h"

#include <QDBusMessage>
#include <QObject>

namespace volvelle {

// Whether the desktop wants dark or light: what its settings portal says, and its changes; without one what
// the first palette of the application looks like. Made after the application, before its palette is changed.
// [main]
class ColorScheme : public QObject {
    Q_OBJECT

public:
    ColorScheme();

    Theme theme() const { return current; }

Q_SIGNALS:
    void changed(volvelle::Theme theme);

private Q_SLOTS:
    void settingChanged(const QDBusMessage& message);

private:
    void take(const QVariant& value);

    Theme current;
};

} // namespace volvelle
