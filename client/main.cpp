// vtdn: from the words of the command line to an exit code.
#include <windows.h>

#include <map>
#include <string>
#include <vector>

#include "client/cli/failure.h"
#include "client/component/error_text.h"
#include "client/platform/console.h"
#include "client/platform/module_file.h"
#include "client/verbs/context.h"
#include "client/verbs/table.h"
#include "com/error.h"
#include "com/strings.h"
#include "store/error.h"

namespace vtdn::client {
namespace {

using Runner = ExitCode (*)(Context&);

const std::map<std::string_view, Runner>& runners() {
    static const std::map<std::string_view, Runner> table{{"doctor", runDoctor},
                                                          {"site create", runSiteCreate},
                                                          {"site import", runSiteImport},
                                                          {"site list", runSiteList},
                                                          {"site remove", runSiteRemove},
                                                          {"params list", runParamsList},
                                                          {"params show", runParamsShow},
                                                          {"params uses", runParamsUses},
                                                          {"params related", runParamsRelated},
                                                          {"params special", runParamsSpecial},
                                                          {"params call", runParamsCall},
                                                          {"params optime", runParamsOptime},
                                                          {"read", runRead},
                                                          {"write", runWrite},
                                                          {"points list", runPointsList},
                                                          {"points set-extra", runPointsSetExtra},
                                                          {"points history", runPointsHistory},
                                                          {"occurrences list", runOccurrencesList},
                                                          {"occurrences show", runOccurrencesShow},
                                                          {"occurrences create", runOccurrencesCreate},
                                                          {"occurrences edit", runOccurrencesEdit},
                                                          {"names units", runNamesUnits},
                                                          {"names mc", runNamesMc},
                                                          {"names pc", runNamesPc},
                                                          {"alarm write", runAlarmWrite},
                                                          {"alarm list", runAlarmList},
                                                          {"problems", runProblems}};
    return table;
}

/// Objects of the component live on this thread, and only while this does.
class Apartment {
  public:
    Apartment() { com::check(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED)); }
    ~Apartment() { CoUninitialize(); }
    Apartment(const Apartment&) = delete;
    Apartment& operator=(const Apartment&) = delete;
};

ExitCode perform(const std::vector<std::string>& words, Console& console) {
    const auto verbs = verbTable();
    const Command command = parseCommand(verbs, words);
    switch (command.kind) {
        case Command::Kind::nothing:
            console.error(overviewText(verbs));
            return ExitCode::usage;
        case Command::Kind::overview:
            console.out(overviewText(verbs));
            return ExitCode::done;
        case Command::Kind::groupHelp:
            console.out(groupText(verbs, command.group));
            // `vtdn site` alone asked for nothing.
            return words.size() == 1 ? ExitCode::usage : ExitCode::done;
        case Command::Kind::help:
            console.out(helpText(*command.verb));
            return ExitCode::done;
        case Command::Kind::version:
            console.out("vtdn " VTDN_VERSION ", " + std::to_string(ownBits) + "-bit\n");
            return ExitCode::done;
        case Command::Kind::run:
            break;
    }
    const Apartment apartment;
    Context context{command.arguments, console};
    return runners().at(command.verb->name)(context);
}

/// What the store refuses: a rule that was broken, or something that is not as it has to be.
ExitCode codeOf(store::ErrorKind kind) {
    switch (kind) {
        case store::ErrorKind::internal:
            return ExitCode::internal;
        case store::ErrorKind::malformedConnection:
        case store::ErrorKind::unknownDahs:
        case store::ErrorKind::databaseMissing:
        case store::ErrorKind::databaseLocked:
        case store::ErrorKind::databaseDamaged:
        case store::ErrorKind::databaseReadOnly:
        case store::ErrorKind::databaseNewer:
        case store::ErrorKind::notASiteDatabase:
        case store::ErrorKind::diskFull:
        case store::ErrorKind::ioFailure:
            return ExitCode::environment;
        default:
            return ExitCode::refused;
    }
}

ExitCode run(const std::vector<std::string>& words) {
    Console console;
    const auto say = [&](const std::string& sentence, const std::string& next) {
        console.error("vtdn: " + sentence);
        if (!next.empty()) console.error(next);
    };
    try {
        const ExitCode code = perform(words, console);
        console.flush();
        return code;
    } catch (const Failure& failure) {
        say(failure.what(), failure.next());
        return failure.code();
    } catch (const com::Error& error) {
        say(describe(error), adviceFor(error));
        return ExitCode::refused;
    } catch (const store::Error& error) {
        say(error.what(), {});
        return codeOf(error.kind());
    } catch (const std::bad_alloc&) {
        say("There is not enough memory.", "Read fewer intervals at a time.");
        return ExitCode::internal;
    } catch (const std::exception& error) {
        say(std::string("Something went wrong that should not: ") + error.what(),
            "`vtdn doctor` may know why.");
        return ExitCode::internal;
    }
}

}  // namespace
}  // namespace vtdn::client

int wmain(int argc, wchar_t** argv) {
    std::vector<std::string> words;
    for (int i = 1; i < argc; ++i) words.push_back(vtdn::com::toUtf8(argv[i]));
    return static_cast<int>(vtdn::client::run(words));
}
