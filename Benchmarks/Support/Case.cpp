#include "Benchmarks/Support/Case.hpp"

#include <utility>

namespace Benchmarks {

namespace {

std::vector<Case>& cases() {
    static std::vector<Case> all;
    return all;
}

}  // namespace

CaseGroup::CaseGroup(std::vector<Case> group) {
    for (Case& entry : group) {
        cases().push_back(std::move(entry));
    }
}

const std::vector<Case>& allCases() { return cases(); }

std::vector<std::int64_t> usualSizes() { return {1'000, 10'000, 100'000}; }

}  // namespace Benchmarks
