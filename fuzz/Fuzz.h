// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

namespace vexmarrow::fuzz {

/// Ends the process, with a message, unless `holds`.
inline void Require(bool holds, const char* what) {
    if (!holds) {
        std::fprintf(stderr, "Does not hold: %s\n", what);
        std::abort();
    }
}

/// Reads an input from front to end. Past the end there are only zeros and empty texts.
class Input {
public:
    explicit Input(std::string_view bytes) : bytes_(bytes) {}

    std::string_view Bytes(std::size_t most) {
        const std::string_view taken = bytes_.substr(0, most);
        bytes_.remove_prefix(taken.size());
        return taken;
    }
    std::uint8_t Byte() { return bytes_.empty() ? 0 : static_cast<std::uint8_t>(Bytes(1)[0]); }
    std::string_view Rest() const { return bytes_; }

    /// The rest as characters of two bytes each, the high one first.
    std::u16string Text() const {
        std::u16string text;
        for (std::size_t i = 0; i + 1 < bytes_.size(); i += 2) {
            text += static_cast<char16_t>(bytes_[i] << 8 | (bytes_[i + 1] & 0xFF));
        }
        return text;
    }

private:
    std::string_view bytes_;
};

/// Tries one input, and ends the process if something does not hold. Each target defines it.
void TryInput(Input input);

} // namespace vexmarrow::fuzz

/// Calls TryInput; this is the function that a fuzzer calls.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);
