// Formulas of calculated parameters.
//
//   expression  = sum [ ("<" | "<=" | ">" | ">=" | "=" | "<>") sum ]      1 when it holds, otherwise 0
//   sum         = product { ("+" | "-") product }
//   product     = sign { ("*" | "/") sign }
//   sign        = { "+" | "-" } primary
//   primary     = number | "(" expression ")" | parameter | function "(" expression { "," expression } ")"
//   parameter   = "[" PID "]" | "P(" PID ")"                              a PID in display form or as a
//   number function    = abs | sqrt | min | max | if                             names in any case
//
// Numbers are decimal with a point, exponent allowed. min and max take one argument or more; if(condition, a,
// b) is a when the condition is a number other than 0 and b when it is 0. A missing input makes the result
// missing, except in the branch of an if that is not taken; so does a division by zero, a root of a negative
// number and a result beyond the range of a double.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "store/value.h"

namespace vtdn::store {

/// A missing number in arrays of doubles: a value that is never stored.
[[nodiscard]] double missingNumber();
[[nodiscard]] bool isMissing(double number);

/// A formula that was read: a sequence of steps over a stack of numbers.
class Formula {
  public:
    /// Throws badFormula with the place where the text is not understood.
    static Formula parse(std::string_view text);

    /// The parameters that it refers to, each once, in the order of their first use.
    [[nodiscard]] const std::vector<Pid>& inputs() const { return inputs_; }

    /// The result for one interval. The numbers are those of inputs() in its order, missingNumber() where
    /// there is none.
    [[nodiscard]] double evaluate(std::span<const double> numbers) const;

  private:
    friend class FormulaParser;

    enum class Operation : std::uint8_t {
        number,
        input,
        negate,
        add,
        subtract,
        multiply,
        divide,
        less,
        lessOrEqual,
        greater,
        greaterOrEqual,
        equal,
        unequal,
        absolute,
        root,
        smallest,
        largest,
        choose,
    };
    struct Step {
        Operation operation;
        std::uint32_t count = 0;  // which input, or how many arguments
        double number = 0;
    };

    std::vector<Step> steps_;
    std::vector<Pid> inputs_;
    std::size_t depth_ = 0;  // of the stack
};

/// Longest formula text, in bytes.
inline constexpr std::size_t longestFormula = 10'000;

}  // namespace vtdn::store
