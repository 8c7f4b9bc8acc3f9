// The site id that a client passes beside what it asks or writes.
#pragma once

#include <string_view>

#include "com/platform.h"
#include "store/site.h"

namespace vtdn::embedded {

/// The id must be that of the open site, to the letter; an empty one means it. Throws error 5 for another
/// site with a sentence that begins with `what` ("The alarm is") and ends with `instead`.
void needThisSite(const store::Site& site, BSTR siteId, std::wstring_view what, std::wstring_view instead);

}  // namespace vtdn::embedded
