#include "platform/PrivateFiles.h"

#include "platform/SystemError.h"

#include <fcntl.h>
#include <sys/stat.h>

namespace platform {
namespace {

std::error_code createParents(const std::filesystem::path& path) {
    std::filesystem::path parent;
    for (const std::filesystem::path& step : path.parent_path()) {
        parent /= step;
        if (::mkdir(parent.c_str(), 0700) == 0)
            continue;
        const std::error_code failure = systemError();
        // Parents may be links, and making one that exists may be refused for another reason than
        // that it exists (a folder that only others can write to).
        std::error_code ignored;
        if (!std::filesystem::is_directory(parent, ignored))
            return failure;
    }
    return {};
}

} // namespace

std::error_code createPrivateFolder(const std::filesystem::path& path, Parents parents) {
    if (parents == Parents::Create) {
        if (const std::error_code failure = createParents(path))
            return failure;
    }
    return ::mkdir(path.c_str(), 0700) == 0 ? std::error_code() : systemError();
}

PrivateLog createPrivateLog(const std::filesystem::path& path) {
    UniqueFd file(::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600));
    if (!file)
        return {UniqueFd(), systemError()};
    return {std::move(file), {}};
}

} // namespace platform
