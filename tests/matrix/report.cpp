#include "matrix/report.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <map>
#include <vector>

#include "foundation/number_text.h"
#include "platform/clock.h"

namespace matrix {
namespace {

constexpr int kWholeRounds = 100;
constexpr int kSampleRounds = 4;

struct Summary {
    std::map<std::string, int> cells;
    std::vector<std::string> failures;
};
Summary& TheSummary() {
    static Summary summary;
    return summary;
}

std::string Setting(const char* name) {
    const char* value = std::getenv(name);
    return value != nullptr ? value : "";
}

class SummaryAtTheEnd : public testing::Environment {
  public:
    void TearDown() override {
        const Summary& summary = TheSummary();
        for (const auto& [name, count] : summary.cells) std::printf("%s: %d cells\n", name.c_str(), count);
        std::printf("failures: %d\n", static_cast<int>(summary.failures.size()));
        for (const std::string& failure : summary.failures) std::printf("  %s\n", failure.c_str());
        std::fflush(stdout);
    }
};
[[maybe_unused]] testing::Environment* const gSummary = testing::AddGlobalTestEnvironment(new SummaryAtTheEnd);

}  // namespace

bool Whole() {
    return Setting("ZARN_MATRIX") == "whole";
}

int Rounds() {
    const std::uint32_t wanted = ParseUnsigned(Setting("ZARN_ROUNDS"));
    if (wanted != 0) return static_cast<int>(wanted);
    return Whole() ? kWholeRounds : kSampleRounds;
}

std::mt19937& Random() {
    static std::mt19937 random = [] {
        const std::uint32_t given = ParseUnsigned(Setting("ZARN_SEED"));
        const auto seed = given != 0 ? given : static_cast<std::uint32_t>(platform::Microseconds());
        std::printf("ZARN_SEED=%u\n", seed);
        std::fflush(stdout);
        return std::mt19937(seed);
    }();
    return random;
}

bool Cell::Check(bool condition, const std::string& what) {
    if (!condition) wrong_ += (wrong_.empty() ? "" : "; ") + what;
    return condition;
}

Cell::~Cell() {
    Summary& summary = TheSummary();
    ++summary.cells[matrix_];
    if (wrong_.empty()) return;
    summary.failures.push_back(matrix_ + ": " + name_ + ": " + wrong_);
    ADD_FAILURE() << name_ << ": " << wrong_;
}

}  // namespace matrix
