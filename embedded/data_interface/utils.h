// Facts about a site that belong to no parameter.
#pragma once

#include <VTDI.h>

#include <memory>

#include "com/object.h"
#include "data_interface/session.h"

namespace vtdn::embedded {

class Utils final : public com::Object<Utils, DIUtils> {
  public:
    explicit Utils(std::shared_ptr<Session> session) noexcept : session_(std::move(session)) {}

    /// False for every code while the engine is not set up.
    HRESULT STDMETHODCALLTYPE IsKnownMC(LONG mc, VARIANT_BOOL* result) noexcept override;

  private:
    std::shared_ptr<Session> session_;
};

}  // namespace vtdn::embedded
