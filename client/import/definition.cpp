#include "client/import/definition.h"

#include <algorithm>
#include <array>
#include <set>

#include "client/cli/spelling.h"
#include "client/import/cells.h"
#include "client/import/known_parameters.h"
#include "client/import/name_tables.h"
#include "client/import/parameters.h"
#include "client/import/relationships.h"
#include "client/import/special_values.h"
#include "store/error.h"

namespace vtdn::client {

namespace {

constexpr std::size_t longestSiteId = 32;

using store::quote;

void readSite(const SiteFile& file, SiteDefinition& site, ImportProblems& problems) {
    struct Key {
        std::string_view name;
        std::string SiteDefinition::*place;
        std::size_t longest;
    };
    constexpr std::array<Key, 3> texts{{{"site_id", &SiteDefinition::siteId, longestSiteId},
                                        {"description", &SiteDefinition::description, longestDescription},
                                        {"complete_name", &SiteDefinition::completeName, longestText}}};
    constexpr std::array<std::string_view, 4> keys{"dahs_id", texts[0].name, texts[1].name, texts[2].name};
    constexpr std::array<ColumnSpec, 2> columns{{{"key", true}, {"value", true}}};
    std::set<std::string_view> seen;
    Table table(file, columns, problems);
    while (table.next()) {
        const auto key = std::find(keys.begin(), keys.end(), table.cell(0));
        if (key == keys.end()) {
            const std::string_view near = nearestSpelling(table.cell(0), keys);
            table.problem(0, "there is no key " + quote(table.cell(0)) +
                                 (near.empty() ? "" : "; \"" + std::string(near) + "\" is one"));
        } else if (!seen.insert(*key).second) {
            table.problem(0, "the key " + quote(*key) + " occurs twice");
        } else if (key == keys.begin()) {
            site.dahsId = wholeNumberOfCell(table.cell(1));
            if (!site.dahsId || *site.dahsId < 1)
                table.problem(
                    1, quote(table.cell(1)) + " is no DAHS id; it has to be a number from 1 to 2147483647");
        } else {
            const Key& text = texts[static_cast<std::size_t>(key - keys.begin()) - 1];
            site.*text.place = table.text(1, text.longest);
        }
    }
}

}  // namespace

SiteDefinition readDefinition(const SiteFolder& folder, ImportProblems& problems) {
    SiteDefinition site;
    if (folder.site) readSite(*folder.site, site, problems);
    if (folder.units) site.units = readUnits(*folder.units, problems);
    if (folder.monitorCodes) site.monitorCodes = readMonitorCodes(*folder.monitorCodes, problems);
    if (folder.parameterCodes) site.parameterCodes = readParameterCodes(*folder.parameterCodes, problems);
    if (folder.parameters) site.parameters = readParameters(*folder.parameters, problems);
    const KnownParameters parameters(site.parameters);
    std::vector<SpecialValueRow> specialValues;
    if (folder.specialValues) specialValues = readSpecialValues(*folder.specialValues, parameters, problems);
    site.occurrenceParameters = readOccurrenceParameters(site.parameters, specialValues, problems);
    for (SpecialValueRow& row : specialValues) site.specialValues.push_back(std::move(row.entry));
    if (folder.relationships)
        site.relationships = readRelationships(*folder.relationships, parameters, problems);
    return site;
}

}  // namespace vtdn::client
