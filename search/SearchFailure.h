#pragma once

#include <QString>

namespace search {

// Why a search brought no places.
enum class SearchFailure {
    AddressRefused, // the geocoder's address may not be asked
    NotStarted,     // curl could not be started
    Unreadable,     // curl's output could not be read
    TooLarge,       // more than maximumBodySize
    CurlTimedOut,   // curl gave up waiting
    TimedOut,       // curl did not even give up
    NotResponding,  // the server answered, but not with status 200
    Unreachable,    // no connection, or anything else that made curl fail
    NotUnderstood,  // the answer is no collection of places
};

// Says a failure in the person's language. Any thread.
using FailureText = QString (*)(SearchFailure);

} // namespace search
