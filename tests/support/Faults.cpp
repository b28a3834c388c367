// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "support/Faults.h"

#include <cstdlib>
#include <sys/syscall.h>
#include <sys/xattr.h>
#include <system_error>
#include <unistd.h>

namespace vexmarrow::test {

Unprivileged::Unprivileged() : changed_(::geteuid() == 0) {
    constexpr uid_t kNobody = 65534;
    if (changed_ && ::seteuid(kNobody) != 0) {
        throw std::system_error(errno, std::generic_category(), "seteuid");
    }
}

Unprivileged::~Unprivileged() {
    if (changed_ && ::seteuid(0) != 0) {
        std::abort(); // every later test would run as the wrong user
    }
}

std::map<std::pair<std::string, std::string>, std::string>& ExtendedAttributes() {
    static std::map<std::pair<std::string, std::string>, std::string> attributes;
    return attributes;
}

} // namespace vexmarrow::test

/// Stands before the C library's function of the same name in every program that links this.
extern "C" ssize_t getxattr(const char* path, const char* name, void* value, size_t size) noexcept {
    std::string key(path);
    key.resize(key.find_last_not_of('/') + 1);
    const auto& attributes = vexmarrow::test::ExtendedAttributes();
    const auto found = attributes.find({key, name});
    if (found == attributes.end()) {
        return ::syscall(SYS_getxattr, path, name, value, size);
    }
    if (found->second.size() > size) {
        errno = ERANGE;
        return -1;
    }
    std::copy(found->second.begin(), found->second.end(), static_cast<char*>(value));
    return static_cast<ssize_t>(found->second.size());
}
