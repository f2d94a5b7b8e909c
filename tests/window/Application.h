#pragma once

#include <QApplication>

#include <chrono>

// The application of a window test. It times every event that the event loop delivers, in time that
// the main thread really worked: how busy the machine is besides does not matter.
class Application : public QApplication {
public:
    using QApplication::QApplication;

    static Application& instance() { return *static_cast<Application*>(qApp); }

    bool notify(QObject* receiver, QEvent* event) override;

    void forgetLongestEvent() { longest_ = {}; }
    std::chrono::nanoseconds longestEvent() const { return longest_; }

private:
    std::chrono::nanoseconds longest_{};
    int depth_ = 0; // events that are delivered while another one is belong to that one
};

// How the interface's language is settled before the program starts. Each test program defines it.
struct ProgramLanguage {
    const char* stored; // the preference file's code; empty: there is no file
    const char* system; // the system's preferred languages, as LANGUAGE has them
};
extern const ProgramLanguage programLanguage;
