// The parameters of a site, by PID.
#pragma once

#include <VTDI.h>

#include <memory>

#include "com/object.h"
#include "data_interface/session.h"

namespace vtdn::embedded {

class Params final : public com::Object<Params, DIParams> {
  public:
    explicit Params(std::shared_ptr<Session> session) noexcept : session_(std::move(session)) {}

    /// False for every PID while the engine is not set up.
    HRESULT STDMETHODCALLTYPE Exists(LONG pid, VARIANT_BOOL* result) noexcept override;
    /// Error 9 for an unknown PID, 91 while the engine is not set up. The flag is not looked at.
    HRESULT STDMETHODCALLTYPE Item(LONG pid, LONG flag, DIParam** result) noexcept override;

    /// Parameters, codes and names are read anew at their next use. Without a site there is nothing to do.
    HRESULT STDMETHODCALLTYPE FlushCache() noexcept override;

  private:
    std::shared_ptr<Session> session_;
};

}  // namespace vtdn::embedded
