// What is wrong with the files of a site, row by row.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "store/error.h"

namespace vtdn::client {

/// One broken rule: "values/2007-03.csv:412: column "time": ...".
struct ImportProblem {
    std::string file;    ///< as seen from the site's folder
    std::size_t line;    ///< from 1; 0 when the file as a whole is meant
    std::string column;  ///< name of the column, or empty
    std::string reason;

    [[nodiscard]] std::string text() const;
};

/// What the store says, without the full stop.
[[nodiscard]] std::string reasonOf(const store::Error& error);

/// Thrown when the limit of a list of problems is reached: there is no use in reading on.
struct TooManyProblems {};

class ImportProblems {
  public:
    explicit ImportProblems(std::size_t limit) : limit_(limit) {}

    void add(ImportProblem problem) {
        list_.push_back(std::move(problem));
        if (list_.size() >= limit_) throw TooManyProblems();
    }
    [[nodiscard]] bool none() const { return list_.empty(); }
    /// Whether reading stopped because of the limit, so that there may be more.
    [[nodiscard]] bool full() const { return list_.size() >= limit_; }
    [[nodiscard]] const std::vector<ImportProblem>& list() const { return list_; }

  private:
    std::size_t limit_;
    std::vector<ImportProblem> list_;
};

}  // namespace vtdn::client
