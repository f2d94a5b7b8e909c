#pragma once

#include <QJsonValue>
#include <QString>

namespace search {

// The text without leading and trailing white space and line breaks. Pure; any thread.
inline QString NXText(const QString& text) {
    return text.trimmed();
}

// The same for a JSON value; empty for everything that is not a text. Pure; any thread.
inline QString NXText(const QJsonValue& value) {
    return value.toString().trimmed();
}

} // namespace search
