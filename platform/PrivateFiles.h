#pragma once

#include "platform/UniqueFd.h"

#include <filesystem>
#include <system_error>

namespace platform {

// What to do about folders that are missing above the one to be made.
enum class Parents { MustExist, Create };

// Makes a folder that only its owner can enter (0700), private from its creation. Fails if anything
// has that name already, even a link, and leaves it alone. Parents that are made are private as
// well, and stay if the folder itself then cannot be made. Any thread.
std::error_code createPrivateFolder(const std::filesystem::path& path, Parents parents);

// A log open for writing, or why there is none. One thread at a time.
struct PrivateLog {
    UniqueFd file; // close-on-exec
    std::error_code failure;
};

// Makes an empty file that only its owner can read (0600), private from its creation. Fails if
// anything has that name already, even a link, and leaves it alone. Any thread.
PrivateLog createPrivateLog(const std::filesystem::path& path);

} // namespace platform
