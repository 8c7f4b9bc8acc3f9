#include "store/parameter_codes.h"

#include "store/numbers_seen.h"
#include "store/strict_row.h"

namespace vtdn::store {

ParameterCodeTable ParameterCodeTable::load(Database& config) {
    ParameterCodeTable table;
    Statement rows(config, "SELECT code, short_name, long_name FROM parameter_code");
    const StrictRow row(config, rows, "a parameter code");
    while (rows.step()) {
        const auto code = row.integer(0, 0, highestParameterCode);
        table.codes_[code] = {code, row.text(1), row.text(2)};
    }
    return table;
}

void replaceParameterCodes(Database& config, std::span<const ParameterCodeName> codes) {
    Transaction transaction(config);
    config.execute("DELETE FROM parameter_code");
    Statement insert(config, "INSERT INTO parameter_code (code, short_name, long_name) VALUES (?, ?, ?)");
    NumbersSeen seen("parameter code", highestParameterCode);
    for (const ParameterCodeName& code : codes) {
        seen.add(code.code);
        insert.bindAll(code.code, code.short_name, code.long_name).run();
    }
    transaction.commit();
}

}  // namespace vtdn::store
