#pragma once

#include "search/NXPhotonSearch.h"

#include <QObject>

namespace search {

// The places of one answered search: these three belong together.
struct FoundPlaces {
    QString query;         // what was asked
    QByteArray response;   // the geocoder's answer as received
    QList<ResultRow> rows; // in the answer's order, at most `mostResults`
};

// The search in progress, and what the last one has found. Main thread.
//
// States: idle -> running -> idle. Running, nothing is found; idle, something may be.
// Invariant: the answer to a search that was stopped, forgotten or replaced changes nothing,
// however late it comes.
class PlaceSearch : public QObject {
public:
    // Asks `url` and brings the outcome as NXPhotonSearch does, never from inside the call.
    // Returns what drops the request; it is called at most once.
    using Request =
        std::function<std::function<void()>(const QUrl& url, NXPhotonSearch::Completion)>;
    // Empty where an answer was understood, even if it offers no place; else what went wrong, for
    // the person to read.
    using Ended = std::function<void(const QString& failure)>;

    // `geocoder`: without a query. `text` says failures. `ended` is called once for each begin()
    // that was not stopped, forgotten or replaced, in the state that then holds.
    PlaceSearch(QUrl geocoder, FailureText text, Ended ended);
    PlaceSearch(QUrl geocoder, FailureText text, Ended ended, Request request);
    ~PlaceSearch() override { stop(); }

    // Events. `query` is trimmed and of a length that may be asked.
    void begin(const QString& query);
    void stop();
    // stop(), and what was found is no longer.
    void forget();

    // State.
    bool isRunning() const { return drop_ != nullptr; }
    const FoundPlaces& found() const { return found_; }

private:
    void answered(quint64 generation, const QString& query, const std::optional<QByteArray>& body,
                  const QString& message);
    void apply(quint64 generation, FoundPlaces found, const QString& failure);

    const QUrl geocoder_;
    const FailureText text_;
    const Ended ended_;
    const Request request_;
    quint64 generation_ = 0;     // of the latest event; an answer of another one is late
    std::function<void()> drop_; // the running request's; empty while idle
    FoundPlaces found_;
};

} // namespace search
