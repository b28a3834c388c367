// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include "base/Utf8.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <ios>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

namespace vexmarrow::test {

/// A new folder that every user may write to. It is removed with its contents at the end. Names are
/// raw bytes relative to it, and the empty name is the folder itself. All functions throw on
/// failure.
class TestFolder {
public:
    TestFolder() {
        if (::mkdtemp(path_.data()) == nullptr) {
            throw std::filesystem::filesystem_error(path_, {});
        }
        SetMode("", 0777);
    }
    ~TestFolder() {
        std::error_code ignored;
        for (const std::string& name : locked_) {
            std::filesystem::permissions(Native(name), std::filesystem::perms(0777), ignored);
        }
        std::filesystem::remove_all(path_, ignored);
    }
    TestFolder(const TestFolder&) = delete;
    TestFolder& operator=(const TestFolder&) = delete;

    /// The full path, as bytes and as the program's text.
    std::string Native(std::string_view name = {}) const {
        return name.empty() ? path_ : path_ + "/" + std::string(name);
    }
    std::u16string Path(std::string_view name = {}) const {
        return TextFromNativeName(Native(name));
    }

    /// Writes a file, and before it the folders that its path needs.
    void Write(std::string_view name, std::string_view bytes) const {
        std::filesystem::create_directories(std::filesystem::path(Native(name)).parent_path());
        std::ofstream file;
        file.exceptions(std::ios::failbit | std::ios::badbit);
        file.open(Native(name), std::ios::binary);
        file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
        file.close();
    }
    std::string Read(std::string_view name) const {
        std::ifstream file(Native(name), std::ios::binary);
        file.exceptions(file.is_open() ? std::ios::goodbit : std::ios::failbit);
        std::ostringstream bytes;
        bytes << file.rdbuf();
        return bytes.str();
    }
    void MakeFolder(std::string_view name) const {
        std::filesystem::create_directories(Native(name));
    }
    /// Makes a symbolic link. A relative target starts at the folder of the link.
    void MakeLink(std::string_view name, std::string_view target) const {
        std::filesystem::create_symlink(target, Native(name));
    }
    void SetMode(std::string_view name, unsigned mode) {
        std::filesystem::permissions(Native(name), std::filesystem::perms(mode));
        locked_.emplace_back(name);
    }
    unsigned ModeOf(std::string_view name) const {
        return static_cast<unsigned>(std::filesystem::status(Native(name)).permissions());
    }
    void Remove(std::string_view name) const { std::filesystem::remove_all(Native(name)); }
    void Clear() const {
        for (const std::string& name : Names()) {
            Remove(name);
        }
    }

    /// Whether the name exists, even if it is a link to a missing file.
    bool Exists(std::string_view name) const {
        return std::filesystem::exists(std::filesystem::symlink_status(Native(name)));
    }
    /// The names in a folder, sorted.
    std::vector<std::string> Names(std::string_view folder = {}) const {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(Native(folder))) {
            names.push_back(entry.path().filename());
        }
        std::sort(names.begin(), names.end());
        return names;
    }

private:
    std::string path_ = std::filesystem::temp_directory_path() / "vexmarrow-XXXXXX";
    std::vector<std::string> locked_; // made accessible again before they are removed
};

} // namespace vexmarrow::test
