// The DAHS directory: which sites there are on this computer and where they are.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "store/database.h"
#include "store/site.h"

namespace vtdn::store {

struct Dahs {
    std::int32_t id = 0;  ///< 1 to 2147483647
    std::string description;
    std::string complete_name;
    std::string site_id;
    std::string vantor_dir;
    std::string system_dir;
    SiteConnections connections;
    std::string template_folder;

    friend bool operator==(const Dahs&, const Dahs&) = default;
};

/// The directory under a home folder, kept in directory.db there. Several programs can use it at once; every
/// operation sees what others have done before it.
class Directory {
  public:
    /// Opens the directory and makes it, folder and all, when there is none.
    static Directory openOrCreate(std::string_view home);
    /// Opens a directory that exists. Throws databaseMissing when there is none.
    static Directory open(std::string_view home);

    /// All of them, ascending by id.
    [[nodiscard]] std::vector<Dahs> list();
    [[nodiscard]] std::optional<Dahs> find(std::int32_t id);
    /// Throws unknownDahs.
    [[nodiscard]] Dahs get(std::int32_t id);
    /// Adds a DAHS and returns its id: the given one, or with id 0 the next that is free. Throws
    /// alreadyExists for an id that is taken and outOfRange for one below 0.
    std::int32_t add(const Dahs& dahs);
    /// Changes everything but the id. Throws unknownDahs.
    void update(const Dahs& dahs);
    /// Takes a DAHS out of the directory; its databases stay. Throws unknownDahs.
    void remove(std::int32_t id);

    [[nodiscard]] const std::string& file() const { return db_.file(); }

  private:
    explicit Directory(Database db) : db_(std::move(db)) {}
    [[noreturn]] void failUnknown(std::int32_t id) const;

    Database db_;
};

}  // namespace vtdn::store
