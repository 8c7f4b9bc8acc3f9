#include "store/run_stock.h"

namespace vtdn::store {

std::shared_ptr<Run> RunStock::lend() {
    std::unique_ptr<Run> run = take();
    if (!run) run = std::make_unique<Run>();
    return {run.release(),
            [stock = weak_from_this()](Run* used) { giveBack(stock, std::unique_ptr<Run>(used)); }};
}

std::unique_ptr<Run> RunStock::take() {
    const std::lock_guard lock(mutex_);
    if (runs_.empty()) return nullptr;
    auto run = std::move(runs_.back());
    runs_.pop_back();
    return run;
}

void RunStock::giveBack(const std::weak_ptr<RunStock>& stock, std::unique_ptr<Run> run) {
    const auto self = stock.lock();
    if (!self || run->memory() > largest) return;
    run->clear();
    const std::lock_guard lock(self->mutex_);
    if (self->runs_.size() < self->runs_.capacity()) self->runs_.push_back(std::move(run));
}

// Giving back must not fail: the room is there from the beginning.
std::vector<std::unique_ptr<Run>> RunStock::makeRoom() {
    std::vector<std::unique_ptr<Run>> room;
    room.reserve(most);
    return room;
}

}  // namespace vtdn::store
