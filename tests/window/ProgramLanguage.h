#pragma once

// How the interface's language is settled before the program starts. Each test program defines it.
struct ProgramLanguage {
    const char* stored; // the preference file's code; empty: there is no file
    const char* system; // the system's preferred languages, as LANGUAGE has them
};
extern const ProgramLanguage programLanguage;
