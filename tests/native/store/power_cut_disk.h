// A disk in memory whose power can be cut: what was not synced is lost, in part or whole, in any order.
#pragma once

#include <sqlite3.h>

#include <cstdint>
#include <map>
#include <memory>
#include <random>
#include <string>
#include <vector>

namespace vtdn::store::test {

/// Stands in for the file system of every database that is opened while it lives. One connection at a time.
///
/// A write reaches the platter only with the next sync of its file. When the power is cut each 512-byte
/// sector written since then survives or not, on its own, and one in twenty of those that do not holds
/// rubbish. Making and removing a file is durable at once.
class PowerCutDisk {
  public:
    PowerCutDisk();
    ~PowerCutDisk();
    PowerCutDisk(const PowerCutDisk&) = delete;
    PowerCutDisk& operator=(const PowerCutDisk&) = delete;

    /// The power goes off at the n-th change or sync from now, and every operation fails from then on.
    void cutAfter(std::int64_t operations) { left_ = operations; }
    [[nodiscard]] bool isOff() const { return off_; }
    /// Decides what survived and puts the power on again. Nothing must be open.
    void restart(std::mt19937& random);

    /// The platter of now and back to it, to start many trials from one state. Nothing must be open.
    using Image = std::map<std::string, std::vector<std::uint8_t>>;
    [[nodiscard]] Image image() const;
    void restore(const Image& image);

  private:
    friend struct PowerCutFile;
    struct Change {
        std::int64_t offset;
        bool truncates;
        std::vector<std::uint8_t> bytes;
    };
    struct Content {
        std::vector<std::uint8_t> now;      // what a reader sees
        std::vector<std::uint8_t> platter;  // what a power cut leaves
        std::vector<Change> pending;        // what lies between
        std::vector<std::unique_ptr<char[]>> shared;
    };

    bool spend();
    static int open(sqlite3_vfs* vfs, sqlite3_filename name, sqlite3_file* file, int flags, int* out);
    static int remove(sqlite3_vfs* vfs, const char* name, int sync);
    static int access(sqlite3_vfs* vfs, const char* name, int flags, int* out);

    sqlite3_vfs* usual_;
    sqlite3_vfs vfs_;
    std::map<std::string, std::shared_ptr<Content>> files_;
    std::int64_t left_ = -1;
    bool off_ = false;
};

}  // namespace vtdn::store::test
