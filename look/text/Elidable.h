#pragma once

#include <QString>

namespace look {

// A control that elides its text where it does not fit. The whole text is then its tooltip, unless
// it has another one. Main thread.
class Elidable {
public:
    // The whole text if not all of it is shown, else empty.
    virtual QString elidedText() const = 0;
    bool isElided() const { return !elidedText().isEmpty(); }

protected:
    ~Elidable() = default;
};

} // namespace look
