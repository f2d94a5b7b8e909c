#include "TemporaryFolder.h"
#include "platform/Files.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

using platform::createPrivateFolder;
using platform::createPrivateLog;
using platform::Parents;

namespace {

// The most permissive umask, under which only the mode that was asked for protects.
class OpenUmask {
public:
    OpenUmask() : before_(::umask(0)) {}
    OpenUmask(const OpenUmask&) = delete;
    OpenUmask& operator=(const OpenUmask&) = delete;
    ~OpenUmask() { ::umask(before_); }

private:
    const mode_t before_;
};

TEST(PrivateFilesTest, a_folder_is_its_owners_alone) {
    const TemporaryFolder folder;
    const OpenUmask umask;
    EXPECT_FALSE(createPrivateFolder(folder / "job", Parents::MustExist));
    EXPECT_EQ(modeOf(folder / "job"), 0700);
}

TEST(PrivateFilesTest, missing_parents_are_made_on_request_and_private_too) {
    const TemporaryFolder folder;
    const OpenUmask umask;
    EXPECT_EQ(createPrivateFolder(folder / "a/b/job", Parents::MustExist),
              std::errc::no_such_file_or_directory);
    EXPECT_EQ(folder.entries(), 0U);
    EXPECT_FALSE(createPrivateFolder(folder / "a/b/job", Parents::Create));
    for (const char* made : {"a", "a/b", "a/b/job"})
        EXPECT_EQ(modeOf(folder / made), 0700) << made;
}

TEST(PrivateFilesTest, parents_that_exist_stay_as_they_are) {
    const TemporaryFolder folder;
    std::filesystem::create_directory(folder / "open");
    std::filesystem::permissions(folder / "open", std::filesystem::perms(0755));
    std::filesystem::create_directory_symlink("open", folder / "link");
    EXPECT_FALSE(createPrivateFolder(folder / "link/job", Parents::Create));
    EXPECT_EQ(modeOf(folder / "open"), 0755);
    EXPECT_EQ(modeOf(folder / "open/job"), 0700);
}

TEST(PrivateFilesTest, a_folder_is_never_taken_over) {
    const TemporaryFolder folder;
    std::filesystem::create_directory(folder / "folder");
    write(folder / "file", "old");
    std::filesystem::create_directory_symlink("folder", folder / "link");
    std::filesystem::create_directory_symlink("nowhere", folder / "dangling");
    for (const Parents parents : {Parents::MustExist, Parents::Create})
        for (const char* name : {"folder", "file", "link", "dangling"})
            EXPECT_EQ(createPrivateFolder(folder / name, parents), std::errc::file_exists) << name;
    EXPECT_EQ(createPrivateFolder(folder / "file/job", Parents::Create), std::errc::file_exists);
    EXPECT_EQ(contentOf(folder / "file"), "old");
}

TEST(PrivateFilesTest, a_log_is_empty_and_its_owners_alone) {
    const TemporaryFolder folder;
    const OpenUmask umask;
    const platform::PrivateLog log = createPrivateLog(folder / "import.log");
    ASSERT_FALSE(log.failure);
    EXPECT_EQ(modeOf(folder / "import.log"), 0600);
    EXPECT_EQ(contentOf(folder / "import.log"), "");
    EXPECT_EQ(::fcntl(log.file.get(), F_GETFD), FD_CLOEXEC);
    EXPECT_EQ(::write(log.file.get(), "line\n", 5), 5);
    EXPECT_EQ(contentOf(folder / "import.log"), "line\n");
}

TEST(PrivateFilesTest, a_log_is_never_taken_over) {
    const TemporaryFolder folder;
    write(folder / "file", "old");
    std::filesystem::create_directory(folder / "folder");
    std::filesystem::create_symlink("file", folder / "link");
    std::filesystem::create_symlink("nowhere", folder / "dangling");
    for (const char* name : {"file", "folder", "link", "dangling"}) {
        const platform::PrivateLog log = createPrivateLog(folder / name);
        EXPECT_EQ(log.failure, std::errc::file_exists) << name;
        EXPECT_FALSE(log.file) << name;
    }
    EXPECT_EQ(contentOf(folder / "file"), "old");
    EXPECT_FALSE(std::filesystem::exists(folder / "nowhere"));
    EXPECT_EQ(createPrivateLog(folder / "missing/log").failure,
              std::errc::no_such_file_or_directory);
}

} // namespace
