#include "platform/HttpsAddress.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace platform {

bool isHttpsAddress(const QUrl& address) {
    // QUrl has lower-cased the scheme. The authority keeps the "@" of an empty user name, which
    // userName() and password() do not show.
    return address.isValid() && address.scheme() == "https"_L1 && !address.host().isEmpty() &&
           !address.authority().contains(u'@');
}

std::optional<QUrl> httpsAddress(const QString& text) {
    // Outside ASCII white space is a letter like others to the toolkit; to the importer it is none.
    if (std::ranges::any_of(text, [](QChar letter) { return letter.isSpace(); }))
        return std::nullopt;
    QUrl address(text, QUrl::StrictMode);
    if (!isHttpsAddress(address))
        return std::nullopt;
    return address;
}

std::optional<QUrl> plainHttpsAddress(const QString& text) {
    std::optional<QUrl> address = httpsAddress(text);
    if (address && (address->hasQuery() || address->hasFragment()))
        return std::nullopt;
    return address;
}

} // namespace platform
