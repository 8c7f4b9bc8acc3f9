#include "store/monitor_codes.h"

#include "store/numbers_seen.h"

namespace vtdn::store {

MonitorCodeTable MonitorCodeTable::load(Database& config) {
    MonitorCodeTable table;
    Statement rows(config, "SELECT code, short_name, long_name, rank FROM monitor_code");
    while (rows.step())
        table.codes_[rows.integer(0)] = {rows.integer(0), rows.text(1), rows.text(2), rows.integer(3)};
    return table;
}

std::int32_t MonitorCodeTable::rankOf(MonitorCode code) const {
    const auto found = codes_.find(code);
    return found == codes_.end() ? code : found->second.rank;
}

void replaceMonitorCodes(Database& config, std::span<const MonitorCodeName> codes) {
    Transaction transaction(config);
    config.execute("DELETE FROM monitor_code");
    Statement insert(config,
                     "INSERT INTO monitor_code (code, short_name, long_name, rank) VALUES (?, ?, ?, ?)");
    NumbersSeen seen("monitor code", highestMonitorCode);
    for (const MonitorCodeName& code : codes) {
        seen.add(code.code);
        insert.bindAll(code.code, code.short_name, code.long_name, code.rank).run();
    }
    if (!seen.contains(0)) insert.bindAll(0, "", "No code", 0).run();
    transaction.commit();
}

}  // namespace vtdn::store
