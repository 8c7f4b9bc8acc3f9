#include "client/site/sites.h"

#include <random>
#include <system_error>

#include "client/cli/failure.h"
#include "client/import/definition.h"
#include "client/import/occurrences.h"
#include "client/import/values.h"
#include "store/connection.h"
#include "store/error.h"
#include "store/site.h"

namespace vtdn::client {

namespace {

namespace fs = std::filesystem;

fs::path sitesFolder(const std::string& home) {
    return store::pathOf(home) / "sites";
}

/// A site's folder while the site is being made, under a name that no other program uses. Deleted unless
/// settled.
class Draft {
  public:
    explicit Draft(const std::string& home)
        : parent_(sitesFolder(home)), folder_(parent_ / (".new-" + std::to_string(std::random_device()()))) {
        std::error_code error;
        fs::create_directories(folder_, error);
        if (error)
            throw Failure(
                ExitCode::environment,
                "The folder " + store::utf8Of(folder_) + " cannot be made (" + error.message() + ").",
                "Check that you may write there, or set VANTOR_HOME to a folder that you may write to.");
    }
    ~Draft() {
        std::error_code ignored;
        if (!folder_.empty()) fs::remove_all(folder_, ignored);
    }
    Draft(const Draft&) = delete;
    Draft& operator=(const Draft&) = delete;

    [[nodiscard]] const fs::path& folder() const { return folder_; }

    /// Gives the folder its lasting name: that of the DAHS, with a number behind it when files of a former
    /// one are there.
    fs::path settle(std::int32_t dahsId) {
        std::error_code error;
        for (int attempt = 1; attempt < 1000; ++attempt) {
            fs::path place =
                parent_ / (std::to_string(dahsId) + (attempt > 1 ? "-" + std::to_string(attempt) : ""));
            if (fs::exists(place, error)) continue;
            fs::rename(folder_, place, error);
            if (!error) {
                folder_.clear();
                return place;
            }
        }
        throw Failure(ExitCode::environment,
                      "No folder for the site could be made in " + store::utf8Of(parent_) + ".",
                      "Delete the folders of sites there that `vtdn site list` does not show.");
    }

  private:
    fs::path parent_;
    fs::path folder_;
};

/// Lists a finished draft in the directory.
store::Dahs publish(const std::string& home, store::Directory& directory, Draft& draft, const NewSite& site) {
    store::Dahs dahs;
    dahs.id = site.dahsId.value_or(0);
    dahs.site_id = site.siteId;
    dahs.description = site.description;
    dahs.complete_name = site.completeName;
    const fs::path root = store::pathOf(home);
    dahs.vantor_dir = home;
    dahs.system_dir = store::utf8Of(root / "system");
    dahs.template_folder = store::utf8Of(root / "templates");
    if (dahs.id == 0) {
        const auto all = directory.list();
        dahs.id = all.empty() ? 1 : all.back().id + 1;
    }
    const fs::path folder = draft.settle(dahs.id);
    dahs.connections = store::SiteConnections::inFolder(store::utf8Of(folder));
    try {
        directory.add(dahs);
    } catch (...) {
        std::error_code ignored;
        fs::remove_all(folder, ignored);
        throw;
    }
    return dahs;
}

void refuseTaken(store::Directory& directory, std::optional<std::int32_t> id) {
    if (!id) return;
    if (const auto taken = directory.find(*id))
        throw Failure(ExitCode::refused,
                      "There is a DAHS " + std::to_string(*id) + " already: " + taken->site_id + ", " +
                          taken->description + ".",
                      "Give another number with --id, or remove that one first: `vtdn site remove " +
                          std::to_string(*id) + "`.");
}

/// Hands values to a load until a problem has been found; from then on the files are only checked.
class LoadSink final : public ValueSink {
  public:
    LoadSink(store::Load* load, const SiteDefinition& site, const ImportProblems& problems)
        : load_(load), site_(site), problems_(problems) {}
    void append(std::size_t parameter, store::Time time, store::Item item) override {
        if (load_ && problems_.none()) load_->append(site_.parameters[parameter].pid, time, item);
    }

  private:
    store::Load* load_;
    const SiteDefinition& site_;
    const ImportProblems& problems_;
};

class Importer {
  public:
    Importer(const std::string& home, const ImportRequest& request)
        : home_(home), request_(request), problems_(request.problemLimit) {}

    ImportResult run() {
        try {
            files_ = SiteFolder::look(request_.folder, problems_);
            site_ = readDefinition(files_, problems_);
            result_.parameters = site_.parameters.size();
            result_.monitorCodes = site_.monitorCodes.size();
            if (request_.checkOnly || !problems_.none())
                readInto(nullptr);
            else
                load();
        } catch (const TooManyProblems&) {
            result_.moreProblems = true;
        }
        result_.problems = problems_.list();
        return std::move(result_);
    }

  private:
    void readInto(store::Load* load) {
        LoadSink sink(load, site_, problems_);
        std::uintmax_t total = 0;
        std::error_code ignored;
        for (const SiteFile& file : files_.values) total += fs::file_size(file.path, ignored);
        std::uintmax_t done = 0;
        result_.values = readValues(files_, site_, sink, problems_, [&](std::size_t bytes) {
            done += bytes;
            if (request_.progress) request_.progress(done, total);
        });
        readOccurrencesInto(load);
    }

    void readOccurrencesInto(store::Load* load) {
        if (!files_.occurrences) return;
        const store::EditOrigin origin{request_.editTime, "import", request_.editUser};
        for (const OccurrenceRun& run : readOccurrences(*files_.occurrences, site_, problems_)) {
            result_.occurrences += static_cast<std::size_t>(run.span.count);
            if (!load || !problems_.none()) continue;
            for (std::int32_t i = 0; i < run.span.count; ++i)
                load->writeOccurrence(run.tag, run.span.interval.step(run.span.start, i), run.occurrence,
                                      origin);
        }
    }

    /// Whether all was loaded, so that it counts.
    bool fill(store::Site& target) {
        store::Load load(target);
        load.replaceUnits(site_.units);
        load.replaceMonitorCodes(site_.monitorCodes);
        load.replaceParameterCodes(site_.parameterCodes);
        load.replaceParameters(site_.parameters);
        load.replaceSpecialValues(site_.specialValues);
        load.replaceRelationships(site_.relationships);
        readInto(&load);
        if (!problems_.none()) return false;
        load.commit();
        return true;
    }

    void load() {
        auto directory = store::Directory::openOrCreate(home_);
        const auto id = request_.dahsId ? request_.dahsId : site_.dahsId;
        if (const auto existing = id ? directory.find(*id) : std::nullopt) {
            loadExisting(*existing);
            return;
        }
        NewSite site{id, site_.siteId, site_.description, site_.completeName};
        if (site.siteId.empty())
            site.siteId = store::utf8Of(fs::absolute(request_.folder).lexically_normal().filename());
        Draft draft(home_);
        {
            store::Site target = store::Site::create(
                store::SiteConnections::inFolder(store::utf8Of(draft.folder())), site.siteId);
            if (!fill(target)) return;
        }
        result_.dahs = publish(home_, directory, draft, site);
    }

    void loadExisting(const store::Dahs& dahs) {
        store::Site target(dahs.connections, dahs.site_id);
        const std::size_t has = target.parameters().entries().size();
        if (has > 0 && !request_.update)
            throw Failure(ExitCode::refused,
                          "DAHS " + std::to_string(dahs.id) + " (" + dahs.site_id +
                              ") is loaded already; it has " + std::to_string(has) + " parameters.",
                          "Load it as another one with --dahs, replace its parameters and add the values "
                          "with --update, "
                          "or remove it first with `vtdn site remove " +
                              std::to_string(dahs.id) + "`.");
        result_.updated = fill(target);
        result_.dahs = dahs;
    }

    const std::string& home_;
    const ImportRequest& request_;
    ImportProblems problems_;
    SiteFolder files_;
    SiteDefinition site_;
    ImportResult result_;
};

void deleteDatabases(const store::SiteConnections& c, std::vector<std::string>& left) {
    fs::path folder;
    for (const std::string& connection : {c.alarm, c.config, c.data, c.data_short_term, c.realtime}) {
        const std::string file = store::Connection::parse(connection).database;
        for (const char* companion : {"", "-wal", "-shm", "-journal"}) {
            std::error_code error;
            const fs::path path = store::pathOf(file + companion);
            fs::remove(path, error);
            if (error) left.push_back(store::utf8Of(path) + " (" + error.message() + ")");
            folder = path.parent_path();
        }
    }
    // Goes when nothing of the user's own is in it.
    std::error_code ignored;
    fs::remove(folder, ignored);
}

}  // namespace

store::Dahs createSite(const std::string& home, const NewSite& site) {
    auto directory = store::Directory::openOrCreate(home);
    refuseTaken(directory, site.dahsId);
    Draft draft(home);
    // Closed again before the folder is moved.
    store::Site::create(store::SiteConnections::inFolder(store::utf8Of(draft.folder())), site.siteId);
    return publish(home, directory, draft, site);
}

ImportResult importSite(const std::string& home, const ImportRequest& request) {
    return Importer(home, request).run();
}

std::vector<std::string> removeSite(const std::string& home, std::int32_t dahsId, bool deleteFiles) {
    auto directory = store::Directory::open(home);
    const store::Dahs dahs = directory.get(dahsId);
    // Out of the directory first: a listed site always has its files.
    directory.remove(dahsId);
    std::vector<std::string> left;
    if (deleteFiles) deleteDatabases(dahs.connections, left);
    return left;
}

}  // namespace vtdn::client
