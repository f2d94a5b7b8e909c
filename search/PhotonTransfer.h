#pragma once

#include "platform/ChildProcess.h"
#include "search/Photon.h"

#include <string>
#include <variant>
#include <vector>

namespace search {

// The body, or why there is none.
using TransferResult = std::variant<QByteArray, SearchFailure>;

// The most bytes of a body.
inline constexpr qsizetype maximumBodySize = 1'048'576;

// The 22 arguments with which curl asks for url once, over HTTPS only, and writes the HTTP status
// on a line of its own behind the body. Pure; any thread.
std::vector<std::string> photonArguments(const QUrl& url);

// Reads what curl writes, until it closes its output, or has ended and nothing more is there: a
// process it left behind may hold the pipe open for ever. Blocks; exitDescriptor becomes readable
// when curl has ended. The bytes still hold the status line. Any thread but the main one.
TransferResult readTransfer(int output, int exitDescriptor);

// What an output that was read to its end means, given how curl ended: the body without the status
// line, or the failure. Pure; any thread. (curl's own manual lists its exit codes.)
TransferResult judgeTransfer(QByteArray output, const platform::ChildExit& exit);

} // namespace search
