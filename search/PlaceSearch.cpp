#include "search/PlaceSearch.h"

#include "platform/Threads.h"

#include <QPointer>

#include <utility>

namespace search {
namespace {

// Through curl.
PlaceSearch::Request photonRequest(FailureText text) {
    return [text](const QUrl& url, NXPhotonSearch::Completion completion) {
        auto search = NXPhotonSearch::make(text);
        search->start(url, std::move(completion));
        return [search] { search->cancel(); };
    };
}

} // namespace

PlaceSearch::PlaceSearch(QUrl geocoder, FailureText text, Ended ended)
    : PlaceSearch(std::move(geocoder), text, std::move(ended), photonRequest(text)) {}

PlaceSearch::PlaceSearch(QUrl geocoder, FailureText text, Ended ended, Request request)
    : geocoder_(std::move(geocoder)), text_(text), ended_(std::move(ended)),
      request_(std::move(request)) {}

void PlaceSearch::begin(const QString& query) {
    forget();
    drop_ = request_(photonQuery(geocoder_, query),
                     [self = QPointer(this), generation = generation_,
                      query](const std::optional<QByteArray>& body, const QString& message) {
                         if (self)
                             self->answered(generation, query, body, message);
                     });
}

// Invalid first, then dropped: whatever the request still does comes too late.
void PlaceSearch::stop() {
    ++generation_;
    if (const auto drop = std::exchange(drop_, nullptr))
        drop();
}

void PlaceSearch::forget() {
    stop();
    found_ = {};
}

void PlaceSearch::answered(quint64 generation, const QString& query,
                           const std::optional<QByteArray>& body, const QString& message) {
    FoundPlaces found;
    QString failure = message;
    if (body) {
        if (auto rows = readPhotonAnswer(*body, query); !rows)
            failure = text_(SearchFailure::NotUnderstood);
        else if (!rows->isEmpty())
            found = {query, *body, std::move(*rows)};
    }
    // A turn of its own: what the person did while the answer was read comes first.
    platform::postToMain([self = QPointer(this), generation, found, failure] {
        if (self)
            self->apply(generation, found, failure);
    });
}

void PlaceSearch::apply(quint64 generation, FoundPlaces found, const QString& failure) {
    if (generation != generation_)
        return;
    drop_ = nullptr;
    found_ = std::move(found);
    ended_(failure);
}

} // namespace search
