#pragma once

#include <QString>
#include <QUrl>

#include <optional>

namespace platform {

// Whether address can be asked over HTTPS: well-formed, scheme https in any case, a host, and
// neither a user name nor a password, not even an empty one. Any thread.
bool isHttpsAddress(const QUrl& address);

// The address that text spells, if it is one by the rule above. Text is taken strictly: nothing is
// trimmed, repaired or completed, and no white space of any kind is part of an address. Any thread.
std::optional<QUrl> httpsAddress(const QString& text);

// As httpsAddress, but with neither query nor fragment: the address of a service, to which the
// program or its importer adds its own. A "?" or "#" with nothing behind it counts as one. Any
// thread.
std::optional<QUrl> plainHttpsAddress(const QString& text);

} // namespace platform
