#include "store/directory.h"

#include <limits>

#include "store/error.h"
#include "store/schema.h"

namespace vtdn::store {
namespace {

// The columns of a DAHS in the order of readRow and bindRow.
#define VTDN_DAHS_COLUMNS                                                                                    \
    "id, description, complete_name, site_id, vantor_dir, system_dir, alarm_connection, config_connection, " \
    "data_connection, data_short_term_connection, realtime_connection, template_folder"

Dahs readRow(const Statement& row) {
    Dahs dahs;
    dahs.id = row.integer(0);
    dahs.description = row.text(1);
    dahs.complete_name = row.text(2);
    dahs.site_id = row.text(3);
    dahs.vantor_dir = row.text(4);
    dahs.system_dir = row.text(5);
    dahs.connections = {row.text(6), row.text(7), row.text(8), row.text(9), row.text(10)};
    dahs.template_folder = row.text(11);
    return dahs;
}

void bindRow(Statement& statement, const Dahs& dahs) {
    const SiteConnections& c = dahs.connections;
    statement.bindAll(dahs.id, dahs.description, dahs.complete_name, dahs.site_id, dahs.vantor_dir,
                      dahs.system_dir, c.alarm, c.config, c.data, c.data_short_term, c.realtime,
                      dahs.template_folder);
}

std::string fileIn(std::string_view home) {
    return utf8Of(pathOf(home) / "directory.db");
}

}  // namespace

Directory Directory::openOrCreate(std::string_view home) {
    std::error_code error;
    std::filesystem::create_directories(pathOf(home), error);
    if (error)
        throw Error(ErrorKind::databaseMissing, "The folder " + quote(home) + " cannot be made (" +
                                                    error.message() +
                                                    "). Check the setting of the home folder.");
    return Directory(openOrCreateDirectory(fileIn(home)));
}

Directory Directory::open(std::string_view home) {
    std::error_code ignored;
    if (!std::filesystem::exists(pathOf(fileIn(home)), ignored))
        throw Error(ErrorKind::databaseMissing,
                    "There is no DAHS directory: the file " + quote(fileIn(home)) +
                        " does not exist. Make a site with `vtdn site create`, or "
                        "set VANTOR_HOME to the folder that has the directory.");
    return Directory(openDatabase(DatabaseKind::directory, fileIn(home)));
}

std::vector<Dahs> Directory::list() {
    std::vector<Dahs> all;
    Statement rows(db_, "SELECT " VTDN_DAHS_COLUMNS " FROM dahs ORDER BY id");
    while (rows.step()) all.push_back(readRow(rows));
    return all;
}

std::optional<Dahs> Directory::find(std::int32_t id) {
    Statement row(db_, "SELECT " VTDN_DAHS_COLUMNS " FROM dahs WHERE id = ?");
    row.bindAll(id);
    if (!row.step()) return std::nullopt;
    return readRow(row);
}

Dahs Directory::get(std::int32_t id) {
    if (auto dahs = find(id)) return *std::move(dahs);
    failUnknown(id);
}

std::int32_t Directory::add(const Dahs& dahs) {
    if (dahs.id < 0)
        throw Error(ErrorKind::outOfRange, "The DAHS id " + std::to_string(dahs.id) + " is below 1.");
    Transaction transaction(db_);
    Dahs row = dahs;
    if (row.id == 0) {
        const auto next = db_.queryNumber("SELECT coalesce(max(id), 0) + 1 FROM dahs");
        if (next > std::numeric_limits<std::int32_t>::max())
            throw Error(ErrorKind::outOfRange, "The highest DAHS id is taken. Choose a free one.");
        row.id = static_cast<std::int32_t>(next);
    } else if (find(row.id)) {
        throw Error(ErrorKind::alreadyExists, "The DAHS id " + std::to_string(row.id) + " is taken in " +
                                                  quote(file()) +
                                                  ". Choose another one or remove that DAHS first.");
    }
    Statement insert(db_, "INSERT INTO dahs (" VTDN_DAHS_COLUMNS ") VALUES (?,?,?,?,?,?,?,?,?,?,?,?)");
    bindRow(insert, row);
    insert.run();
    transaction.commit();
    return row.id;
}

void Directory::update(const Dahs& dahs) {
    Transaction transaction(db_);
    if (!find(dahs.id)) failUnknown(dahs.id);
    Statement replace(db_, "REPLACE INTO dahs (" VTDN_DAHS_COLUMNS ") VALUES (?,?,?,?,?,?,?,?,?,?,?,?)");
    bindRow(replace, dahs);
    replace.run();
    transaction.commit();
}

void Directory::remove(std::int32_t id) {
    Transaction transaction(db_);
    if (!find(id)) failUnknown(id);
    Statement(db_, "DELETE FROM dahs WHERE id = ?").bindAll(id).run();
    transaction.commit();
}

void Directory::failUnknown(std::int32_t id) const {
    throw Error(ErrorKind::unknownDahs, "There is no DAHS " + std::to_string(id) + " in the directory " +
                                            quote(file()) + ". `vtdn site list` shows those there are.");
}

}  // namespace vtdn::store
