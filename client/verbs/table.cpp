#include "client/verbs/table.h"

#include "client/verbs/tables/tables.h"

namespace vtdn::client {

std::span<const VerbSpec> verbTable() {
    static const std::vector<VerbSpec> table = [] {
        std::vector<VerbSpec> all;
        for (const auto& part :
             {siteTable(), paramsTable(), valuesTable(), pointsTable(), occurrencesTable(), othersTable()})
            all.insert(all.end(), part.begin(), part.end());
        return all;
    }();
    return table;
}

}  // namespace vtdn::client
