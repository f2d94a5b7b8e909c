#pragma once

#include "platform/ChildProcess.h"
#include "platform/Descriptors.h"
#include "search/PhotonTransfer.h"

#include <QByteArray>
#include <QString>
#include <QUrl>

#include <chrono>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

namespace search {

// By what a request travels and how long it may take as a whole.
struct PhotonTransport {
    std::string program = "/usr/bin/curl";
    // Longer than curl's own limit of 20 s: it only acts when curl does not.
    std::chrono::milliseconds patience = std::chrono::seconds(22);
};

// One request to the geocoder: runs curl once and reports its outcome at most once. It knows
// nothing about what is asked or answered.
//
// States: created -> started -> completed, and from each of these -> cancelled. The first to take
// the lock decides: the refused address, the failed launch, the reader, the watchdog or cancel().
// Invariant: after cancel() nothing more is posted, and nothing is ever posted twice.
//
// An object makes one request. It lives at least until curl has ended.
class NXPhotonSearch : public std::enable_shared_from_this<NXPhotonSearch> {
public:
    // Exactly one of the two is set: the answer's body, which may be empty, or a sentence in the
    // person's language. Called on the main thread, never from inside start().
    using Completion = std::function<void(std::optional<QByteArray> body, QString message)>;

    // `text` says a failure. Main thread.
    static std::shared_ptr<NXPhotonSearch> make(FailureText text, PhotonTransport transport = {});

    // Asks for url; every outcome arrives through completion. Does nothing when the request has
    // been cancelled already. Main thread.
    void start(const QUrl& url, Completion completion);

    // The one place that delivers. True if this call completed the request, false if it was
    // completed or cancelled before. Exactly one of the two is set. Any thread.
    bool finish(std::optional<QByteArray> body, const QString& failure);

    // Drops the completion, so that nothing is delivered any more, and stops the child. What has
    // been delivered or posted already stays so. Any thread.
    void cancel();

    std::shared_ptr<platform::ChildProcess> task() const; // null until just before the launch
    Completion completion() const; // empty once it was taken for delivery or dropped
    bool completed() const;
    bool cancelled() const;

private:
    NXPhotonSearch(FailureText text, PhotonTransport transport);
    bool fail(SearchFailure failure);
    bool launch(const QUrl& url);
    void read(platform::UniqueFd output, const std::shared_ptr<platform::ChildProcess>& child);
    void giveUp();

    const FailureText text_;
    const PhotonTransport transport_;

    mutable std::mutex mutex_; // guards everything below
    std::shared_ptr<platform::ChildProcess> task_;
    Completion completion_;
    bool completed_ = false;
    bool cancelled_ = false;
};

} // namespace search
