#include "TestHome.h"

#include <algorithm>

namespace fs = std::filesystem;

fs::path TestHome::preference(nxui::Product product) const {
    return nxui::preferencePath(product, path());
}

void TestHome::store(const std::string& content, nxui::Product product) const {
    fs::create_directories(preference().parent_path());
    write(preference(product), content);
}

std::string TestHome::stored(nxui::Product product) const {
    return fs::exists(preference(product)) ? contentOf(preference(product)) : "(missing)";
}

std::vector<std::string> TestHome::namesInFolder() const {
    std::vector<std::string> names;
    for (const fs::directory_entry& entry : fs::directory_iterator(preference().parent_path()))
        names.push_back(entry.path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
}
