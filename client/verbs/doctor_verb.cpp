#include <algorithm>
#include <array>
#include <filesystem>

#include "VTDI.h"
#include "client/component/error_text.h"
#include "client/output/json.h"
#include "client/platform/module_file.h"
#include "client/verbs/context.h"
#include "com/error.h"
#include "com/strings.h"
#include "store/directory.h"
#include "store/error.h"
#include "store/home.h"
#include "store/site.h"

namespace vtdn::client {

namespace {

namespace fs = std::filesystem;

enum class Verdict { good, note, wrong };

struct Finding {
    Verdict verdict;
    std::string about;
    std::string what;
    std::string mend;  ///< empty where nothing is wrong
};

class Doctor {
  public:
    std::vector<Finding> examine() {
        good("vtdn", "version " VTDN_VERSION ", " + bits(ownBits) + ", " + com::toUtf8(ownFile()));
        const bool component = examineComponent();
        const bool engine = examineEngine();
        examineHome(component && engine);
        return std::move(findings_);
    }

  private:
    void good(std::string about, std::string what) {
        findings_.push_back({Verdict::good, std::move(about), std::move(what), {}});
    }
    void note(std::string about, std::string what, std::string mend) {
        findings_.push_back({Verdict::note, std::move(about), std::move(what), std::move(mend)});
    }
    void wrong(std::string about, std::string what, std::string mend) {
        findings_.push_back({Verdict::wrong, std::move(about), std::move(what), std::move(mend)});
    }

    static std::string bits(int number) { return std::to_string(number) + "-bit"; }

    static std::wstring ownFile() {
        std::wstring file(32'768, L'\0');
        file.resize(GetModuleFileNameW(nullptr, file.data(), static_cast<DWORD>(file.size())));
        return file;
    }

    /// How to register a library, with its path when it lies beside this program.
    static std::string registerLine(const std::string& library) {
        const fs::path beside = fs::path(ownFile()).parent_path() / store::pathOf(library);
        std::error_code ignored;
        return "regsvr32 \"" + (fs::exists(beside, ignored) ? store::utf8Of(beside) : library) + "\"";
    }

    struct ClassToLookAt {
        const char* name;
        const CLSID& id;
        const char* library;  // that serves it in this product
    };

    bool examineComponent() {
        const auto listed = classOfProgId(L"VTWrapDN.DIWrapper");
        if (listed && *listed != CLSID_DIWrapper)
            wrong("VTWrapDN.DIWrapper", "the name stands for another class than this program knows",
                  "Register the component that belongs to this program: " + registerLine("VTWrapDN.dll"));
        return examineClass({"VTWrapDN.DIWrapper", CLSID_DIWrapper, "VTWrapDN.dll"});
    }

    bool examineEngine() {
        const std::array<ClassToLookAt, 4> classes{
            {{"engine", CLSID_DIEngineClass, "VTEngine.dll"},
             {"engine data array", CLSID_DIDataArrayClass, "VTEngine.dll"},
             {"engine data item", CLSID_DIDataArrayItemClass, "VTEngine.dll"},
             {"engine data point", CLSID_DIDataPointClass, "VTEngine.dll"}}};
        bool all = true;
        for (const ClassToLookAt& one : classes) all = examineClass(one) && all;
        return all;
    }

    bool examineClass(const ClassToLookAt& one) {
        const std::string mend = "Register it as administrator: " + registerLine(one.library);
        const auto server = registeredServer(one.id, ownBits);
        if (!server) {
            const int otherBits = ownBits == 32 ? 64 : 32;
            if (registeredServer(one.id, otherBits))
                wrong(one.name, "registered for " + bits(otherBits) + " programs only",
                      "Register the " + bits(ownBits) + " library too: " + registerLine(one.library));
            else
                wrong(one.name, "not registered", mend);
            return false;
        }
        const ModuleFile file = inspectModule(*server);
        const std::string where = com::toUtf8(*server);
        if (!file.exists) {
            wrong(one.name, "registered as " + where + ", where there is no such file", mend);
            return false;
        }
        if (file.bits != ownBits) {
            wrong(one.name,
                  where + (file.bits == 0 ? " is no Windows library"
                                          : " is a " + bits(file.bits) + " library among the " +
                                                bits(ownBits) + " ones"),
                  "Register the " + bits(ownBits) + " library in its place: " + registerLine(one.library));
            return false;
        }
        com::Ptr<IUnknown> object;
        const HRESULT result =
            CoCreateInstance(one.id, nullptr, CLSCTX_INPROC_SERVER, IID_IUnknown, object.receiveVoid());
        if (FAILED(result)) {
            wrong(one.name, where + " is registered, and gives: " + describe(com::lastError(result)), mend);
            return false;
        }
        good(one.name, where + ", " +
                           (file.version.empty() ? "without a version" : "version " + file.version) + ", " +
                           bits(file.bits) + (file.product.empty() ? "" : ", " + file.product));
        return true;
    }

    void examineHome(bool canBind) {
        const std::string home = store::homeFolder();
        try {
            auto directory = store::Directory::open(home);
            const auto all = directory.list();
            good("home", home + ", " + std::to_string(all.size()) + (all.size() == 1 ? " site" : " sites"));
            if (all.empty()) note("sites", "there is none yet", "Load one: vtdn site import FOLDER");
            for (const store::Dahs& dahs : all) examineSite(dahs, canBind);
        } catch (const store::Error& error) {
            if (error.kind() == store::ErrorKind::databaseMissing)
                note("home", home + " has no sites yet",
                     "Load one: vtdn site import FOLDER. Sites elsewhere? Set VANTOR_HOME to their folder.");
            else
                wrong("home", error.what(),
                      "Set VANTOR_HOME to a folder that you may read and write, or mend that one.");
        }
        examineLeftovers(home);
    }

    void examineLeftovers(const std::string& home) {
        std::error_code error;
        for (fs::directory_iterator it(store::pathOf(home) / "sites", error), end; !error && it != end;
             it.increment(error))
            if (store::utf8Of(it->path().filename()).starts_with(".new-"))
                note("left over",
                     store::utf8Of(it->path()) + " is of an import that runs now or was interrupted",
                     "Delete the folder when no import is running.");
    }

    void examineSite(const store::Dahs& dahs, bool canBind) {
        const std::string about = "DAHS " + std::to_string(dahs.id);
        std::string what = dahs.site_id;
        try {
            store::Site site(dahs.connections, dahs.site_id);
            const std::size_t parameters = site.parameters().entries().size();
            what += ", 5 databases, " + std::to_string(parameters) + " parameters, " +
                    std::to_string(site.monitorCodes().codes().size()) + " monitor codes";
            if (parameters == 0)
                note(about, dahs.site_id + " is empty",
                     "Fill it: vtdn site import --dahs " + std::to_string(dahs.id) + " FOLDER");
            for (const auto kind :
                 {store::DatabaseKind::config, store::DatabaseKind::data, store::DatabaseKind::dataShortTerm})
                if (site.database(kind).isReadOnly())
                    wrong(about, site.database(kind).file() + " cannot be written",
                          "Give your account the right to write to the file and its folder.");
        } catch (const store::Error& error) {
            wrong(about, dahs.site_id + ": " + error.what(), mendFor(error.kind(), dahs.id));
            return;
        }
        if (canBind && !bindsTo(dahs)) return;
        good(about, what + (canBind ? ", the component binds to it" : ""));
    }

    static std::string mendFor(store::ErrorKind kind, std::int32_t id) {
        switch (kind) {
            case store::ErrorKind::databaseMissing:
                return "Put the file back from a backup, or take the site out: vtdn site remove " +
                       std::to_string(id);
            case store::ErrorKind::databaseLocked:
                return "Close the program that holds it.";
            case store::ErrorKind::databaseDamaged:
            case store::ErrorKind::notASiteDatabase:
                return "Put the file back from a backup, or remove the site and import it again.";
            case store::ErrorKind::databaseNewer:
                return "Install the version of the product that made it.";
            default:
                return "Check the disk and the rights on the site's folder.";
        }
    }

    bool bindsTo(const store::Dahs& dahs) {
        const std::string about = "DAHS " + std::to_string(dahs.id);
        const std::string mend = "Compare the messages with docs/engine.md.";
        try {
            Component component;
            if (component.setUp(dahs.id)) return true;
            std::string said = "the engine does not bind to it";
            for (const std::string& problem : component.takeProblems()) said += "; " + problem;
            wrong(about, said, mend);
        } catch (const com::Error& error) {
            wrong(about, "binding to it gives: " + describe(error), adviceFor(error));
        } catch (const Failure& failure) {
            wrong(about, failure.what(), failure.next());
        }
        return false;
    }

    std::vector<Finding> findings_;
};

std::string_view nameOf(Verdict verdict) {
    switch (verdict) {
        case Verdict::good:
            return "ok";
        case Verdict::note:
            return "note";
        case Verdict::wrong:
            break;
    }
    return "WRONG";
}

}  // namespace

ExitCode runDoctor(Context& context) {
    const std::vector<Finding> findings = Doctor().examine();
    const auto wrong = std::count_if(findings.begin(), findings.end(),
                                     [](const Finding& f) { return f.verdict == Verdict::wrong; });
    const ExitCode code = wrong == 0 ? ExitCode::done : ExitCode::environment;
    if (context.arguments.has("--json")) {
        const auto rows = context.rows({{"verdict", ""}, {"about", ""}, {"what", ""}, {"mend", ""}});
        for (const Finding& f : findings)
            rows->row({f.verdict == Verdict::wrong ? "wrong" : nameOf(f.verdict), f.about, f.what,
                       f.mend.empty() ? Cell() : Cell(f.mend)});
        rows->finish();
        return code;
    }
    for (const Finding& f : findings) {
        std::string line(nameOf(f.verdict));
        line.resize(7, ' ');
        line += f.about;
        line.resize(std::max<std::size_t>(line.size() + 2, 27), ' ');
        context.console.out(line + f.what + "\n");
        if (!f.mend.empty()) context.console.out(std::string(7, ' ') + "-> " + f.mend + "\n");
    }
    context.console.out(wrong == 0 ? "\nAll is well.\n"
                                   : "\n" + std::to_string(wrong) + " finding" + (wrong == 1 ? "" : "s") +
                                         " to mend.\n");
    return code;
}

}  // namespace vtdn::client
