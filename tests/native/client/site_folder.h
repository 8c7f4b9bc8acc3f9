// Site files and a home folder for a test, gone at its end.
#pragma once

#include <filesystem>
#include <fstream>
#include <random>
#include <string>

namespace vtdn::client::test {

class TestFolder {
  public:
    TestFolder()
        : path_(std::filesystem::temp_directory_path() /
                ("vtdn-client-" + std::to_string(std::random_device()()))) {
        std::filesystem::create_directories(path_);
    }
    ~TestFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    TestFolder(const TestFolder&) = delete;
    TestFolder& operator=(const TestFolder&) = delete;

    [[nodiscard]] std::filesystem::path home() const { return path_ / "home"; }
    [[nodiscard]] std::filesystem::path site() const { return path_ / "site"; }

    void write(const std::string& name, const std::string& content) const {
        const auto file = site() / name;
        std::filesystem::create_directories(file.parent_path());
        std::ofstream(file, std::ios::binary) << content;
    }

    /// A small plant, all of whose rows are in order.
    void writePlant() const {
        write("site.csv", "key,value\ndahs_id,7\nsite_id,MILL\ndescription,\"Boiler 1, paper mill\"\n");
        write("monitor_codes.csv", "code,short_name,long_name,rank\n1,OK,Measured,2\n9,OFF,Not operating,\n");
        write("parameters.csv",
              "pid,name,description,units,format,interval,io_type,value,aggregation,formula,uses,roll_up\n"
              "1-030-3-00-00,Heat input,,mmBtu,0.0,1h,38,,,,,sum\n"
              "105030000,NOx rate,,lb/mmBtu,0.000,1h,38,,,,,average\n"
              "1-010-1-00-00,Load,,MW,0,1m,38,,,,,\n"
              "1-905-0-00-00,NOx limit,,lb/mmBtu,0.00,,4,0.20,,,,\n"
              "1-051-3-02-00,NOx mass,,lb,0.0,1h,10,,,[1-050-3-00-00] * "
              "[103030000],1-050-3-00-00;1-030-3-00-00,\n");
        write("values/2024-01.csv",
              "time,1-030-3-00-00,1-030-3-00-00 mc,1-050-3-00-00\r\n"
              "2024-01-01 00:00,212.4,1,0.174\r\n"
              "2024-01-01 01:00,,9,\r\n"
              "2024-01-01 02:00,48.2,,N/A\r\n");
        write(
            "values/2024-02.csv",
            "time,pid,value,mc\n2024-02-01 00:00:00,101010000,17,1\n2024-02-01 00:01:00,1-010-1-00-00,18,\n");
    }

  private:
    std::filesystem::path path_;
};

}  // namespace vtdn::client::test
