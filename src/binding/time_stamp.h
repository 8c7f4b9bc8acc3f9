// The time stamp of a problem.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace vtdn::binding {

/// The local date and time as "yyyy/MM/dd HH:nn:ss" with the user's date and time separators. Formatted once
/// in each second: problems come in crowds.
class TimeStamp {
  public:
    /// Valid until the next call.
    [[nodiscard]] std::wstring_view now();

  private:
    std::uint64_t tick_ = 0;    ///< the system's tick in which text_ was last found right
    std::uint64_t second_ = 0;  ///< file time at which the second began that text_ stands for
    std::wstring text_;
};

}  // namespace vtdn::binding
