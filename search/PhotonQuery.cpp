#include "search/PhotonQuery.h"

namespace search {

QUrl photonQuery(const QUrl& geocoder, const QString& text) {
    // QUrlQuery would leave "+" as it is, which a server reads as a space.
    const QByteArray query =
        "q=" + QUrl::toPercentEncoding(text) + QByteArrayLiteral("&limit=8&lang=de");
    QUrl url = geocoder;
    url.setQuery(QString::fromLatin1(query), QUrl::StrictMode);
    return url;
}

} // namespace search
