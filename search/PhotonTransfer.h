#pragma once

#include "platform/ChildProcess.h"

#include <QByteArray>
#include <QUrl>

#include <string>
#include <variant>
#include <vector>

namespace search {

// Why a request brought no body.
enum class TransferFailure {
    Unreadable,    // curl's output could not be read
    TooLarge,      // more than maximumBodySize
    TimedOut,      // curl gave up waiting
    NotResponding, // the server answered, but not with status 200
    Unreachable    // no connection, or anything else that made curl fail
};

using TransferResult = std::variant<QByteArray, TransferFailure>;

inline constexpr qsizetype maximumBodySize = 1'048'576;

// The 22 arguments with which curl asks for url once, over HTTPS only, and writes the HTTP status
// on a line of its own behind the body.
std::vector<std::string> photonArguments(const QUrl& url);

// Reads what curl writes, until it closes its output, or has ended and nothing more is there: a
// process it left behind may hold the pipe open for ever. Blocks; exitDescriptor becomes readable
// when curl has ended. The bytes still hold the status line.
TransferResult readTransfer(int output, int exitDescriptor);

// What an output that was read to its end means, given how curl ended: the body without the status
// line, or the failure.
TransferResult judgeTransfer(QByteArray output, const platform::ChildExit& exit);

} // namespace search
