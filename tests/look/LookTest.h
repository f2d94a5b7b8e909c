#pragma once

#include <QApplication>
#include <QImage>
#include <QTest>
#include <QWidget>

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>

using namespace Qt::StringLiterals;

// An active window for real events, under the look, in Inter. Whatever Qt warns about fails the
// test.
class LookTest : public testing::Test {
protected:
    void SetUp() override;
    void TearDown() override;

    // Shows the window with what the test has put into it, or makes it the active one again.
    void show() { enter(window); }
    // Shows another one, which is the active one then.
    static void enter(QWidget& other);

    // The widget as it looks now, one pixel per logical one.
    static QImage picture(QWidget& widget);
    static QRgb colourAt(QWidget& widget, QPoint position);

    // Whether the widget has a tooltip to show near its upper left corner.
    static bool showsToolTip(QWidget& widget);

    // The part of the picture that is not of the colour of its upper left corner.
    static QRect ink(const QImage& picture, QRect within);

    QWidget window;
};

std::chrono::nanoseconds workOfThisThread();

// A text that outgrows every place it is shown in, and how many letters of it are plenty.
constexpr qsizetype hundredKilobytes = 100 * 1024;
constexpr qsizetype plenty = 4 * 1024;

// How many times more of this thread's time the work takes with the whole text than with plenty of
// it: about 1 where only what can be seen is laid out, about 25 where all of it is. The least of
// some turns each, taken by turns: how fast or busy the machine is counts for both.
template<typename Work>
double growth(const QString& whole, Work work) {
    const QString start = whole.left(plenty);
    auto least = std::chrono::nanoseconds::max();
    auto leastOfWhole = least;
    for (int turn = 0; turn < 5; ++turn) {
        for (const QString& text : {start, whole}) {
            const auto begin = workOfThisThread();
            work(text);
            auto& kept = text.size() == whole.size() ? leastOfWhole : least;
            kept = std::min(kept, workOfThisThread() - begin);
        }
    }
    return double(leastOfWhole.count()) / double(least.count());
}
constexpr double mostGrowth = 4;
