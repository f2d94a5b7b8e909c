// What curl writes, and how it ends: a letter for the kind of its end, then the status or the
// signal.
// At most 4096 bytes: the answer's own length has no rule but its limit.

#include "platform/Descriptors.h"
#include "search/PhotonTransfer.h"
#include "tests/fuzz/Input.h"

#include <fcntl.h>
#include <unistd.h>

#include <string>

using platform::ChildExit;
using search::SearchFailure;
using search::TransferResult;

namespace {

// Through a pipe, in two parts, as it comes from curl.
TransferResult readThroughPipe(const std::string& written) {
    platform::Pipe output;
    platform::Pipe exit;
    fuzz::require(!platform::openPipe(output) && !platform::openPipe(exit), "there are pipes");
#ifdef O_DIRECT
    ::fcntl(output.writeEnd.get(), F_SETFL, O_DIRECT); // each part is read by itself
#endif
    // Fewer bytes than a pipe holds: nobody needs to read meanwhile.
    for (const std::string& part :
         {written.substr(0, written.size() / 3), written.substr(written.size() / 3)})
        fuzz::require(::write(output.writeEnd.get(), part.data(), part.size()) ==
                          ssize_t(part.size()),
                      "a pipe takes them");
    // By the length: curl has closed its output, or only ended, and somebody else holds the pipe.
    if (written.size() % 2 == 0)
        output.writeEnd.reset();
    else
        exit.writeEnd.reset();
    return search::readTransfer(output.readEnd.get(), exit.readEnd.get());
}

// A body is what stands before the line "200", which must be the last.
TransferResult naivelyJudged(const std::string& written, char kind, int value) {
    if (kind != 'e')
        return SearchFailure::Unreachable;
    if (value == 22)
        return SearchFailure::NotResponding;
    if (value == 28)
        return SearchFailure::CurlTimedOut;
    if (value == 63)
        return SearchFailure::TooLarge;
    if (value != 0)
        return SearchFailure::Unreachable;
    const std::size_t line = written.rfind('\n');
    if (line == std::string::npos || written.substr(line + 1) != "200")
        return SearchFailure::NotResponding;
    return QByteArray::fromStdString(written.substr(0, line));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QList<QByteArray> fields = fuzz::fields(data, size, 2);
    const char kind = fields[0].isEmpty() ? '\0' : fields[0].front();
    const int value = fields[0].mid(1).toInt();
    const ChildExit exit{kind == 'e'   ? ChildExit::Kind::Exited
                         : kind == 's' ? ChildExit::Kind::Signalled
                                       : ChildExit::Kind::Unknown,
                         value};
    const QByteArray& output = fields[1];
    const TransferResult read = readThroughPipe(output.toStdString());
    fuzz::require(read == TransferResult(output), "what curl writes is read, byte for byte");
    fuzz::require(search::judgeTransfer(output, exit) ==
                      naivelyJudged(output.toStdString(), kind, value),
                  "the body of the one status that counts, or why there is none");
    return 0;
}
