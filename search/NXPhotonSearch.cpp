#include "search/NXPhotonSearch.h"

#include "platform/Descriptors.h"
#include "platform/HttpsAddress.h"
#include "platform/Threads.h"

#include <utility>

namespace search {

std::shared_ptr<NXPhotonSearch> NXPhotonSearch::make(FailureText text, PhotonTransport transport) {
    return std::shared_ptr<NXPhotonSearch>(new NXPhotonSearch(text, std::move(transport)));
}

NXPhotonSearch::NXPhotonSearch(FailureText text, PhotonTransport transport)
    : text_(text), transport_(std::move(transport)) {}

void NXPhotonSearch::start(const QUrl& url, Completion completion) {
    {
        const std::lock_guard lock(mutex_);
        if (cancelled_)
            return;
        completion_ = std::move(completion);
    }
    if (!platform::isHttpsAddress(url))
        fail(SearchFailure::AddressRefused);
    else if (!launch(url))
        fail(SearchFailure::NotStarted);
}

// False if curl could not be started; then neither reader nor watchdog runs.
bool NXPhotonSearch::launch(const QUrl& url) {
    platform::Pipe pipe;
    if (platform::openPipe(pipe))
        return false;
    // curl's own words go nowhere: the user is told what its exit status means.
    auto child = platform::ChildProcess::make({.program = transport_.program,
                                               .arguments = photonArguments(url),
                                               .output = pipe.writeEnd.get()});
    {
        const std::lock_guard lock(mutex_);
        task_ = child;
    }
    if (child->start({}))
        return false;

    auto self = shared_from_this();
    // Shared only because a std::function must be copyable.
    auto output = std::make_shared<platform::UniqueFd>(std::move(pipe.readEnd));
    auto reader = [self, child, output] { self->read(std::move(*output), child); };
    if (platform::startWorker(std::move(reader))) {
        platform::stopChild(child);
        return false;
    }
    // Until curl has ended the reader holds this; afterwards nobody keeps its descriptors for a
    // watch that has nothing to do.
    platform::runAfter(transport_.patience, [request = weak_from_this()] {
        if (const auto unfinished = request.lock())
            unfinished->giveUp();
    });
    return true;
}

// The reader, on a thread of its own.
void NXPhotonSearch::read(platform::UniqueFd output,
                          const std::shared_ptr<platform::ChildProcess>& child) {
    TransferResult result = readTransfer(output.get(), child->exitDescriptor());
    if (std::holds_alternative<SearchFailure>(result))
        platform::stopChild(child);
    // Closed before waiting: a child that still writes must not block on a full pipe.
    output.reset();
    const platform::ChildExit exit = child->waitForExit();
    if (auto* bytes = std::get_if<QByteArray>(&result))
        result = judgeTransfer(std::move(*bytes), exit);

    if (auto* body = std::get_if<QByteArray>(&result))
        finish(std::move(*body), QString());
    else
        fail(std::get<SearchFailure>(result));
}

// The watchdog.
void NXPhotonSearch::giveUp() {
    if (fail(SearchFailure::TimedOut))
        platform::stopChild(task());
}

bool NXPhotonSearch::fail(SearchFailure failure) {
    return finish(std::nullopt, text_(failure));
}

bool NXPhotonSearch::finish(std::optional<QByteArray> body, const QString& failure) {
    Completion taken;
    {
        const std::lock_guard lock(mutex_);
        if (completed_ || cancelled_)
            return false;
        completed_ = true;
        taken = std::exchange(completion_, nullptr);
    }
    if (taken) {
        platform::postToMain([deliver = std::move(taken), body = std::move(body),
                              failure]() mutable { deliver(std::move(body), failure); });
    }
    return true;
}

void NXPhotonSearch::cancel() {
    Completion dropped; // destroyed without the lock: what it owns may ask this request something
    std::shared_ptr<platform::ChildProcess> child;
    {
        const std::lock_guard lock(mutex_);
        cancelled_ = true;
        dropped = std::exchange(completion_, nullptr);
        child = task_;
    }
    platform::stopChild(child);
}

std::shared_ptr<platform::ChildProcess> NXPhotonSearch::task() const {
    const std::lock_guard lock(mutex_);
    return task_;
}

NXPhotonSearch::Completion NXPhotonSearch::completion() const {
    const std::lock_guard lock(mutex_);
    return completion_;
}

bool NXPhotonSearch::completed() const {
    const std::lock_guard lock(mutex_);
    return completed_;
}

bool NXPhotonSearch::cancelled() const {
    const std::lock_guard lock(mutex_);
    return cancelled_;
}

} // namespace search
