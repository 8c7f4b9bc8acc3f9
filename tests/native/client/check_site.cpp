// check_site FOLDER: reads the files of a site and prints what is wrong with them, or "in order"; in the
// manner of `vtdn site import --check`.
#include <iostream>

#include "client/cli/failure.h"
#include "client/site/sites.h"

int main(int argc, char** argv) {
    if (argc != 2) return 2;
    try {
        vtdn::client::ImportRequest request;
        request.folder = argv[1];
        request.checkOnly = true;
        const auto result = vtdn::client::importSite({}, request);
        for (const auto& problem : result.problems) std::cout << problem.text() << "\n";
        if (result.problems.empty()) std::cout << "in order, " << result.values << " values\n";
        return result.problems.empty() ? 0 : 1;
    } catch (const vtdn::client::Failure& failure) {
        std::cout << failure.what() << "\n";
        return 3;
    }
}
