// A folder of site files and a home that they are imported into.
#pragma once

#include <gtest/gtest.h>

#include "client/site/sites.h"
#include "site_folder.h"
#include "store/site.h"

namespace vtdn::client::test {

class Import : public ::testing::Test {
  protected:
    ImportResult import(bool update = false) {
        ImportRequest request;
        request.folder = folder_.site();
        request.update = update;
        return importSite(home(), request);
    }
    [[nodiscard]] std::string home() const { return folder_.home().string(); }
    store::Site open(std::int32_t id = 7) { return {store::Directory::open(home()).get(id).connections, ""}; }
    static store::Time at(int month, int day, int hour, int minute = 0) {
        return store::timeOf({2024, month, day, hour, minute, 0});
    }
    /// Files and folders of sites, drafts included.
    [[nodiscard]] std::size_t siteFolders() const {
        std::error_code error;
        std::size_t count = 0;
        for ([[maybe_unused]] const auto& entry :
             std::filesystem::directory_iterator(folder_.home() / "sites", error))
            ++count;
        return count;
    }

    TestFolder folder_;
};

}  // namespace vtdn::client::test
