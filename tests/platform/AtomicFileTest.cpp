#include "FullDisk.h"
#include "TemporaryFolder.h"
#include "platform/Files.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <atomic>
#include <thread>
#include <vector>

#ifdef __linux__
#include "Syncs.h"
#endif

using platform::Durability;
using platform::Readers;
using platform::replaceFile;

namespace {

TEST(AtomicFileTest, a_file_is_made_with_exactly_these_bytes) {
    const TemporaryFolder folder;
    const QByteArray contents[] = {QByteArray(), QByteArray("/ä/origin.nxd\n"),
                                   QByteArray("a\0b\r\n", 5), QByteArray(3'000'000, 'x')};
    for (const QByteArray& content : contents) {
        for (const Durability durability : {Durability::Fast, Durability::Durable}) {
            EXPECT_FALSE(replaceFile(folder / "file", content, durability));
            EXPECT_EQ(contentOf(folder / "file"), content.toStdString());
            EXPECT_EQ(folder.entries(), 1U);
        }
    }
}

TEST(AtomicFileTest, a_name_without_a_folder_is_in_the_working_directory) {
    const TemporaryFolder folder;
    const std::filesystem::path before = std::filesystem::current_path();
    std::filesystem::current_path(folder.path());
    EXPECT_FALSE(replaceFile("file", "x", Durability::Durable));
    std::filesystem::current_path(before);
    EXPECT_EQ(contentOf(folder / "file"), "x");
}

TEST(AtomicFileTest, the_longest_names_and_other_bytes_than_UTF_8_will_do) {
    const TemporaryFolder folder;
    for (const std::string& name :
         {std::string(255, 'n'), std::string("\xff\xfe"), std::string(".")}) {
        const bool works = name != ".";
        EXPECT_EQ(!replaceFile(folder / name, "x", Durability::Fast), works) << name;
    }
    EXPECT_EQ(folder.entries(), 2U);
}

TEST(AtomicFileTest, the_mode_follows_the_readers_and_the_umask) {
    struct Row {
        mode_t umask;
        Readers readers;
        int mode;
    };
    const Row rows[] = {
        {0022, Readers::Everyone, 0644}, {0077, Readers::Everyone, 0600},
        {0027, Readers::Everyone, 0640}, {0000, Readers::Everyone, 0644},
        {0022, Readers::Owner, 0600},    {0000, Readers::Owner, 0600},
    };
    const TemporaryFolder folder;
    for (const Row& row : rows) {
        write(folder / "file", "old");
        std::filesystem::permissions(folder / "file", std::filesystem::perms(0666));
        const mode_t before = ::umask(row.umask);
        EXPECT_FALSE(replaceFile(folder / "file", "new", Durability::Fast, row.readers));
        ::umask(before);
        EXPECT_EQ(modeOf(folder / "file"), row.mode);
    }
}

TEST(AtomicFileTest, a_link_at_the_target_is_replaced_and_its_file_left_alone) {
    const TemporaryFolder folder;
    write(folder / "elsewhere", "untouched");
    std::filesystem::create_symlink("elsewhere", folder / "to file");
    std::filesystem::create_symlink("missing", folder / "to nothing");
    for (const char* name : {"to file", "to nothing"}) {
        EXPECT_FALSE(replaceFile(folder / name, "new", Durability::Durable));
        EXPECT_FALSE(std::filesystem::is_symlink(folder / name));
        EXPECT_EQ(contentOf(folder / name), "new");
    }
    EXPECT_EQ(contentOf(folder / "elsewhere"), "untouched");
    EXPECT_FALSE(std::filesystem::exists(folder / "missing"));
}

TEST(AtomicFileTest, a_failure_leaves_everything_as_it_was) {
    const TemporaryFolder folder;
    std::filesystem::create_directory(folder / "taken");
    write(folder / "file", "old");
    struct Row {
        std::filesystem::path path;
        std::errc reason;
    };
    const Row rows[] = {
        {folder / "missing" / "file", std::errc::no_such_file_or_directory},
        {folder / "file" / "file", std::errc::not_a_directory},
        {folder / "taken", std::errc::is_a_directory},
        {folder / std::string(256, 'n'), std::errc::filename_too_long},
        {"", std::errc::no_such_file_or_directory},
    };
    const std::filesystem::path before = std::filesystem::current_path();
    std::filesystem::current_path(folder.path());
    for (const Row& row : rows) {
        EXPECT_EQ(replaceFile(row.path, "new", Durability::Durable), row.reason) << row.path;
        EXPECT_EQ(folder.entries(), 2U) << row.path;
    }
    std::filesystem::current_path(before);
    EXPECT_EQ(contentOf(folder / "file"), "old");
}

TEST(AtomicFileTest, a_full_disk_leaves_the_old_file_whole) {
    const TemporaryFolder folder;
    write(folder / "file", "old");
    {
        const FullDisk disk(4096);
        // The first part fits, so that a short write comes before the failing one.
        EXPECT_EQ(replaceFile(folder / "file", QByteArray(10000, 'x'), Durability::Fast),
                  std::errc::file_too_large);
    }
    EXPECT_EQ(contentOf(folder / "file"), "old");
    EXPECT_EQ(folder.entries(), 1U);
}

#ifdef __linux__
// When the power fails, the name leads to the old bytes or to all of the new ones, and after the
// return to the new ones.
TEST(AtomicFileTest, durable_bytes_reach_the_disk_before_their_name_does) {
    const TemporaryFolder folder;
    std::vector<std::string> order;
    const Syncs syncs([&](int file) {
        const std::filesystem::path path =
            std::filesystem::read_symlink("/proc/self/fd/" + std::to_string(file));
        const bool isFolder = std::filesystem::equivalent(path, folder.path());
        order.push_back((isFolder ? "the folder" : contentOf(path)) + ", there is " +
                        contentOf(folder / "file"));
        return 0;
    });
    write(folder / "file", "old");
    EXPECT_FALSE(replaceFile(folder / "file", "new", Durability::Durable));
    EXPECT_EQ(order, (std::vector<std::string>{"new, there is old", "the folder, there is new"}));
    order.clear();
    EXPECT_FALSE(replaceFile(folder / "file", "newer", Durability::Fast));
    EXPECT_EQ(order, std::vector<std::string>()) << "nobody waits for what only has to be quick";
}

TEST(AtomicFileTest, bytes_that_do_not_reach_the_disk_leave_the_old_file) {
    const TemporaryFolder folder;
    write(folder / "file", "old");
    const Syncs syncs([](int) { return EIO; });
    EXPECT_EQ(replaceFile(folder / "file", "new", Durability::Durable), std::errc::io_error);
    EXPECT_EQ(contentOf(folder / "file"), "old");
    EXPECT_EQ(folder.entries(), 1U);
}
#endif

TEST(AtomicFileTest, a_copy_replaces_the_old_file_or_leaves_it_whole) {
    const TemporaryFolder folder;
    write(folder / "source", std::string(200'000, 'x'));
    write(folder / "file", "old");
    EXPECT_EQ(platform::replaceByCopy(folder / "file", folder / "none"),
              std::errc::no_such_file_or_directory);
    EXPECT_EQ(platform::replaceByCopy(folder / "file", folder.path()), std::errc::is_a_directory);
    {
        const FullDisk disk(100'000);
        EXPECT_EQ(platform::replaceByCopy(folder / "file", folder / "source"),
                  std::errc::file_too_large);
    }
    EXPECT_EQ(contentOf(folder / "file"), "old");
    EXPECT_FALSE(platform::replaceByCopy(folder / "file", folder / "source"));
    EXPECT_EQ(contentOf(folder / "file"), std::string(200'000, 'x'));
    EXPECT_EQ(folder.entries(), 2U);
}

TEST(AtomicFileTest, a_reader_never_sees_a_part_or_nothing) {
    const TemporaryFolder folder;
    const QByteArray one(100'000, '1');
    const QByteArray two(200'000, '2');
    ASSERT_FALSE(replaceFile(folder / "file", one, Durability::Fast));
    std::atomic<bool> enough = false;
    std::atomic<int> reads = 0;
    std::atomic<int> strange = 0;
    std::thread reader([&] {
        while (!enough) {
            const std::string content = contentOf(folder / "file");
            strange += content != one.toStdString() && content != two.toStdString();
            ++reads;
        }
    });
    for (int round = 0; round < 300 || reads < 20; ++round)
        EXPECT_FALSE(replaceFile(folder / "file", round % 2 == 0 ? two : one, Durability::Fast));
    enough = true;
    reader.join();
    EXPECT_EQ(strange, 0);
}

TEST(AtomicFileTest, two_writers_do_not_mix) {
    const TemporaryFolder folder;
    const auto writeOften = [&](char letter) {
        for (int round = 0; round < 200; ++round)
            EXPECT_FALSE(
                replaceFile(folder / "file", QByteArray(50'000, letter), Durability::Fast));
    };
    std::thread other(writeOften, 'b');
    writeOften('a');
    other.join();
    const std::string content = contentOf(folder / "file");
    EXPECT_TRUE(content == std::string(50'000, 'a') || content == std::string(50'000, 'b'));
    EXPECT_EQ(folder.entries(), 1U);
}

} // namespace
