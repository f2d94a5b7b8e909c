#pragma once

#include <QObject>

// Watches a program's start from inside: prints "painted" when the first window has been painted
// and, once it has been quiet for a while, "resident N" (KiB); then ends the event loop.
class FirstFrame : public QObject {
public:
    // Once, before the event loop runs; watches until the program ends.
    static void watch();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void painted();

    bool isPainted_ = false;
};
