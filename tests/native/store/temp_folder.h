// A folder of its own for each test, removed at the end.
#pragma once

#include <filesystem>
#include <random>
#include <string>

namespace vtdn::store::test {

class TempFolder {
  public:
    TempFolder() : path_(root() / ("vtdn-store-" + std::to_string(std::random_device()()))) {
        std::filesystem::create_directories(path_);
    }
    ~TempFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;

    [[nodiscard]] std::string path() const { return path_.string(); }
    [[nodiscard]] std::string file(const std::string& name) const { return (path_ / name).string(); }

  private:
    // In memory where there is such a folder: these tests wait for the disk often, and the disk is not what
    // they test.
    static std::filesystem::path root() {
        const std::filesystem::path memory = "/dev/shm";
        return std::filesystem::is_directory(memory) ? memory : std::filesystem::temp_directory_path();
    }

    std::filesystem::path path_;
};

}  // namespace vtdn::store::test
