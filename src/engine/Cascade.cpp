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

/// Runs each pair over the whole text: the method for few pairs.
template <typename Unit>
class PairByPair final : public BasicCascade<Unit>::Method {
public:
    explicit PairByPair(Steps<Unit> steps) : steps_(std::move(steps)) {}

    bool Apply(std::basic_string_view<Unit> text, std::basic_string<Unit>& result) override {
        if (steps_.size() == 1) { // needs no other buffer
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

/// Copies lines without a match, and runs the cascade over each other line separately. Here a line
/// is what lies between two units that occur in no find text.
template <typename Unit>
class LineByLine final : public BasicCascade<Unit>::Method {
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
            Budget budget(LimitFor(block));
            any_.Collect(block, budget, hits_);
            if (!hits_.empty() || budget.Exhausted()) {
                changed = true;
                result.reserve(text.size());
                result.append(text, copied, begin - copied);
                Replace(block, budget, result);
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
    using Hit = typename MultiFinder<Unit>::Hit;
    static constexpr std::size_t kBlock = 65'536;

    static std::size_t Code(Unit unit) { return std::make_unsigned_t<Unit>(unit); }
    bool InFindTexts(Unit unit) const { return inFindTexts_[Code(unit)]; }
    bool InFindTexts(const Unit* four) const {
        return InFindTexts(four[0]) && InFindTexts(four[1]) && InFindTexts(four[2]) &&
               InFindTexts(four[3]);
    }
    /// The begin of the line with the place `begin`, but not less than `least`.
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

    /// Appends the result for a block of whole lines, whose matches are in hits_.
    void Replace(View block, Budget& budget, String& result) {
        std::size_t copied = 0;
        for (auto hit = hits_.cbegin(); hit != hits_.cend() && !budget.Exhausted();) {
            const std::size_t begin = BeginOfLine(block, copied, hit->place);
            const std::size_t end = EndOfLine(block, hit->place);
            const auto next = std::find_if(hit, hits_.cend(),
                                           [&](const Hit& other) { return other.place >= end; });
            result.append(block, copied, begin - copied);
            result.append(lines_.Run(block.substr(begin, end - begin), {hit, next}, budget));
            copied = end;
            hit = next;
        }
        const View rest = block.substr(copied);
        result.append(budget.Exhausted() && passes_.Run(steps_, rest) ? passes_.text : rest);
    }

    /// The approximate cost of running every pair over a text without matches.
    std::size_t LimitFor(View text) const {
        return (steps_.size() / 16 + 4) * text.size() + 16 * steps_.size() + 4096;
    }

    /// Plans the search from a sample of the texts, and again when many more texts have come, so
    /// that a better plan pays. The plan affects only the speed, not the result.
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
        std::vector<const SingleFinder<Unit>*> finds;
        finds.reserve(steps_.size());
        for (const Step<Unit>& step : steps_) {
            finds.push_back(&step.find);
        }
        any_ = MultiFinder<Unit>(finds, GramFrequencies<Unit>(sample_));
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
    std::size_t planAt_ = 0; // how many units to see before the next plan
    MultiFinder<Unit> any_;
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
            steps.push_back({SingleFinder<Unit>(pair.find), std::move(pair.replace)});
        }
    }
    if (steps.size() <= kFew) {
        method_ = std::make_unique<PairByPair<Unit>>(std::move(steps));
    } else {
        method_ = std::make_unique<LineByLine<Unit>>(std::move(steps));
    }
}

template class BasicCascade<char>;
template class BasicCascade<char16_t>;

} // namespace vexmarrow
