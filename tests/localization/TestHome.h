#pragma once

#include "TemporaryFolder.h"
#include "localization/Language.h"

#include <filesystem>
#include <string>
#include <vector>

// An empty home directory of a test's own, removed with all that is in it.
class TestHome {
public:
    std::string path() const { return folder_.path().string(); }
    std::string variable() const { return "HOME=" + path(); }
    std::filesystem::path preference(nxui::Product product = nxui::Product::ThreeD) const;
    // Puts a preference file with this content, its folders included.
    void store(const std::string& content, nxui::Product product = nxui::Product::ThreeD) const;
    // The bytes of the preference file, "(missing)" without one.
    std::string stored(nxui::Product product = nxui::Product::ThreeD) const;
    // The names in the folder of the preference files, sorted.
    std::vector<std::string> namesInFolder() const;

private:
    TemporaryFolder folder_;
};
