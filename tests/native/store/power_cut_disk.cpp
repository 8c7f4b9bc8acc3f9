#include "power_cut_disk.h"

#include <algorithm>
#include <cstring>
#include <fstream>
#include <new>

namespace vtdn::store::test {
namespace {

constexpr std::size_t sectorSize = 512;

void overwrite(std::vector<std::uint8_t>& to, std::int64_t offset, const std::uint8_t* bytes, std::size_t n) {
    const auto at = static_cast<std::size_t>(offset);
    if (to.size() < at + n) to.resize(at + n);
    std::copy_n(bytes, n, to.begin() + static_cast<std::ptrdiff_t>(at));
}

}  // namespace

// An open file as SQLite holds it.
struct PowerCutFile {
    sqlite3_file base;
    PowerCutDisk* disk;
    std::shared_ptr<PowerCutDisk::Content> content;

    static PowerCutFile& of(sqlite3_file* file) { return *reinterpret_cast<PowerCutFile*>(file); }

    static int close(sqlite3_file* file) {
        of(file).~PowerCutFile();
        return SQLITE_OK;
    }
    static int read(sqlite3_file* file, void* to, int n, sqlite3_int64 offset) {
        if (of(file).disk->isOff()) return SQLITE_IOERR_READ;
        const auto& now = of(file).content->now;
        const auto size = static_cast<std::int64_t>(now.size());
        const std::int64_t there = std::clamp<std::int64_t>(size - offset, 0, n);
        std::memset(to, 0, static_cast<std::size_t>(n));
        if (there > 0) std::memcpy(to, now.data() + offset, static_cast<std::size_t>(there));
        return there == n ? SQLITE_OK : SQLITE_IOERR_SHORT_READ;
    }
    static int write(sqlite3_file* file, const void* from, int n, sqlite3_int64 offset) {
        PowerCutFile& f = of(file);
        if (f.disk->off_) return SQLITE_IOERR_WRITE;
        const auto* bytes = static_cast<const std::uint8_t*>(from);
        // The write during which the power goes may still have reached the disk in part.
        f.content->pending.push_back({offset, false, {bytes, bytes + n}});
        if (!f.disk->spend()) return SQLITE_IOERR_WRITE;
        overwrite(f.content->now, offset, bytes, static_cast<std::size_t>(n));
        return SQLITE_OK;
    }
    static int truncate(sqlite3_file* file, sqlite3_int64 size) {
        PowerCutFile& f = of(file);
        if (f.disk->off_) return SQLITE_IOERR_TRUNCATE;
        f.content->pending.push_back({size, true, {}});
        if (!f.disk->spend()) return SQLITE_IOERR_TRUNCATE;
        f.content->now.resize(static_cast<std::size_t>(size));
        return SQLITE_OK;
    }
    static int sync(sqlite3_file* file, int) {
        PowerCutFile& f = of(file);
        if (!f.disk->spend()) return SQLITE_IOERR_FSYNC;
        f.content->platter = f.content->now;
        f.content->pending.clear();
        return SQLITE_OK;
    }
    static int fileSize(sqlite3_file* file, sqlite3_int64* size) {
        *size = static_cast<sqlite3_int64>(of(file).content->now.size());
        return SQLITE_OK;
    }
    static int lock(sqlite3_file*, int) { return SQLITE_OK; }
    static int checkReservedLock(sqlite3_file*, int* out) {
        *out = 0;
        return SQLITE_OK;
    }
    static int fileControl(sqlite3_file*, int, void*) { return SQLITE_NOTFOUND; }
    static int sector(sqlite3_file*) { return static_cast<int>(sectorSize); }
    static int characteristics(sqlite3_file*) { return 0; }
    static int shmMap(sqlite3_file* file, int region, int size, int, void volatile** out) {
        auto& shared = of(file).content->shared;
        while (shared.size() <= static_cast<std::size_t>(region))
            shared.push_back(std::make_unique<char[]>(static_cast<std::size_t>(size)));
        *out = shared[static_cast<std::size_t>(region)].get();
        return SQLITE_OK;
    }
    static int shmLock(sqlite3_file*, int, int, int) { return SQLITE_OK; }
    static void shmBarrier(sqlite3_file*) {}
    static int shmUnmap(sqlite3_file* file, int) {
        of(file).content->shared.clear();
        return SQLITE_OK;
    }
};

namespace {

constexpr sqlite3_io_methods methods{2,
                                     PowerCutFile::close,
                                     PowerCutFile::read,
                                     PowerCutFile::write,
                                     PowerCutFile::truncate,
                                     PowerCutFile::sync,
                                     PowerCutFile::fileSize,
                                     PowerCutFile::lock,
                                     PowerCutFile::lock,
                                     PowerCutFile::checkReservedLock,
                                     PowerCutFile::fileControl,
                                     PowerCutFile::sector,
                                     PowerCutFile::characteristics,
                                     PowerCutFile::shmMap,
                                     PowerCutFile::shmLock,
                                     PowerCutFile::shmBarrier,
                                     PowerCutFile::shmUnmap,
                                     nullptr,
                                     nullptr};

}  // namespace

PowerCutDisk::PowerCutDisk() : usual_(sqlite3_vfs_find(nullptr)), vfs_(*usual_) {
    vfs_.szOsFile = sizeof(PowerCutFile);
    vfs_.zName = "power-cut";
    vfs_.pNext = nullptr;
    vfs_.pAppData = this;
    vfs_.xOpen = open;
    vfs_.xDelete = remove;
    vfs_.xAccess = access;
    sqlite3_vfs_register(&vfs_, 1);
}

PowerCutDisk::~PowerCutDisk() {
    sqlite3_vfs_unregister(&vfs_);
    sqlite3_vfs_register(usual_, 1);
}

bool PowerCutDisk::spend() {
    if (!off_ && left_ > 0 && --left_ == 0) off_ = true;
    return !off_;
}

int PowerCutDisk::open(sqlite3_vfs* vfs, sqlite3_filename name, sqlite3_file* file, int flags, int* out) {
    auto& disk = *static_cast<PowerCutDisk*>(vfs->pAppData);
    file->pMethods = nullptr;
    if (disk.off_) return SQLITE_CANTOPEN;
    const std::string key = name == nullptr ? "" : name;
    auto& content = disk.files_[key];
    if (!content) {
        content = std::make_shared<Content>();
        // The store looks for a database in the usual file system before it opens one.
        if ((flags & SQLITE_OPEN_MAIN_DB) != 0) std::ofstream(key).flush();
    }
    auto* made = new (file) PowerCutFile{{&methods}, &disk, content};
    if (out != nullptr) *out = flags;
    return made != nullptr ? SQLITE_OK : SQLITE_NOMEM;
}

int PowerCutDisk::remove(sqlite3_vfs* vfs, const char* name, int) {
    auto& disk = *static_cast<PowerCutDisk*>(vfs->pAppData);
    if (!disk.spend()) return SQLITE_IOERR_DELETE;
    return disk.files_.erase(name) == 1 ? SQLITE_OK : SQLITE_IOERR_DELETE_NOENT;
}

int PowerCutDisk::access(sqlite3_vfs* vfs, const char* name, int, int* out) {
    *out = static_cast<PowerCutDisk*>(vfs->pAppData)->files_.contains(name) ? 1 : 0;
    return SQLITE_OK;
}

void PowerCutDisk::restart(std::mt19937& random) {
    const auto chance = [&random](unsigned oneIn) { return random() % oneIn == 0; };
    for (auto& [name, content] : files_) {
        // Sometimes nothing survives, sometimes everything, mostly a part.
        const unsigned fate = static_cast<unsigned>(random() % 4);
        for (const Change& change : content->pending) {
            if (change.truncates) {
                if (fate == 1 || (fate > 1 && chance(2)))
                    content->platter.resize(static_cast<std::size_t>(change.offset));
                continue;
            }
            for (std::size_t at = 0; at < change.bytes.size(); at += sectorSize) {
                std::vector<std::uint8_t> sector(
                    change.bytes.begin() + static_cast<std::ptrdiff_t>(at),
                    change.bytes.begin() +
                        static_cast<std::ptrdiff_t>(std::min(at + sectorSize, change.bytes.size())));
                const bool survives = fate == 1 || (fate > 1 && chance(2));
                if (!survives && !chance(20)) continue;
                if (!survives)
                    std::generate(sector.begin(), sector.end(),
                                  [&] { return static_cast<std::uint8_t>(random()); });
                overwrite(content->platter, change.offset + static_cast<std::int64_t>(at), sector.data(),
                          sector.size());
            }
        }
        content->pending.clear();
        content->now = content->platter;
        content->shared.clear();
    }
    off_ = false;
    left_ = -1;
}

PowerCutDisk::Image PowerCutDisk::image() const {
    Image image;
    for (const auto& [name, content] : files_) image[name] = content->platter;
    return image;
}

void PowerCutDisk::restore(const Image& image) {
    files_.clear();
    for (const auto& [name, bytes] : image) {
        auto content = std::make_shared<Content>();
        content->now = content->platter = bytes;
        files_[name] = std::move(content);
    }
    off_ = false;
    left_ = -1;
}

}  // namespace vtdn::store::test
