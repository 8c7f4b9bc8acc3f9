// Texts as numbers by the user's own way of writing them, for long runs of texts.
#pragma once

#include <string_view>

#include "com/platform.h"

namespace vtdn::com {

/// Reads texts as singles. The signs of the user's locale are asked for once.
class SingleReader {
  public:
    SingleReader() noexcept;

    /// False for a text that is not numeric. Throws error 6 for a number beyond the range of a single.
    bool read(std::wstring_view text, float& out) const;

  private:
    /// Reads what is written with digits, a sign and a decimal separator only, as the platform would and in a
    /// tenth of its time. False for any other text, number or not.
    bool readPlain(std::wstring_view text, float& out) const noexcept;

    wchar_t decimalSeparator_ = 0;  ///< 0 when it is more than one character
    bool plainMinus_ = false;       ///< "-" is the negative sign
};

}  // namespace vtdn::com
