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
        if (steps_.size() == 1) { // which needs no room but the result's
            return ReplaceAll(steps_.front(), text, result, [](std::size_t) {});
        }
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
        result.clear();
        std::size_t copied = 0;
        bool changed = false;
        for (std::size_t begin = 0; begin < text.size();) {
            const std::size_t end = EndOfLine(text, std::min(begin + kBlock, text.size()));
            const View block = text.substr(begin, end - begin);
            Effort effort(LimitFor(block));
            any_.Collect(block, effort, hits_);
            if (!hits_.empty() || effort.Exhausted()) {
                changed = true;
                result.reserve(text.size());
                result.append(text, copied, begin - copied);
                Replace(block, effort, result);
                copied = end;
            }
            begin = end;
        }
        if (changed) {
            result.append(text, copied);
        }
        return changed;
    }

private:
    using Hit = typename FindAny<Unit>::Hit;
    static constexpr std::size_t kBlock = 65'536;

    static std::size_t Code(Unit unit) { return std::make_unsigned_t<Unit>(unit); }
    bool InFindTexts(Unit unit) const { return inFindTexts_[Code(unit)]; }
    bool InFindTexts(const Unit* four) const {
        return InFindTexts(four[0]) && InFindTexts(four[1]) && InFindTexts(four[2]) &&
               InFindTexts(four[3]);
    }
    /// Where the line begins that goes on at a place; at least `least`.
    std::size_t BeginOfLine(View text, std::size_t least, std::size_t begin) const {
        while (begin >= least + 4 && InFindTexts(text.data() + begin - 4)) {
            begin -= 4;
        }
        while (begin > least && InFindTexts(text[begin - 1])) {
            --begin;
        }
        return begin;
    }
    std::size_t EndOfLine(View text, std::size_t end) const {
        while (end + 4 <= text.size() && InFindTexts(text.data() + end)) {
            end += 4;
        }
        while (end < text.size() && InFindTexts(text[end])) {
            ++end;
        }
        return end;
    }

    /// Appends what becomes of a block of whole lines, of which hits_ tells what is found there.
    void Replace(View block, Effort& effort, String& result) {
        std::size_t copied = 0;
        for (auto hit = hits_.cbegin(); hit != hits_.cend() && !effort.Exhausted();) {
            const std::size_t begin = BeginOfLine(block, copied, hit->place);
            const std::size_t end = EndOfLine(block, hit->place);
            const auto next = std::find_if(hit, hits_.cend(),
                                           [&](const Hit& other) { return other.place >= end; });
            result.append(block, copied, begin - copied);
            result.append(lines_.Run(block.substr(begin, end - begin), {hit, next}, effort));
            copied = end;
            hit = next;
        }
        const View rest = block.substr(copied);
        result.append(effort.Exhausted() && passes_.Run(steps_, rest) ? passes_.text : rest);
    }

    /// About what it would take to run each pair over the whole text, if there is nothing to find.
    std::size_t LimitFor(View text) const {
        return (steps_.size() / 16 + 4) * text.size() + 16 * steps_.size() + 4096;
    }

    /// Plans how to look for the find texts, with the first text at hand and again when there has
    /// been so much that a better plan will pay. The result does not depend on that, only how soon
    /// it is there.
    void Learn(View text) {
        constexpr std::size_t kSample = std::size_t{1} << 18;
        constexpr std::array<std::size_t, 3> kPlanAgainAt{1U << 10, 1U << 16, 1U << 24};
        if (planAt_ == View::npos) {
            return;
        }
        seen_ += text.size();
        sample_.append(text.substr(0, kSample - sample_.size()));
        if (seen_ < planAt_) {
            return;
        }
        std::vector<const FindOne<Unit>*> finds;
        finds.reserve(steps_.size());
        for (const Step<Unit>& step : steps_) {
            finds.push_back(&step.find);
        }
        any_ = FindAny<Unit>(finds, TextSample<Unit>(sample_));
        const auto* const again = std::upper_bound(kPlanAgainAt.begin(), kPlanAgainAt.end(), seen_);
        if (again != kPlanAgainAt.end()) {
            planAt_ = *again;
        } else {
            planAt_ = View::npos;
            String().swap(sample_);
        }
    }

    Steps<Unit> steps_;
    String sample_;
    std::size_t seen_ = 0;
    std::size_t planAt_ = 0; // when so much has been seen
    FindAny<Unit> any_;
    std::array<bool, std::size_t{1} << (8 * sizeof(Unit))> inFindTexts_{};
    LineCascade<Unit> lines_{steps_, any_};
    Passes<Unit> passes_;
    std::vector<Hit> hits_;
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
