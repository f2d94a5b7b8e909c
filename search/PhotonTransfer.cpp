#include "search/PhotonTransfer.h"

#include <poll.h>

#include <array>

namespace search {
namespace {

// The line that curl writes behind the body of the one status that counts.
constexpr QByteArrayView successTrailer("\n200");

// curl reads "[1-3]" behind the host as a range of addresses and would ask for each of them; Qt
// leaves these brackets as they are.
QByteArray withoutRanges(const QUrl& url) {
    const QByteArray text = url.toString(QUrl::FullyEncoded).toUtf8();
    // The brackets of an IPv6 host stay: they end where the path, the query or the fragment begins.
    qsizetype behindHost = text.indexOf("://") + 3;
    while (behindHost < text.size() && !QByteArrayView("/?#").contains(text.at(behindHost)))
        ++behindHost;
    QByteArray rest = text.mid(behindHost);
    rest.replace('[', "%5B").replace(']', "%5D");
    return text.left(behindHost) + rest;
}

} // namespace

std::vector<std::string> photonArguments(const QUrl& url) {
    return {
        "-q",
        "--silent",
        "--show-error",
        "--fail",
        "--proto",
        "=https",
        "--proto-redir",
        "=https",
        "--connect-timeout",
        "10",
        "--max-time",
        "20",
        "--max-filesize",
        std::to_string(maximumBodySize),
        "--header",
        "Accept: application/json",
        "--user-agent",
        "Norvaxel-Ortsimport/0.5",
        "--write-out",
        "\n%{http_code}",
        "--url",
        withoutRanges(url).toStdString(),
    };
}

TransferResult readTransfer(int output, int exitDescriptor) {
    QByteArray held;
    std::array<char, 65536> chunk{};
    std::array<pollfd, 2> sources{pollfd{output, POLLIN, 0}, pollfd{exitDescriptor, POLLIN, 0}};
    bool ended = false;
    for (;;) {
        if (platform::uninterrupted(
                [&] { return ::poll(sources.data(), sources.size(), ended ? 0 : -1); }) < 0)
            return SearchFailure::Unreadable;
        // Nothing to read: either curl's end has woken us, and one more look shows what it wrote
        // last, or that look has just been taken.
        if (sources[0].revents == 0) {
            if (ended)
                return held;
            ended = sources[1].revents != 0;
            continue;
        }
        const ssize_t got =
            platform::uninterrupted([&] { return ::read(output, chunk.data(), chunk.size()); });
        if (got == 0)
            return held;
        if (got < 0)
            return SearchFailure::Unreadable;
        if (held.size() + got > maximumBodySize + successTrailer.size())
            return SearchFailure::TooLarge;
        held.append(chunk.data(), got);
    }
}

TransferResult judgeTransfer(QByteArray output, const platform::ChildExit& exit) {
    if (exit.kind != platform::ChildExit::Kind::Exited)
        return SearchFailure::Unreachable;
    switch (exit.value) {
    case 0:
        if (!output.endsWith(successTrailer))
            return SearchFailure::NotResponding;
        output.chop(successTrailer.size());
        return output;
    case 22:
        return SearchFailure::NotResponding;
    case 28:
        return SearchFailure::CurlTimedOut;
    case 63:
        return SearchFailure::TooLarge;
    default:
        return SearchFailure::Unreachable;
    }
}

} // namespace search
