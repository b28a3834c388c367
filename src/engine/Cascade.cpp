// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "engine/Cascade.h"

#include <utility>

namespace vexmarrow {
namespace {

void ReplaceAll(std::u16string& text, const ReplacementPair& pair) {
    const std::u16string_view source = text;
    std::size_t at = source.find(pair.find);
    if (pair.find.empty() || at == std::u16string_view::npos) {
        return;
    }
    std::u16string result;
    result.reserve(text.size());
    std::size_t copied = 0;
    while (at != std::u16string_view::npos) {
        result.append(source, copied, at - copied).append(pair.replace);
        copied = at + pair.find.size();
        at = source.find(pair.find, copied);
    }
    result.append(source, copied);
    text = std::move(result);
}

} // namespace

Cascade::Cascade(std::vector<ReplacementPair> pairs) : pairs_(std::move(pairs)) {}

void Cascade::Apply(std::u16string& text) const {
    for (const ReplacementPair& pair : pairs_) {
        ReplaceAll(text, pair);
    }
}

} // namespace vexmarrow
