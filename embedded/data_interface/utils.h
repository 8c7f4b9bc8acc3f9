// Facts about a site that belong to no parameter.
#pragma once

#include <VTDI.h>

#include <memory>
#include <string>

#include "com/object.h"
#include "data_interface/session.h"

namespace vtdn::embedded {

class Utils final : public com::Object<Utils, DIUtils> {
  public:
    explicit Utils(std::shared_ptr<Session> session) noexcept : session_(std::move(session)) {}

    /// False for every code while the engine is not set up.
    HRESULT STDMETHODCALLTYPE IsKnownMC(LONG mc, VARIANT_BOOL* result) noexcept override;

    // Error 91 while the engine is not set up.

    HRESULT STDMETHODCALLTYPE get_MaxMC(LONG* result) noexcept override;
    /// 0 when the site has no parameter codes.
    HRESULT STDMETHODCALLTYPE get_MaxPC(LONG* result) noexcept override;
    // "" for a number that has no name.
    HRESULT STDMETHODCALLTYPE MCName(LONG code, VARIANT_BOOL longName, BSTR* result) noexcept override;
    HRESULT STDMETHODCALLTYPE PCName(LONG code, VARIANT_BOOL longName, BSTR* result) noexcept override;
    HRESULT STDMETHODCALLTYPE UnitName(LONG unit, BSTR* result) noexcept override;

  private:
    template <class Codes>
    HRESULT highest(LONG* result, Codes&& codes) const noexcept;
    template <class Name>
    HRESULT name(BSTR* result, Name&& name) const noexcept;

    std::shared_ptr<Session> session_;
};

}  // namespace vtdn::embedded
