#include "Probe.h"
#include "TestHome.h"
#include "localization/Language.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <thread>

#ifdef __linux__
#include "Syncs.h"
#endif

namespace {

namespace fs = std::filesystem;
using nxui::Product;

const std::vector<std::string> onlyThePreference = {"3d-language.txt"};

std::string readStored(const TestHome& home) {
    return nxui::readLanguage(Product::ThreeD, home.path());
}

bool save(const TestHome& home, const std::string& code) {
    return nxui::saveLanguage(Product::ThreeD, code, home.path());
}

TEST(ReadLanguage, only_a_first_line_in_final_form_counts) {
    const TestHome home;
    const std::pair<std::string, const char*> rows[] = {
        {"en\n", "en"},
        {"zh-Hans\n", "zh-Hans"},
        {"en", "en"},
        {"ja\nsecond line\n", "ja"},
        {"EN\n", ""},
        {"en-GB\n", ""},
        {"zh-hans\n", ""},
        {"zh\n", ""},
        {"en \n", ""},
        {" en\n", ""},
        {"en\r\n", ""},
        {"", ""},
        {"\n", ""},
        {"\nen\n", ""},
        {std::string("en\0\n", 4), ""},
        {"xx\n", ""},
        {"\xEF\xBB\xBF"
         "en\n",
         ""},
    };
    for (const auto& [content, code] : rows) {
        home.store(content);
        EXPECT_EQ(readStored(home), code) << testing::PrintToString(content);
    }
}

TEST(ReadLanguage, file_of_66_bytes_is_accepted_and_one_of_67_is_not) {
    const TestHome home;
    home.store("en\n" + std::string(62, 'x') + "\n");
    ASSERT_EQ(fs::file_size(home.preference()), 66U);
    EXPECT_EQ(readStored(home), "en");
    home.store("en\n" + std::string(63, 'x') + "\n");
    ASSERT_EQ(fs::file_size(home.preference()), 67U);
    EXPECT_EQ(readStored(home), "");
}

TEST(ReadLanguage, each_product_has_a_file_of_its_own) {
    const TestHome home;
    home.store("ja\n", Product::TwoD);
    home.store("ko\n", Product::ThreeD);
    EXPECT_EQ(nxui::readLanguage(Product::TwoD, home.path()), "ja");
    EXPECT_EQ(nxui::readLanguage(Product::ThreeD, home.path()), "ko");
    EXPECT_EQ(nxui::readLanguage(static_cast<Product>(2), home.path()), "ja");
}

TEST(ReadLanguage, what_is_not_a_regular_file_is_not_read) {
    const TestHome home;
    EXPECT_EQ(readStored(home), "") << "missing folder";
    fs::create_directories(home.preference().parent_path());
    EXPECT_EQ(readStored(home), "") << "missing file";
    fs::create_directory(home.preference());
    EXPECT_EQ(readStored(home), "") << "folder";
    fs::remove(home.preference());
    ASSERT_EQ(mkfifo(home.preference().c_str(), 0600), 0);
    EXPECT_EQ(readStored(home), "") << "pipe, which nobody writes to";
}

TEST(ReadLanguage, link_is_not_read) {
    const TestHome home;
    home.store("en\n", Product::TwoD);
    fs::create_symlink(home.preference(Product::TwoD), home.preference());
    EXPECT_EQ(readStored(home), "");
}

TEST(SaveLanguage, file_holds_the_code_and_a_line_feed) {
    const TestHome home;
    EXPECT_TRUE(save(home, "ja"));
    EXPECT_EQ(home.stored(), "ja\n");
    EXPECT_TRUE(save(home, "zh-Hans"));
    EXPECT_EQ(home.stored(), "zh-Hans\n");
    EXPECT_EQ(readStored(home), "zh-Hans");
    EXPECT_EQ(home.namesInFolder(), onlyThePreference);
}

TEST(SaveLanguage, each_product_has_a_file_of_its_own) {
    const TestHome home;
    EXPECT_TRUE(nxui::saveLanguage(Product::TwoD, "tr", home.path()));
    EXPECT_TRUE(nxui::saveLanguage(Product::ThreeD, "hi", home.path()));
    EXPECT_EQ(home.stored(Product::TwoD), "tr\n");
    EXPECT_EQ(home.stored(Product::ThreeD), "hi\n");
}

TEST(SaveLanguage, only_the_owner_can_read_the_file) {
    const TestHome home;
    const mode_t mask = umask(0);
    const bool isSaved = save(home, "fr");
    umask(mask);
    ASSERT_TRUE(isSaved);
    EXPECT_EQ(modeOf(home.preference()), 0600);
}

TEST(SaveLanguage, code_that_is_not_in_final_form_leaves_the_file_untouched) {
    const TestHome home;
    ASSERT_TRUE(save(home, "pl"));
    for (const char* code :
         {"en-US", "EN", "zh", "zh-hans", "xx", "", "en\n", " en", "de_DE.UTF-8"})
        EXPECT_FALSE(save(home, code)) << code;
    EXPECT_EQ(home.stored(), "pl\n");
    EXPECT_EQ(home.namesInFolder(), onlyThePreference);
}

TEST(SaveLanguage, without_a_home_directory_nothing_is_read_or_saved) {
    const TestHome home;
    ASSERT_TRUE(save(home, "en"));
    // An empty home directory would mean the working directory if it were joined.
    const fs::path before = fs::current_path();
    fs::current_path(home.path());
    const std::string code = nxui::readLanguage(Product::ThreeD, "");
    const bool isSaved = nxui::saveLanguage(Product::ThreeD, "ja", "");
    fs::current_path(before);
    EXPECT_EQ(code, "");
    EXPECT_FALSE(isSaved);
    EXPECT_EQ(home.stored(), "en\n");
}

TEST(SaveLanguage, link_is_neither_replaced_nor_written_through) {
    const TestHome home;
    home.store("en\n", Product::TwoD);
    fs::create_symlink(home.preference(Product::TwoD), home.preference());
    EXPECT_FALSE(save(home, "ja"));
    EXPECT_TRUE(fs::is_symlink(home.preference()));
    EXPECT_EQ(home.stored(Product::TwoD), "en\n");

    fs::remove(home.preference());
    fs::create_symlink("nowhere", home.preference());
    EXPECT_FALSE(save(home, "ja")) << "dangling";
    EXPECT_TRUE(fs::is_symlink(home.preference()));
    EXPECT_EQ(home.namesInFolder(),
              (std::vector<std::string>{"2d-language.txt", "3d-language.txt"}));
}

TEST(SaveLanguage, file_in_place_of_a_folder_is_a_failure) {
    // An unwritable folder would not stop an administrator; this stops everyone.
    for (const char* name : {"Library", "Library/Application Support",
                             "Library/Application Support/Norvaxel/Preferences"}) {
        const TestHome home;
        const fs::path obstacle = fs::path(home.path()) / name;
        fs::create_directories(obstacle.parent_path());
        write(obstacle, "in the way");
        EXPECT_FALSE(save(home, "en")) << name;
        EXPECT_EQ(readStored(home), "") << name;
        EXPECT_TRUE(fs::is_regular_file(obstacle)) << name;
    }
}

TEST(SaveLanguage, folder_in_place_of_the_file_is_a_failure_and_leaves_nothing_behind) {
    const TestHome home;
    fs::create_directories(home.preference());
    EXPECT_FALSE(save(home, "en"));
    EXPECT_EQ(home.namesInFolder(), onlyThePreference);
    EXPECT_TRUE(fs::is_directory(home.preference()));
}

TEST(SaveLanguage, short_write_leaves_the_old_file_and_nothing_else) {
    for (const char* bytes : {"0", "1", "2", "7"}) {
        const TestHome home;
        home.store("en\n");
        const ProbeResult result = runProbe({"save-limited", bytes, "zh-Hans"}, {home.variable()});
        EXPECT_EQ(result.output, "not saved\n") << bytes;
        EXPECT_EQ(home.stored(), "en\n") << bytes;
        EXPECT_EQ(home.namesInFolder(), onlyThePreference) << bytes;
    }
    const TestHome home;
    EXPECT_EQ(runProbe({"save-limited", "8", "zh-Hans"}, {home.variable()}).output, "saved\n");
    EXPECT_EQ(home.stored(), "zh-Hans\n");
}

TEST(SaveLanguage, no_temporary_file_means_not_saved) {
    const TestHome home;
    home.store("en\n");
    const ProbeResult result = runProbe({"save-without-files", "ja"}, {home.variable()});
    EXPECT_EQ(result.output, "not saved\n");
    EXPECT_EQ(home.stored(), "en\n");
    EXPECT_EQ(home.namesInFolder(), onlyThePreference);
}

#ifdef __linux__
TEST(SaveLanguage, file_reaches_the_disk_before_it_takes_the_old_ones_place) {
    const TestHome home;
    home.store("en\n");
    std::vector<std::string> order;
    const Syncs syncs([&](int file) {
        order.push_back(contentOf("/proc/self/fd/" + std::to_string(file)) + home.stored());
        return 0;
    });
    EXPECT_TRUE(save(home, "ja"));
    EXPECT_EQ(order, std::vector<std::string>{"ja\nen\n"});
}

TEST(SaveLanguage, file_that_does_not_reach_the_disk_leaves_the_old_one_and_nothing_else) {
    const TestHome home;
    home.store("en\n");
    const Syncs syncs([](int) { return EIO; });
    EXPECT_FALSE(save(home, "ja"));
    EXPECT_EQ(home.stored(), "en\n");
    EXPECT_EQ(home.namesInFolder(), onlyThePreference);
}
#endif

TEST(SaveLanguage, no_file_stays_open_whether_it_could_be_saved_or_read_or_not) {
    const auto lowestFree = [] {
        const int file = dup(0);
        close(file);
        return file;
    };
    const TestHome home;
    const int before = lowestFree();
    EXPECT_TRUE(save(home, "ja"));
    EXPECT_EQ(readStored(home), "ja");
    fs::remove(home.preference());
    fs::create_directory(home.preference());
    EXPECT_FALSE(save(home, "ko"));
    EXPECT_EQ(readStored(home), "");
    EXPECT_EQ(lowestFree(), before);
}

TEST(SaveLanguage, reader_sees_the_old_or_the_new_file_and_never_a_part) {
    const TestHome home;
    ASSERT_TRUE(save(home, "ja"));
    std::atomic<bool> isDone = false;
    std::thread writer([&] {
        for (int round = 0; round < 200; ++round)
            EXPECT_TRUE(save(home, round % 2 ? "ja" : "zh-Hans"));
        isDone = true;
    });
    while (!isDone) {
        const std::string code = readStored(home);
        EXPECT_TRUE(code == "ja" || code == "zh-Hans") << code;
    }
    writer.join();
    EXPECT_EQ(home.namesInFolder(), onlyThePreference);
}

} // namespace
