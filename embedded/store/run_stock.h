// Runs that were used and are used again, since their memory is warm.
#pragma once

#include <memory>
#include <mutex>
#include <vector>

#include "store/run.h"

namespace vtdn::store {

/// Lends runs. What is lent holds on to the stock only weakly, so that it can be released after the stock,
/// and on any thread.
class RunStock : public std::enable_shared_from_this<RunStock> {
  public:
    std::shared_ptr<Run> lend();

  private:
    static constexpr std::size_t most = 2;
    static constexpr std::size_t largest = 16 << 20;  // bytes of a run that is worth keeping

    std::unique_ptr<Run> take();
    static void giveBack(const std::weak_ptr<RunStock>& stock, std::unique_ptr<Run> run);
    static std::vector<std::unique_ptr<Run>> makeRoom();

    std::mutex mutex_;
    std::vector<std::unique_ptr<Run>> runs_ = makeRoom();
};

}  // namespace vtdn::store
