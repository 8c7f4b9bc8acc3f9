#include "store/reader.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <vector>

#include "store/error.h"
#include "store/numbers.h"
#include "store/pid_text.h"

namespace vtdn::store {
namespace {

// Inputs are read in blocks of about this many intervals, so that memory does not grow with the length of a
// run.
constexpr std::int64_t blockOfInputs = 200'000;

void appendNumber(Run& run, double number) {
    if (isMissing(number) || std::isinf(number)) return run.appendNulls(1);
    std::memcpy(run.appendNumbers(ValueKind::real, 1), &number, sizeof number);
}

// One value from many, taken one after the other.
class Aggregator {
  public:
    explicit Aggregator(Aggregation rule) : rule_(rule) {}

    void take(double number, std::int32_t position) {
        if (isMissing(number)) return;
        sum_ += number;
        const bool better = rule_ == Aggregation::minimum ? number < extreme_ : number > extreme_;
        if (count_ == 0 || better) {
            extreme_ = number;
            position_ = position;
        }
        ++count_;
    }

    void appendResult(const Run& inputs, Run& run) const {
        if (count_ == 0) return run.appendNulls(1);
        switch (rule_) {
            case Aggregation::average:
                return appendNumber(run, sum_ / static_cast<double>(count_));
            case Aggregation::sum:
                return appendNumber(run, sum_);
            case Aggregation::minimum:
            case Aggregation::maximum:
                // The value itself, so that a single stays the same single.
                return run.appendValue(inputs.value(position_));
            case Aggregation::none:
                break;
        }
        run.appendNulls(1);
    }

  private:
    Aggregation rule_;
    std::int64_t count_ = 0;
    double sum_ = 0;
    double extreme_ = 0;
    std::int32_t position_ = 0;
};

[[noreturn]] void refuseInterval(const Parameter& p, const Interval& asked) {
    const std::string start = "Values of " + pidText(p.pid) + " cannot be given for intervals of " +
                              asked.text() + ": they are kept for intervals of " + p.interval;
    if (p.roll_up == Aggregation::none)
        throw Error(
            ErrorKind::badInterval,
            start + ", and no rule says how longer ones follow from them. Ask for " + p.interval + ".");
    throw Error(ErrorKind::badInterval,
                start + ". Ask for " + p.interval + " or for an interval that it fills.");
}

}  // namespace

bool isShortTerm(const Interval& interval) {
    return interval.months() == 0 && interval.seconds() < 3600;
}

MonitorCode ValueReader::higher(MonitorCode a, MonitorCode b) const {
    return a == b || codes_.rankOf(a) >= codes_.rankOf(b) ? a : b;
}

void ValueReader::read(Pid pid, const Span& span, Run& run) {
    const ParameterEntry& entry = parameters_.entry(pid);
    const Parameter& p = entry.parameter;
    run.clear();
    if (p.kind() == ParameterKind::constant) {
        run.appendValues(p.constant, span.count);
        return run.finish(span.count);
    }
    if (!entry.interval) return run.finish(span.count);  // an occurrence parameter without values of its own
    if (span.interval == *entry.interval) return readOwn(entry, span.start, span.count, run);
    if (p.roll_up == Aggregation::none || !span.interval.isFilledBy(*entry.interval))
        refuseInterval(p, span.interval);
    readAggregate(entry, p.roll_up, span, run);
}

void ValueReader::readOwn(const ParameterEntry& entry, Time start, std::int32_t count, Run& run) {
    const Parameter& p = entry.parameter;
    if (p.kind() != ParameterKind::calculated)
        return store_(*entry.interval).read({p.pid, *entry.interval}, start, count, run);
    requireBoundary(p.pid, *entry.interval, start);
    const Span span{start, count, *entry.interval};
    run.clear();
    if (entry.formula)
        readFormula(entry, span, run);
    else
        readAggregate(parameters_.entry(p.uses.at(0)), p.calculation, span, run);
}

void ValueReader::readAggregate(const ParameterEntry& input, Aggregation aggregation, const Span& span,
                                Run& run) {
    const Interval& own = *input.interval;
    Run inputs;
    std::vector<double> numbers;
    for (std::int32_t done = 0; done < span.count;) {
        // As many intervals as fit into a block, at least one.
        const Time from = span.interval.step(span.start, done);
        const std::int64_t perInterval =
            std::max<std::int64_t>(own.between(from, span.interval.step(from, 1)), 1);
        const auto some = static_cast<std::int32_t>(std::min<std::int64_t>(
            span.count - done, std::max<std::int64_t>(blockOfInputs / perInterval, 1)));
        const Time to = span.interval.step(from, some);
        readOwn(input, from, static_cast<std::int32_t>(own.between(from, to)), inputs);
        numbersOf(inputs, numbers);
        std::int32_t at = 0;
        for (std::int32_t i = 0; i < some; ++i) {
            const auto end = static_cast<std::int32_t>(own.between(from, span.interval.step(from, i + 1)));
            Aggregator aggregator(aggregation);
            MonitorCode code = inputs.code(at);
            for (; at < end; ++at) {
                aggregator.take(numbers[static_cast<std::size_t>(at)], at);
                code = higher(code, inputs.code(at));
            }
            aggregator.appendResult(inputs, run);
            run.appendCode(code, 1);
        }
        done += some;
    }
    run.finish(span.count);
}

void ValueReader::readFormula(const ParameterEntry& entry, const Span& span, Run& run) {
    const Formula& formula = *entry.formula;
    const auto inputs = formula.inputs().size();
    std::vector<Run> runs(inputs);
    std::vector<std::vector<double>> columns(inputs);
    std::vector<double> numbers(inputs);
    const auto block = static_cast<std::int32_t>(blockOfInputs);
    for (std::int32_t done = 0; done < span.count;) {
        const std::int32_t some = std::min(span.count - done, block);
        const Span part{span.interval.step(span.start, done), some, span.interval};
        for (std::size_t k = 0; k < inputs; ++k) {
            read(formula.inputs()[k], part, runs[k]);
            numbersOf(runs[k], columns[k]);
        }
        for (std::int32_t i = 0; i < some; ++i) {
            MonitorCode code = 0;
            for (std::size_t k = 0; k < inputs; ++k) {
                numbers[k] = columns[k][static_cast<std::size_t>(i)];
                code = k == 0 ? runs[k].code(i) : higher(code, runs[k].code(i));
            }
            appendNumber(run, formula.evaluate(numbers));
            run.appendCode(code, 1);
        }
        done += some;
    }
    run.finish(span.count);
}

}  // namespace vtdn::store
