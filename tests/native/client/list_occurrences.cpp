// list_occurrences FOLDER: imports the files of a site into a home of its own and prints its occurrences, a
// line for each part: tag, time, kind, PID, category, reason, action, excludable, limit, PID of the limit; by
// tabs.
#include <iostream>

#include "client/site/sites.h"
#include "site_folder.h"
#include "store/site.h"

namespace {

using vtdn::store::OccurrencePart;

void print(const vtdn::store::OccurrenceRow& row, const char* kind, const OccurrencePart& part) {
    std::cout << row.pid << "\t" << vtdn::store::timeText(row.time) << "\t" << kind << "\t" << part.pid
              << "\t" << part.category << "\t" << part.reason << "\t" << part.action << "\t"
              << part.excludable;
}

int list(const char* folder) {
    const vtdn::client::test::TestFolder place;
    vtdn::client::ImportRequest request;
    request.folder = folder;
    const auto result = vtdn::client::importSite(place.home().string(), request);
    for (const auto& problem : result.problems) std::cout << problem.text() << "\n";
    if (!result.problems.empty()) return 1;
    vtdn::store::Site site(result.dahs.connections, "");
    const auto found = site.occurrences({.first = vtdn::store::timeOf({1900, 1, 1, 0, 0, 0}),
                                         .last = vtdn::store::timeOf({9999, 12, 31, 0, 0, 0})});
    for (const std::string& damage : found.damages) std::cout << damage << "\n";
    for (const auto& row : found.rows) {
        const auto occurrence = vtdn::store::parseOccurrence(row.text);
        if (const auto& excursion = occurrence.excursion) {
            print(row, "excursion", *excursion);
            std::cout << "\t" << excursion->limit << "\t" << excursion->limit_pid << "\n";
        }
        if (occurrence.downtime) {
            print(row, "downtime", *occurrence.downtime);
            std::cout << "\t\t\n";
        }
    }
    return found.damages.empty() ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) return 2;
    try {
        return list(argv[1]);
    } catch (const std::exception& error) {
        std::cout << error.what() << "\n";
        return 3;
    }
}
