#include "client/import/values.h"

#include <algorithm>
#include <array>
#include <map>
#include <set>
#include <stdexcept>

#include "client/import/cells.h"
#include "store/error.h"
#include "store/interval.h"
#include "store/pid_text.h"

namespace vtdn::client {

namespace {

constexpr std::string_view codeSuffix = " mc";

/// Thrown for a cell; carries the column's place in the header.
struct CellProblem {
    std::size_t column;
    std::string reason;
};

class ValueFileReader {
  public:
    ValueFileReader(const SiteDefinition& definition, ValueSink& sink, ImportProblems& problems)
        : sink_(sink), problems_(problems) {
        for (const store::MonitorCodeName& code : definition.monitorCodes) codes_.insert(code.code);
        codes_.insert(0);
        for (std::size_t i = 0; i < definition.parameters.size(); ++i)
            addParameter(definition.parameters[i], i);
    }

    void read(const SiteFile& file, const BytesRead& progress) {
        Sheet sheet(file, problems_, progress);
        sheet_ = &sheet;
        const auto& header = sheet.header();
        if (header.empty()) return;
        const bool isLong = std::find(header.begin(), header.end(), "pid") != header.end();
        if (isLong)
            readLong();
        else
            readWide();
    }

    [[nodiscard]] std::size_t count() const { return count_; }

  private:
    static constexpr std::size_t none = static_cast<std::size_t>(-1);

    void addParameter(const store::Parameter& p, std::size_t index) {
        if (p.kind() != store::ParameterKind::database) {
            notStored_.insert(p.pid);
            return;
        }
        try {
            indexOf_.emplace(p.pid, index);
            series_.resize(index + 1);
            series_[index] = RowTimes{p.pid, store::Interval::parse(p.interval), std::nullopt};
        } catch (const store::Error&) {
            // Reported with the parameter; its values are of no interest.
            indexOf_[p.pid] = none;
        }
    }

    /// The series of a PID; `none` for one whose parameter has a problem of its own.
    std::size_t seriesOf(std::string_view text, std::size_t column) const {
        const store::Pid pid = pidOfCell(text);
        if (pid == 0)
            throw CellProblem{column,
                              store::quote(text) + " is no PID; PIDs look like 5-040-3-00-00 or 504030000"};
        if (notStored_.contains(pid))
            throw CellProblem{
                column,
                store::pidText(pid) +
                    " is a constant, calculated or occurrence parameter, and has no values of its own"};
        const auto found = indexOf_.find(pid);
        if (found == indexOf_.end())
            throw CellProblem{column, "parameters.csv has no parameter " + store::pidText(pid)};
        return found->second;
    }

    store::MonitorCode codeOf(std::string_view text, std::size_t column) {
        if (text.empty()) return 0;
        // Codes come in long rows of the same one.
        if (text == lastCodeText_) return lastCode_;
        const auto code = wholeNumberOfCell(text);
        if (!code)
            throw CellProblem{column,
                              store::quote(text) + " is no monitor code; it has to be a whole number"};
        if (!codes_.contains(*code))
            throw CellProblem{column, "monitor_codes.csv has no code " + std::to_string(*code)};
        lastCodeText_ = text;
        lastCode_ = *code;
        return *code;
    }

    /// What a function makes of a cell, its reasons with the cell's place.
    template <class Read>
    static auto at(std::size_t column, Read read) {
        try {
            return read();
        } catch (const std::invalid_argument& problem) {
            throw CellProblem{column, problem.what()};
        }
    }
    static store::Time timeOf(std::string_view text, std::size_t column) {
        return at(column, [text] { return timeOfCell(text); });
    }
    static store::Value valueAt(std::string_view text, std::size_t column) {
        return at(column, [text] { return valueOfCell(text); });
    }

    void take(std::size_t index, store::Time time, std::size_t timeColumn, store::Value value,
              store::MonitorCode code) {
        if (index == none || (store::kindOf(value) == store::ValueKind::null && code == 0)) return;
        at(timeColumn, [&] { series_[index]->take(time); });
        sink_.append(index, time, store::Item{std::move(value), code});
        ++count_;
    }

    /// Calls a function for a cell and reports what is wrong with it.
    template <class Read>
    bool trying(Read read) {
        try {
            read();
            return true;
        } catch (const CellProblem& problem) {
            sheet_->problem(problem.column, problem.reason);
            return false;
        }
    }

    // Long form.

    void readLong() {
        enum { timeCell, pidCell, valueCell, codeCell };
        constexpr std::array<std::string_view, 4> names{"time", "pid", "value", "mc"};
        std::array<std::size_t, 4> places{none, none, none, none};
        const auto& header = sheet_->header();
        bool fits = true;
        const auto refuse = [&](std::string reason) {
            sheet_->problem(std::nullopt, std::move(reason));
            fits = false;
        };
        for (std::size_t i = 0; i < header.size(); ++i) {
            const auto name = std::find(names.begin(), names.end(), header[i]);
            if (name == names.end()) {
                refuse("there is no column " + store::quote(header[i]) + " beside time, pid, value and mc");
                continue;
            }
            std::size_t& place = places[static_cast<std::size_t>(name - names.begin())];
            if (place != none) refuse("the column \"" + header[i] + "\" occurs twice");
            place = i;
        }
        for (const auto cell : {timeCell, pidCell, valueCell})
            if (places[cell] == none) refuse("the column \"" + std::string(names[cell]) + "\" is missing");
        if (!fits) return;
        while (sheet_->next()) {
            const auto& fields = sheet_->fields();
            trying([&] {
                const store::Time time = timeOf(fields[places[timeCell]], places[timeCell]);
                const std::size_t index = seriesOf(fields[places[pidCell]], places[pidCell]);
                store::Value value = valueAt(fields[places[valueCell]], places[valueCell]);
                const bool coded = places[codeCell] != none;
                take(index, time, places[timeCell], std::move(value),
                     coded ? codeOf(fields[places[codeCell]], places[codeCell]) : 0);
            });
        }
    }

    // Wide form.

    struct WideColumn {
        std::size_t index;  // of the series
        std::size_t value;  // place in the header
        std::size_t code;   // place in the header, or none
    };

    bool readWideHeader(std::vector<WideColumn>& columns) {
        const auto& header = sheet_->header();
        bool fits = true;
        if (header[0] != "time") {
            sheet_->problem(
                std::nullopt,
                "the first column has to be \"time\", with PIDs behind it, or the columns have to be "
                "time, pid, value and mc");
            return false;
        }
        std::map<store::Pid, std::size_t> places;
        for (std::size_t i = 1; i < header.size(); ++i) {
            if (header[i].ends_with(codeSuffix)) continue;
            fits &= trying([&] {
                const std::size_t index = seriesOf(header[i], i);
                if (!places.emplace(pidOfCell(header[i]), columns.size()).second)
                    throw CellProblem{i, "the parameter has two columns"};
                columns.push_back({index, i, none});
            });
        }
        for (std::size_t i = 1; i < header.size(); ++i) {
            if (!header[i].ends_with(codeSuffix)) continue;
            fits &= trying([&] {
                const std::string_view name =
                    std::string_view(header[i]).substr(0, header[i].size() - codeSuffix.size());
                const auto place = places.find(pidOfCell(name));
                if (place == places.end())
                    throw CellProblem{i, "there is no column with the values that these codes are for"};
                std::size_t& code = columns[place->second].code;
                if (code != none) throw CellProblem{i, "the parameter has two columns of monitor codes"};
                code = i;
            });
        }
        return fits;
    }

    void readWide() {
        std::vector<WideColumn> columns;
        if (!readWideHeader(columns)) return;
        while (sheet_->next()) {
            const auto& fields = sheet_->fields();
            store::Time time = 0;
            if (!trying([&] { time = timeOf(fields[0], 0); })) continue;
            for (const WideColumn& column : columns) {
                trying([&] {
                    store::Value value = valueAt(fields[column.value], column.value);
                    take(column.index, time, 0, std::move(value),
                         column.code == none ? 0 : codeOf(fields[column.code], column.code));
                });
            }
        }
    }

    ValueSink& sink_;
    ImportProblems& problems_;
    Sheet* sheet_ = nullptr;
    std::set<store::MonitorCode> codes_;
    std::set<store::Pid> notStored_;
    std::map<store::Pid, std::size_t> indexOf_;
    std::vector<std::optional<RowTimes>> series_;  // by place in the definition; empty for what is not stored
    std::string lastCodeText_;
    store::MonitorCode lastCode_ = 0;
    std::size_t count_ = 0;
};

}  // namespace

std::size_t readValues(const SiteFolder& folder, const SiteDefinition& definition, ValueSink& sink,
                       ImportProblems& problems, const BytesRead& progress) {
    ValueFileReader reader(definition, sink, problems);
    for (const SiteFile& file : folder.values) reader.read(file, progress);
    return reader.count();
}

}  // namespace vtdn::client
