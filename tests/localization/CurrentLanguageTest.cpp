#include "Probe.h"
#include "TestHome.h"
#include "localization/Language.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

namespace {

namespace fs = std::filesystem;
using nxui::Product;

#ifndef __APPLE__ // where the tests can say what the system's languages are

TEST(CurrentLanguage, stored_language_comes_before_the_system) {
    struct {
        const char* stored2d; // null: no file
        const char* stored3d;
        const char* system;
        const char* languages; // of the 2D and the 3D plug-in
    } const rows[] = {
        {nullptr, nullptr, "pl", "pl pl\n"},  {nullptr, nullptr, "xx", "en en\n"},
        {nullptr, nullptr, "", "en en\n"},    {nullptr, nullptr, "zh-Hant-TW:fr-FR", "fr fr\n"},
        {nullptr, "ja\n", "pl", "pl ja\n"},   {"ko\n", nullptr, "pl", "ko pl\n"},
        {"ko\n", "ja\n", "pl", "ko ja\n"},    {"de\n", "zh-Hans", "pl", "de zh-Hans\n"},
        {"EN\n", "en-US\n", "it", "it it\n"},
    };
    for (const auto& row : rows) {
        const TestHome home;
        if (row.stored2d)
            home.store(row.stored2d, Product::TwoD);
        if (row.stored3d)
            home.store(row.stored3d, Product::ThreeD);
        const std::string system = std::string("LANGUAGE=") + row.system;
        EXPECT_EQ(runProbe({"current"}, {home.variable(), system}).output, row.languages) << system;
    }
}

TEST(CurrentLanguage, without_a_home_directory_the_system_decides) {
    EXPECT_EQ(runProbe({"current"}, {"LANG=tr_TR.UTF-8"}).output, "tr tr\n");
    EXPECT_EQ(runProbe({"current"}, {"HOME=", "LANG=tr_TR.UTF-8"}).output, "tr tr\n");
    EXPECT_EQ(runProbe({"current"}, {"LANG=C"}).output, "en en\n");
}

TEST(CurrentLanguage, save_does_not_change_the_running_program) {
    const TestHome home;
    home.store("it\n");
    EXPECT_EQ(runProbe({"current-save", "ru"}, {home.variable()}).output, "it\nsaved\nit\n");
    EXPECT_EQ(runProbe({"current"}, {home.variable()}).output, "en ru\n");
}

TEST(CurrentLanguage, threads_that_ask_first_at_once_get_the_same_answer) {
    const TestHome home;
    home.store("ar\n");
    EXPECT_EQ(runProbe({"current-threads"}, {home.variable()}).output,
              "ar\nar\nar\nar\nar\nar\nar\nar\n");
}

TEST(PersistInitialLanguage, first_start_stores_the_system_language) {
    const TestHome home;
    EXPECT_EQ(runProbe({"persist"}, {home.variable(), "LANGUAGE=fr"}).exitStatus, 0);
    EXPECT_EQ(home.stored(), "fr\n");
    EXPECT_EQ(home.namesInFolder(), std::vector<std::string>{"3d-language.txt"});
    // From then on the stored value decides.
    EXPECT_EQ(runProbe({"current"}, {home.variable(), "LANGUAGE=es"}).output, "es fr\n");
}

TEST(PersistInitialLanguage, without_a_language_of_the_program_english_is_stored) {
    const TestHome home;
    EXPECT_EQ(runProbe({"persist"}, {home.variable(), "LANG=nb_NO.UTF-8"}).exitStatus, 0);
    EXPECT_EQ(home.stored(), "en\n");
}

TEST(PersistInitialLanguage, invalid_file_is_replaced) {
    for (const std::string& content :
         {std::string("EN\n"), std::string(), "en\n" + std::string(64, 'x')}) {
        const TestHome home;
        home.store(content);
        EXPECT_EQ(runProbe({"persist"}, {home.variable(), "LANG=hi_IN"}).exitStatus, 0);
        EXPECT_EQ(home.stored(), "hi\n") << testing::PrintToString(content);
    }
}

TEST(PersistInitialLanguage, pipe_in_place_of_the_file_is_replaced) {
    const TestHome home;
    fs::create_directories(home.preference().parent_path());
    ASSERT_EQ(mkfifo(home.preference().c_str(), 0600), 0);
    EXPECT_EQ(runProbe({"persist"}, {home.variable(), "LANG=hi_IN"}).exitStatus, 0);
    EXPECT_TRUE(fs::is_regular_file(home.preference()));
}

#endif

TEST(PersistInitialLanguage, valid_file_is_left_as_it_is) {
    const TestHome home;
    home.store("ko\nkept\n");
    EXPECT_EQ(runProbe({"persist"}, {home.variable(), "LANG=hi_IN"}).exitStatus, 0);
    EXPECT_EQ(home.stored(), "ko\nkept\n");
}

TEST(PersistInitialLanguage, link_is_left_alone) {
    const TestHome home;
    home.store("en\n", Product::TwoD);
    fs::create_symlink(home.preference(Product::TwoD), home.preference());
    EXPECT_EQ(runProbe({"persist"}, {home.variable(), "LANG=hi_IN"}).exitStatus, 0);
    EXPECT_TRUE(fs::is_symlink(home.preference()));
    EXPECT_EQ(home.stored(Product::TwoD), "en\n");
}

TEST(PersistInitialLanguage, without_a_home_directory_nothing_is_written) {
    const TestHome home;
    const fs::path before = fs::current_path();
    fs::current_path(home.path());
    const ProbeResult result = runProbe({"persist"}, {"LANG=hi_IN"});
    fs::current_path(before);
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_TRUE(fs::is_empty(home.path()));
}

TEST(PersistInitialLanguage, failed_save_is_ignored) {
    const TestHome home;
    write(fs::path(home.path()) / "Library", "in the way");
    EXPECT_EQ(runProbe({"persist"}, {home.variable(), "LANG=hi_IN"}).exitStatus, 0);
}

} // namespace
