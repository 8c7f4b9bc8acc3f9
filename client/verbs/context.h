// What every verb has in its hands, and the verbs themselves.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "client/cli/command.h"
#include "client/component/component.h"
#include "client/output/rows.h"
#include "client/platform/console.h"
#include "client/verbs/typed_arguments.h"
#include "store/schema.h"
#include "store/site.h"

namespace vtdn::client {

struct Context {
    const Arguments& arguments;
    Console& console;

    /// --csv, --json or a table.
    [[nodiscard]] Format format() const;
    [[nodiscard]] std::unique_ptr<RowWriter> rows(std::vector<Column> columns) const {
        return makeRowWriter(format(), std::move(columns), console.sink());
    }
};

/// The component, bound to the DAHS that --dahs, VANTOR_DAHS or the directory says.
class Binding {
  public:
    /// Throws Failure when there is no DAHS, more than one to choose from, or the engine refuses.
    explicit Binding(Context& context);

    Component* operator->() { return &component_; }
    Component& component() { return component_; }
    [[nodiscard]] std::int32_t dahsId() const { return dahsId_; }
    /// PIDs of all parameters, ascending.
    std::vector<std::int32_t> pids();

    /// A database of the site, for what the component has no operation to list.
    store::Database database(store::DatabaseKind kind);

    /// The site itself, for what the component has no operation to list.
    store::Site site();

    /// Ends the verb when there is no such parameter.
    void needParameter(std::int32_t pid);
    /// The parameter's own interval; nothing when it has none.
    std::optional<store::Interval> interval(std::int32_t pid);

    /// The interval of the parameter's data points. Ends the verb when it has none.
    store::Interval pointInterval(std::int32_t pid);

    /// Prints the problems list when a call was refused, or when --problems asks for it.
    void report(bool refused);
    /// Ends the verb with what the component says about a refused call.
    [[noreturn]] void refuse(const std::string& sentence, const std::string& next);
    /// report(), and the end of the verb when the list holds a refusal or a trapped failure. For operations
    /// whose result does not tell one.
    void needNoRefusal(const std::string& sentence, const std::string& next);

  private:
    std::vector<std::string> printProblems();

    Context& context_;
    Component component_;
    std::int32_t dahsId_;
};

/// Writes a picture. Throws Failure (environment) when that is not possible.
void writePicture(const std::string& file, const std::string& svg);

ExitCode runDoctor(Context& context);
ExitCode runSiteCreate(Context& context);
ExitCode runSiteImport(Context& context);
ExitCode runSiteList(Context& context);
ExitCode runSiteRemove(Context& context);
ExitCode runParamsList(Context& context);
ExitCode runParamsShow(Context& context);
ExitCode runParamsUses(Context& context);
ExitCode runRead(Context& context);
ExitCode runWrite(Context& context);
ExitCode runProblems(Context& context);
ExitCode runParamsRelated(Context& context);
ExitCode runParamsSpecial(Context& context);
ExitCode runParamsCall(Context& context);
ExitCode runParamsOptime(Context& context);
ExitCode runNamesUnits(Context& context);
ExitCode runNamesMc(Context& context);
ExitCode runNamesPc(Context& context);
ExitCode runAlarmWrite(Context& context);
ExitCode runAlarmList(Context& context);
ExitCode runPointsList(Context& context);
ExitCode runPointsSetExtra(Context& context);
ExitCode runPointsHistory(Context& context);
ExitCode runOccurrencesList(Context& context);
ExitCode runOccurrencesShow(Context& context);
ExitCode runOccurrencesCreate(Context& context);
ExitCode runOccurrencesEdit(Context& context);

/// `vtdn write` with --file.
ExitCode runWriteFile(Context& context);

}  // namespace vtdn::client
