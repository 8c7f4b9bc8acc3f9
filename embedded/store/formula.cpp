#include "store/formula.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>
#include <string>

#include "store/error.h"
#include "store/pid_text.h"
#include "store/text.h"

namespace vtdn::store {

double missingNumber() {
    return std::numeric_limits<double>::quiet_NaN();
}
bool isMissing(double number) {
    return std::isnan(number);
}

// Recursive descent, one function per rule of the grammar. Steps come out in the order of evaluation.
class FormulaParser {
  public:
    explicit FormulaParser(std::string_view text) : text_(text) {}

    Formula parse() {
        if (text_.size() > longestFormula)
            throw Error(ErrorKind::badFormula, "A formula of " + std::to_string(text_.size()) +
                                                   " bytes is too long. The longest has " +
                                                   std::to_string(longestFormula) + ".");
        expression();
        if (skipBlanks(); at_ < text_.size()) refuse("an operator or the end was expected");
        return std::move(formula_);
    }

  private:
    using Operation = Formula::Operation;

    static constexpr int deepestNesting = 200;

    struct Function {
        std::string_view name;
        Operation operation;
        std::uint32_t least;
        std::uint32_t most;
    };
    static constexpr std::uint32_t anyCount = 1000;
    static constexpr std::array<Function, 5> functions{{
        {"abs", Operation::absolute, 1, 1},
        {"sqrt", Operation::root, 1, 1},
        {"min", Operation::smallest, 1, anyCount},
        {"max", Operation::largest, 1, anyCount},
        {"if", Operation::choose, 3, 3},
    }};

    struct Comparison {
        std::string_view sign;
        Operation operation;
    };
    // Longer signs before those that they begin with.
    static constexpr std::array<Comparison, 6> comparisons{{
        {"<=", Operation::lessOrEqual},
        {">=", Operation::greaterOrEqual},
        {"<>", Operation::unequal},
        {"<", Operation::less},
        {">", Operation::greater},
        {"=", Operation::equal},
    }};

    [[noreturn]] void refuse(const std::string& why) const {
        throw Error(ErrorKind::badFormula, "The formula " + quote(text_) +
                                               " is not understood at character " + std::to_string(at_ + 1) +
                                               ": " + why + ".");
    }

    void skipBlanks() {
        while (at_ < text_.size() && (text_[at_] == ' ' || text_[at_] == '\t')) ++at_;
    }

    bool take(std::string_view sign) {
        skipBlanks();
        if (text_.substr(at_, sign.size()) != sign) return false;
        at_ += sign.size();
        return true;
    }

    void require(std::string_view sign) {
        if (!take(sign)) refuse("\"" + std::string(sign) + "\" was expected");
    }

    void emit(Operation operation, std::uint32_t count = 0, double number = 0) {
        formula_.steps_.push_back({operation, count, number});
    }

    // What stands on the stack while evaluating: the formula reserves the most that was ever there.
    void push(Operation operation, std::uint32_t count = 0, double number = 0) {
        emit(operation, count, number);
        formula_.depth_ = std::max(formula_.depth_, ++height_);
    }
    void combine(Operation operation, std::uint32_t arguments) {
        emit(operation, arguments);
        height_ -= arguments - 1;
    }

    void expression() {
        sum();
        for (const Comparison& comparison : comparisons) {
            if (!take(comparison.sign)) continue;
            sum();
            return combine(comparison.operation, 2);
        }
    }

    void sum() {
        product();
        while (true) {
            if (take("+")) {
                product();
                combine(Operation::add, 2);
            } else if (take("-")) {
                product();
                combine(Operation::subtract, 2);
            } else {
                return;
            }
        }
    }

    void product() {
        sign();
        while (true) {
            if (take("*")) {
                sign();
                combine(Operation::multiply, 2);
            } else if (take("/")) {
                sign();
                combine(Operation::divide, 2);
            } else {
                return;
            }
        }
    }

    void sign() {
        bool negative = false;
        while (true) {
            if (take("-"))
                negative = !negative;
            else if (!take("+"))
                break;
        }
        if (++nesting_ > deepestNesting) refuse("it is nested too deeply");
        primary();
        --nesting_;
        if (negative) emit(Operation::negate, 1);
    }

    void primary() {
        if (take("(")) {
            expression();
            require(")");
        } else if (take("[")) {
            parameter(']');
        } else if (at_ < text_.size() && (isDigit(text_[at_]) || text_[at_] == '.')) {
            number();
        } else {
            named();
        }
    }

    void number() {
        double value = 0;
        const char* end = text_.data() + text_.size();
        const auto [stop, error] = std::from_chars(text_.data() + at_, end, value);
        if (error != std::errc() || !std::isfinite(value)) refuse("this is no number");
        at_ = static_cast<std::size_t>(stop - text_.data());
        push(Operation::number, 0, value);
    }

    void parameter(char close) {
        const auto end = text_.find(close, at_);
        if (end == std::string_view::npos) refuse("a reference to a parameter is not closed");
        const Pid pid = parsePid(trimBlanks(text_.substr(at_, end - at_)));
        if (pid == 0) refuse(quote(text_.substr(at_, end - at_)) + " is no PID");
        at_ = end + 1;
        auto& inputs = formula_.inputs_;
        auto place = std::find(inputs.begin(), inputs.end(), pid);
        if (place == inputs.end()) place = inputs.insert(inputs.end(), pid);
        push(Operation::input, static_cast<std::uint32_t>(place - inputs.begin()));
    }

    void named() {
        const auto start = at_;
        auto stop = start;
        while (stop < text_.size() && lowerAscii(text_[stop]) >= 'a' && lowerAscii(text_[stop]) <= 'z')
            ++stop;
        const auto name = text_.substr(start, stop - start);
        if (name.empty()) refuse("a number, a parameter or a function was expected");
        if (equalsIgnoringCase(name, "P")) {
            at_ = stop;
            require("(");
            return parameter(')');
        }
        for (const Function& function : functions) {
            if (!equalsIgnoringCase(name, function.name)) continue;
            at_ = stop;
            return call(function);
        }
        refuse("there is no function " + quote(name));
    }

    void call(const Function& function) {
        require("(");
        std::uint32_t count = 0;
        do {
            expression();
            ++count;
        } while (take(","));
        require(")");
        if (count < function.least || count > function.most)
            refuse("the function " + std::string(function.name) + " was given " + std::to_string(count) +
                   " arguments");
        combine(function.operation, count);
    }

    std::string_view text_;
    std::size_t at_ = 0;
    int nesting_ = 0;
    std::size_t height_ = 0;
    Formula formula_;
};

namespace {

double finite(double number) {
    return std::isfinite(number) ? number : missingNumber();
}

double truth(bool holds) {
    return holds ? 1 : 0;
}

}  // namespace

Formula Formula::parse(std::string_view text) {
    return FormulaParser(text).parse();
}

double Formula::evaluate(std::span<const double> numbers) const {
    std::array<double, 32> small{};
    std::vector<double> large;
    double* stack = small.data();
    if (depth_ > small.size()) {
        large.resize(depth_);
        stack = large.data();
    }
    // Points behind the top of the stack; a missing number is a NaN, which arithmetic passes on.
    double* top = stack;
    const auto two = [&top](auto combine) {
        --top;
        const double a = top[-1];
        const double b = top[0];
        top[-1] = isMissing(a) || isMissing(b) ? missingNumber() : combine(a, b);
    };
    for (const Step& step : steps_) {
        switch (step.operation) {
            case Operation::number:
                *top++ = step.number;
                break;
            case Operation::input:
                *top++ = numbers[step.count];
                break;
            case Operation::negate:
                top[-1] = -top[-1];
                break;
            case Operation::add:
                two([](double a, double b) { return finite(a + b); });
                break;
            case Operation::subtract:
                two([](double a, double b) { return finite(a - b); });
                break;
            case Operation::multiply:
                two([](double a, double b) { return finite(a * b); });
                break;
            case Operation::divide:
                two([](double a, double b) { return b == 0 ? missingNumber() : finite(a / b); });
                break;
            case Operation::less:
                two([](double a, double b) { return truth(a < b); });
                break;
            case Operation::lessOrEqual:
                two([](double a, double b) { return truth(a <= b); });
                break;
            case Operation::greater:
                two([](double a, double b) { return truth(a > b); });
                break;
            case Operation::greaterOrEqual:
                two([](double a, double b) { return truth(a >= b); });
                break;
            case Operation::equal:
                two([](double a, double b) { return truth(a == b); });
                break;
            case Operation::unequal:
                two([](double a, double b) { return truth(a != b); });
                break;
            case Operation::absolute:
                top[-1] = std::fabs(top[-1]);
                break;
            case Operation::root:
                top[-1] = top[-1] < 0 ? missingNumber() : std::sqrt(top[-1]);
                break;
            case Operation::smallest:
                for (std::uint32_t i = 1; i < step.count; ++i)
                    two([](double a, double b) { return std::min(a, b); });
                break;
            case Operation::largest:
                for (std::uint32_t i = 1; i < step.count; ++i)
                    two([](double a, double b) { return std::max(a, b); });
                break;
            case Operation::choose:
                top -= 2;
                if (!isMissing(top[-1])) top[-1] = top[-1] != 0 ? top[0] : top[1];
                break;
        }
    }
    return *stack;
}

}  // namespace vtdn::store
