// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "fuzz/Fuzz.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using vexmarrow::fuzz::Input;
    vexmarrow::fuzz::TryInput(Input({reinterpret_cast<const char*>(data), size}));
    return 0;
}
