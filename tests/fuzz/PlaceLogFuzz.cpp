// Bytes as the log of a place import that failed.
//
// At most 2048 bytes

#include "tests/fuzz/Log.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::checkPlaceLog(fuzz::bytes(data, size));
    return 0;
}
