#include "data_interface/site_id.h"

#include <string>

#include "com/error.h"
#include "com/strings.h"
#include "data_interface/failure.h"

namespace vtdn::embedded {

void needThisSite(const store::Site& site, BSTR siteId, std::wstring_view what, std::wstring_view instead) {
    const std::wstring given(com::view(siteId));
    const std::wstring open = com::fromUtf8(site.siteId());
    if (given.empty() || given == open) return;
    com::throwError(invalidCall, std::wstring(what) + L" of the site " + given +
                                     L", and the engine is set up on the site " + open + L". " +
                                     std::wstring(instead));
}

}  // namespace vtdn::embedded
