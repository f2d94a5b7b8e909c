#include "jobs/TemporaryJobFolder.h"

#include "JobFolders.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

std::optional<TemporaryJobFolder> made(const QString& name) {
    return TemporaryJobFolder::make(name, platform::Parents::MustExist);
}

TEST_F(JobFolders, a_temporary_folder_is_private_and_goes_with_its_contents) {
    const QString path = temporary_ + u"/job"_s;
    {
        const auto folder = made(u"job"_s);
        ASSERT_TRUE(folder);
        EXPECT_EQ(folder->path(), path);
        EXPECT_EQ(folder->file(u"log"_s), path + u"/log"_s);
        EXPECT_EQ(modeOf(path), 0700U);
        makeFile(folder->file(u"log"_s));
        QDir().mkpath(folder->file(u"deep/below"_s));
        EXPECT_FALSE(made(u"job"_s)) << "what is there is nobody else's";
    }
    EXPECT_FALSE(QFileInfo::exists(path));
}

TEST_F(JobFolders, a_temporary_folder_goes_with_names_that_are_no_text_and_with_the_deepest_tree) {
    const QString path = temporary_ + u"/job"_s;
    {
        const auto folder = made(u"job"_s);
        ASSERT_TRUE(folder);
        const std::string inside = path.toStdString();
        ASSERT_EQ(::mkdir((inside + "/\xff\xfe").c_str(), 0700), 0);
        int here = ::open(inside.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        const std::string name(200, 'd');
        for (int depth = 0; depth < 40; ++depth) { // twice as deep as a path may be long
            ASSERT_EQ(::mkdirat(here, name.c_str(), 0700), 0);
            const int next = ::openat(here, name.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
            ::close(here);
            here = next;
        }
        ::close(here);
    }
    EXPECT_FALSE(QFileInfo::exists(path));
}

TEST_F(JobFolders, a_link_in_a_temporary_folder_is_not_followed) {
    QDir().mkpath(temporary_ + u"/foreign"_s);
    makeFile(temporary_ + u"/foreign/mine"_s);
    {
        const auto folder = made(u"job"_s);
        ASSERT_TRUE(folder);
        QFile::link(temporary_ + u"/foreign"_s, folder->file(u"link"_s));
    }
    EXPECT_TRUE(QFileInfo::exists(temporary_ + u"/foreign/mine"_s));
}

TEST_F(JobFolders, a_temporary_folder_goes_once_from_its_last_owner) {
    const QString path = temporary_ + u"/job"_s;
    auto first = made(u"job"_s);
    ASSERT_TRUE(first);
    {
        const TemporaryJobFolder second = std::move(*first);
        first.reset();
        EXPECT_TRUE(QFileInfo::exists(path));
        EXPECT_EQ(second.path(), path);
    }
    EXPECT_FALSE(QFileInfo::exists(path));
}

} // namespace
