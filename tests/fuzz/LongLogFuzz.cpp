// Logs that are longer than the pieces in which they are read, in four fields: what the log begins
// with, a number, what then fills so many bytes, the end. A run takes long because its log is long.

#include "tests/fuzz/Log.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    constexpr qsizetype mostFilling = 70000;
    const QList<QByteArray> parts = fuzz::fields(data, size, 4);
    const QByteArray& filling = parts.at(2);
    const qsizetype length = std::clamp<qsizetype>(parts.at(1).toInt(), 0, mostFilling);
    if (filling.isEmpty() || length < 10000)
        return -1; // PlaceLog and RouteLog read short ones
    const QByteArray log =
        parts.at(0) + filling.repeated(length / filling.size() + 1).first(length) + parts.at(3);
    if (length > 30000)
        fuzz::checkPlaceLog(log);
    else
        fuzz::checkRouteLog(log);
    return 0;
}
