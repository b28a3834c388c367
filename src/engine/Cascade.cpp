// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "engine/Cascade.h"

#include "engine/LineCascade.h"

#include <array>
#include <type_traits>
#include <utility>

namespace vexmarrow {
namespace {

template <typename Unit>
using Steps = std::vector<Step<Unit>>;

/// Runs each pair over the whole text: the way for few pairs.
template <typename Unit>
class PairByPair final : public BasicCascade<Unit>::Way {
public:
    explicit PairByPair(Steps<Unit> steps) : steps_(std::move(steps)) {}

    bool Apply(std::basic_string_view<Unit> text, std::basic_string<Unit>& result) override {
        if (!passes_.Run(steps_, text)) {
            return false;
        }
        result.swap(passes_.text);
        return true;
    }

private:
    Steps<Unit> steps_;
    Passes<Unit> passes_;
};

/// Copies lines in which nothing is found, and runs the cascade over each of the others by itself.
/// What a line is depends on the pairs: it lies between two units that no find text contains.
template <typename Unit>
class LineByLine final : public BasicCascade<Unit>::Way {
public:
    using View = std::basic_string_view<Unit>;
    using String = std::basic_string<Unit>;

    explicit LineByLine(Steps<Unit> steps) : steps_(std::move(steps)) {
        for (const Step<Unit>& step : steps_) {
            for (const Unit unit : step.find.Text()) {
                inFindTexts_[Code(unit)] = true;
            }
        }
    }

    bool Apply(View text, String& result) override {
        Learn(text);
        Effort effort(LimitFor(text));
        typename FindAny<Unit>::Walk walk(any_, text, effort, next_);
        std::size_t copied = 0;
        bool found = false;
        for (std::size_t hit = 0; (hit = walk.Next(copied)) != View::npos;) {
            std::size_t begin = hit;
            while (begin > copied && InFindTexts(text[begin - 1])) {
                --begin;
            }
            std::size_t end = hit;
            while (end < text.size() && InFindTexts(text[end])) {
                ++end;
            }
            if (!found) {
                found = true;
                result.clear();
                result.reserve(text.size());
            }
            result.append(text, copied, begin - copied);
            result.append(lines_.Run(text.substr(begin, end - begin), effort));
            copied = end;
        }
        const View rest = text.substr(copied);
        const bool changed = effort.Exhausted() && passes_.Run(steps_, rest);
        if (found) {
            result.append(changed ? passes_.text : rest);
        } else if (changed) {
            result.swap(passes_.text);
        }
        return found || changed;
    }

private:
    static std::size_t Code(Unit unit) { return std::make_unsigned_t<Unit>(unit); }
    bool InFindTexts(Unit unit) const { return inFindTexts_[Code(unit)]; }

    /// About what it would take to run each pair over the whole text, if there is nothing to find.
    std::size_t LimitFor(View text) const {
        return (steps_.size() / 16 + 4) * text.size() + 16 * steps_.size() + 4096;
    }

    /// Plans how to look for the find texts, with the first text at hand and again when there is
    /// much more of it. The result does not depend on that, only how soon it is there.
    void Learn(View text) {
        constexpr std::size_t kEnough = 65'536;
        constexpr std::size_t kMore = 8;
        if (sample_.Size() >= kEnough) {
            return;
        }
        sample_.Add(text.substr(0, kEnough - sample_.Size()));
        if (sample_.Size() < planAt_) {
            return;
        }
        planAt_ = std::clamp<std::size_t>(sample_.Size() * kMore, 1024, kEnough);
        std::vector<const FindOne<Unit>*> finds;
        for (const Step<Unit>& step : steps_) {
            finds.push_back(&step.find);
        }
        any_ = FindAny<Unit>(finds, sample_);
    }

    Steps<Unit> steps_;
    TextSample<Unit> sample_;
    std::size_t planAt_ = 0;
    FindAny<Unit> any_;
    std::array<bool, std::size_t{1} << (8 * sizeof(Unit))> inFindTexts_{};
    LineCascade<Unit> lines_{steps_, any_};
    Passes<Unit> passes_;
    std::vector<std::size_t> next_;
};

} // namespace

template <typename Unit>
BasicCascade<Unit>::BasicCascade(std::vector<BasicReplacementPair<Unit>> pairs) {
    constexpr std::size_t kFew = 2;
    Steps<Unit> steps;
    steps.reserve(pairs.size());
    for (BasicReplacementPair<Unit>& pair : pairs) {
        if (!pair.find.empty()) {
            steps.push_back({FindOne<Unit>(pair.find), std::move(pair.replace)});
        }
    }
    if (steps.size() <= kFew) {
        way_ = std::make_unique<PairByPair<Unit>>(std::move(steps));
    } else {
        way_ = std::make_unique<LineByLine<Unit>>(std::move(steps));
    }
}

template class BasicCascade<char>;
template class BasicCascade<char16_t>;

} // namespace vexmarrow
