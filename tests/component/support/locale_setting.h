// Settings of the user's locale for a while.
#pragma once

#include <gtest/gtest.h>

#include <iterator>

#include "com/platform.h"

namespace vtdn::test {

/// One setting of the user's locale, put back when this goes. Not every platform notices a change after it
/// has once read a setting for its own use.
class LocaleSetting {
  public:
    LocaleSetting(LCTYPE type, const wchar_t* value) : type_(type) {
        GetLocaleInfoW(LOCALE_USER_DEFAULT, type, old_, static_cast<int>(std::size(old_)));
        EXPECT_TRUE(SetLocaleInfoW(LOCALE_USER_DEFAULT, type, value));
    }
    ~LocaleSetting() { SetLocaleInfoW(LOCALE_USER_DEFAULT, type_, old_); }
    LocaleSetting(const LocaleSetting&) = delete;
    LocaleSetting& operator=(const LocaleSetting&) = delete;

  private:
    LCTYPE type_;
    wchar_t old_[16]{};
};

}  // namespace vtdn::test
