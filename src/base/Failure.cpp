// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "base/Failure.h"

#include "base/Text.h"
#include "base/Utf8.h"

#include <system_error>
#include <utility>

namespace vexmarrow {

namespace {

std::u16string Sentence(std::u16string_view doing, std::u16string_view path,
                        std::u16string_view reason) {
    return Concat(doing, u" \"", path, u"\": ", reason, u".");
}

} // namespace

Failure::Failure(std::u16string description, int systemError)
    : description_(std::move(description)),
      utf8_(NativeName(description_)),
      systemError_(systemError) {}

std::u16string ReasonOf(int error) {
    return TextFromUtf8(std::generic_category().message(error));
}

Failure FileFailure(std::u16string_view doing, std::u16string_view path, int error) {
    return Failure(Sentence(doing, path, ReasonOf(error)), error);
}

Failure FileFailure(std::u16string_view doing, std::u16string_view path,
                    std::u16string_view reason) {
    return Failure(Sentence(doing, path, reason));
}

} // namespace vexmarrow
