#include "jobs/TemporaryJobFolder.h"

#include "JobFolders.h"

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
