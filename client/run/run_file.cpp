#include "client/run/run_file.h"

#include <cmath>
#include <limits>
#include <optional>
#include <stdexcept>

#include "client/import/cells.h"
#include "client/import/sheet.h"
#include "client/verbs/read_range.h"
#include "store/error.h"
#include "store/pid_text.h"

namespace vtdn::client {

namespace {

using Place = std::optional<std::size_t>;

class RunFileReader {
  public:
    explicit RunFileReader(const RunFileRequest& request)
        : request_(request),
          times_{request.pid, request.interval, std::nullopt},
          problems_(request.problemLimit) {}

    RunFile read() {
        try {
            Sheet sheet(request_.name, request_.bytes, problems_);
            if (!sheet.header().empty() && takeHeader(sheet)) takeRows(sheet);
        } catch (const TooManyProblems&) {
            result_.moreProblems = true;
        }
        result_.problems = problems_.list();
        if (!result_.problems.empty()) result_.runs.clear();
        return std::move(result_);
    }

  private:
    bool takeHeader(Sheet& sheet) {
        const auto& header = sheet.header();
        bool fits = true;
        const auto refuse = [&](std::string reason) {
            sheet.problem(std::nullopt, std::move(reason));
            fits = false;
        };
        bool others = false;
        for (std::size_t i = 0; i < header.size(); ++i) {
            Place* place = placeOf(header[i]);
            if (!place) {
                if (pidOf(header[i]) != 0)
                    others = true;
                else
                    refuse("there is no use for the column " + store::quote(header[i]) +
                           " beside time, value and mc");
                continue;
            }
            if (*place) refuse("the column \"" + header[i] + "\" is the second of its kind");
            *place = i;
        }
        if (!time_) refuse("the column \"time\" is missing");
        if (!value_ && !code_) {
            const std::string pid = store::pidText(request_.pid);
            refuse("there is neither a column \"" + pid + "\" nor \"" + pid + " mc\"" +
                   (others ? "; to write the values of another parameter, name its columns value and mc"
                           : ", nor value, nor mc"));
        }
        return fits;
    }

    /// The PID of a column of values or codes; 0 for a column of anything else.
    static store::Pid pidOf(std::string_view name) {
        constexpr std::string_view suffix = " mc";
        if (name.ends_with(suffix)) name.remove_suffix(suffix.size());
        return pidOfCell(name);
    }
    Place* placeOf(std::string_view name) {
        if (name == "time") return &time_;
        if (name == "value") return &value_;
        if (name == "mc") return &code_;
        if (pidOf(name) != request_.pid) return nullptr;
        return name.ends_with(" mc") ? &code_ : &value_;
    }

    void takeRows(Sheet& sheet) {
        std::size_t rows = 0;
        while (sheet.next()) {
            if (++rows > static_cast<std::size_t>(mostIntervals)) {
                sheet.problem(std::nullopt, "these are more than " + std::to_string(mostIntervals) +
                                                " rows; write the file in pieces");
                return;
            }
            takeRow(sheet);
        }
        if (!problems_.none() || !result_.runs.empty()) return;
        sheet.problem(std::nullopt, rows == 0 ? "there is no row below the header"
                                              : "no row has a monitor code, and there are no values");
    }

    void takeRow(Sheet& sheet) {
        // All that is wrong with a row is said at once.
        const std::size_t before = problems_.list().size();
        const auto cell = [&](const Place& place, auto take) {
            if (!place) return;
            try {
                take(sheet.fields()[*place]);
            } catch (const std::invalid_argument& problem) {
                sheet.problem(place, problem.what());
            }
        };
        store::Time time = 0;
        cell(time_, [&](std::string_view text) {
            time = timeOfCell(text);
            times_.take(time);
        });
        store::WriteItem item{{}, false, false};
        cell(value_, [&](std::string_view text) {
            item.item.value = valueOf(text);
            item.value = true;
        });
        cell(code_, [&](std::string_view text) {
            if (text.empty()) return;
            item.item.code = codeOf(text);
            item.code = true;
        });
        if (problems_.list().size() == before) add(time, std::move(item));
    }

    store::Value valueOf(std::string_view text) const {
        store::Value value = valueOfCell(text);
        if (const auto number = store::numberOf(value);
            number && std::fabs(*number) > static_cast<double>(std::numeric_limits<float>::max()))
            throw std::invalid_argument(
                store::quote(text) +
                " is out of the range of single precision, which numbers are written in");
        if (const auto* words = std::get_if<std::string>(&value); words && request_.readsAsNumber(*words))
            throw std::invalid_argument(
                store::quote(text) +
                " is a number by this computer's settings and none in a file; numbers look like -12.5 or "
                "6.02e23");
        return value;
    }

    store::MonitorCode codeOf(std::string_view text) const {
        const auto code = wholeNumberOfCell(text);
        if (!code)
            throw std::invalid_argument(store::quote(text) +
                                        " is no monitor code; it has to be a whole number");
        if (!request_.knowsCode(*code))
            throw std::invalid_argument("the site has no monitor code " + std::to_string(*code) +
                                        "; `vtdn names mc` lists those that it has");
        return *code;
    }

    void add(store::Time time, store::WriteItem item) {
        if (!item.value && !item.code) return;
        if (item.code) ++result_.codes;
        if (item.value)
            ++(store::kindOf(item.item.value) == store::ValueKind::null ? result_.noValues : result_.values);
        auto& runs = result_.runs;
        if (!runs.empty()) {
            auto& items = runs.back().items;
            const auto size = static_cast<std::int64_t>(items.size());
            const std::int64_t index = request_.interval.between(runs.back().start, time);
            if (index - size <= widestGap && index < mostIntervals) {
                items.resize(static_cast<std::size_t>(index), store::WriteItem{{}, false, false});
                items.push_back(std::move(item));
                return;
            }
        }
        runs.push_back({time, {}});
        runs.back().items.push_back(std::move(item));
    }

    const RunFileRequest& request_;
    RowTimes times_;
    ImportProblems problems_;
    Place time_;
    Place value_;
    Place code_;
    RunFile result_;
};

}  // namespace

RunFile readRunFile(const RunFileRequest& request) {
    return RunFileReader(request).read();
}

}  // namespace vtdn::client
