// Verbs that look after sites.
#include "client/verbs/tables/tables.h"

namespace vtdn::client {

namespace {

VerbSpec doctor() {
    return {
        "doctor",
        "Says what is installed, in which bitness, where the sites are, what is wrong and how to mend it.",
        {},
        {json},
        {"The exit code is 0 when nothing is wrong and 3 otherwise. A 32-bit vtdn.exe looks at what 32-bit "
         "programs "
         "see, a 64-bit one at what 64-bit programs see."},
        {{"vtdn doctor", "Looks at everything."},
         {"vtdn doctor --json", "The same for a program: an array of findings."}}};
}

VerbSpec siteCreate() {
    return {"site create",
            "Makes an empty site and lists it in the DAHS directory.",
            {},
            {{"--id", "ID", "Number of the DAHS, 1 to 2147483647. The next free one when it is not given.",
              "--id 7"},
             {"--site-id", "TEXT", "Short identifier of the site. Required.", "--site-id MILL"},
             {"--name", "TEXT", "Complete name.", "--name \"Riverside Paper, power boiler 1\""},
             {"--description", "TEXT", "One line for lists.", "--description \"Paper mill boiler 1\""}},
            {"The five databases are made in the folder sites under VANTOR_HOME (%ProgramData%\\Vantor when "
             "that is not "
             "set). Fill the site with `vtdn site import --dahs ID FOLDER`."},
            {{"vtdn site create --id 7 --site-id MILL", "Makes DAHS 7."}}};
}

VerbSpec siteImport() {
    return {
        "site import",
        "Loads a plant from a folder of CSV files, all of it or nothing.",
        {{"FOLDER", "The folder with parameters.csv, monitor_codes.csv, site.csv and values\\*.csv."}},
        {{"--dahs", "ID",
          "Number of the DAHS, before the one in site.csv. Without either, the next free one.", "--dahs 7"},
         {"--update", "",
          "Loads into a site that has been loaded before: its parameters and monitor codes are replaced by "
          "those of the "
          "files, the values of the files are written, and other values stay.",
          "--update"},
         {"--check", "", "Reads and checks everything, and changes nothing.", "--check"},
         {"--limit", "COUNT", "How many broken rows are listed before reading ends (20).", "--limit 100"},
         {"--progress", "",
          "Says how far it is in plain lines on standard error. In a terminal there is a progress bar "
          "anyway.",
          "--progress"}},
        {"docs/site-files.md describes the files. Every broken row is listed with file, line, column and "
         "reason; when "
         "there is one, nothing is loaded and the exit code is 1."},
        {{"vtdn site import data/demo/barry5", "Loads the demo plant."},
         {"vtdn site import C:\\plants\\mill --check", "Says what is wrong with the files."},
         {"vtdn site import C:\\plants\\mill --update", "Adds next month's files."}}};
}

VerbSpec siteList() {
    return {"site list",
            "Lists the sites of this computer.",
            {},
            {csv, json},
            {},
            {{"vtdn site list", "A table."}, {"vtdn site list --json", "With the connection strings."}}};
}

VerbSpec siteRemove() {
    return {"site remove",
            "Takes a site out of the DAHS directory.",
            {{"ID", "Number of the DAHS, as `vtdn site list` shows it."}},
            {{"--yes", "", "Does not ask. Without it the id has to be typed once more.", "--yes"},
             {"--files", "", "Also deletes the database files. They are kept otherwise.", "--files"}},
            {},
            {{"vtdn site remove 7", "Asks first, and keeps the files."},
             {"vtdn site remove 7 --files --yes", "Deletes everything at once."}}};
}

}  // namespace

std::vector<VerbSpec> siteTable() {
    return {doctor(), siteCreate(), siteImport(), siteList(), siteRemove()};
}

}  // namespace vtdn::client
