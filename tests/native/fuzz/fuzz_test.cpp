// A bounded run of every fuzz target, the same each time: seeds changed at random from a fixed start.

#include <gtest/gtest.h>

#include <random>
#include <string>

#include "targets.h"

namespace vtdn::store::fuzz {
namespace {

class Mutator {
  public:
    Mutator(const Target& target, std::uint32_t seed) : target_(target), random_(seed) {}

    std::string next() {
        std::string input(pick(target_.seeds));
        for (auto changes = 1 + below(8); changes > 0; --changes) change(input);
        return input;
    }

  private:
    std::size_t below(std::size_t n) { return random_() % n; }
    template <typename T>
    const T& pick(const std::vector<T>& from) {
        return from[below(from.size())];
    }

    void change(std::string& input) {
        const std::size_t at = below(input.size() + 1);
        const std::size_t rest = input.size() - at;
        switch (below(6)) {
            case 0:
                if (rest > 0) input[at] = static_cast<char>(random_());
                break;
            case 1:
                if (rest > 0) input[at] = static_cast<char>(input[at] ^ (1 << below(8)));
                break;
            case 2:
                input.erase(at, 1 + below(4));
                break;
            case 3:
                input.insert(at, pick(target_.pieces));
                break;
            case 4:
                input += input.substr(at, below(40));
                break;
            default: {
                const auto other = pick(target_.seeds);
                input = input.substr(0, at) + std::string(other.substr(below(other.size())));
                break;
            }
        }
    }

    const Target& target_;
    std::mt19937 random_;
};

class Fuzz : public testing::TestWithParam<std::size_t> {};

TEST_P(Fuzz, AcceptsOrRefusesAndDoesNothingElse) {
    const Target& target = targets()[GetParam()];
    for (const std::string_view seed : target.seeds) EXPECT_TRUE(target.run(seed)) << seed;
    EXPECT_FALSE(target.run({}));
    Mutator mutator(target, 4075);
    const int inputs = target.name == std::string_view("chunk") ? 3'000 : 40'000;
    int accepted = 0;
    for (int i = 0; i < inputs; ++i) accepted += target.run(mutator.next()) ? 1 : 0;
    std::printf("%s: %d inputs, %d accepted\n", target.name, inputs, accepted);
    EXPECT_GT(accepted, inputs / 100) << "the inputs get past the first check";
    EXPECT_LT(accepted, inputs - inputs / 100) << "and some are refused";
}

INSTANTIATE_TEST_SUITE_P(Store, Fuzz, testing::Range(std::size_t{0}, targets().size()),
                         [](const auto& target) { return std::string(targets()[target.param].name); });

}  // namespace
}  // namespace vtdn::store::fuzz
