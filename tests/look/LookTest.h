#pragma once

#include <QApplication>
#include <QImage>
#include <QTest>
#include <QWidget>

#include <gtest/gtest.h>

#include <chrono>

// An active window for real events, under the look, in Inter. Whatever Qt warns about fails the
// test.
class LookTest : public testing::Test {
protected:
    void SetUp() override;
    void TearDown() override;

    // Shows the window with what the test has put into it.
    void show();

    // The widget as it looks now, one pixel per logical one.
    static QImage picture(QWidget& widget);
    static QRgb colourAt(QWidget& widget, QPoint position);

    // The part of the picture that is not of the colour of its upper left corner.
    static QRect ink(const QImage& picture, QRect within);

    QWidget window;
};

std::chrono::nanoseconds workOfThisThread();

// What the work takes of this thread's time, not of a busy machine's.
template<typename Work>
std::chrono::nanoseconds workOf(Work work) {
    const auto begin = workOfThisThread();
    work();
    return workOfThisThread() - begin;
}

// A limit for release builds; a sanitizer makes everything many times slower.
constexpr std::chrono::milliseconds limit(int milliseconds) {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    return std::chrono::milliseconds(milliseconds * 20);
#else
    return std::chrono::milliseconds(milliseconds);
#endif
}
