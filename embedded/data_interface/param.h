// A parameter: what it is, its values, and its numbered functions.
#pragma once

#include <VTDI.h>

#include <memory>
#include <string>

#include "com/object.h"
#include "data_interface/session.h"
#include "store/value.h"

namespace vtdn::embedded {

/// Names a parameter by its PID and asks the site anew at every call. Refusals are messages of the engine and
/// errors of the call alike.
class Param final : public com::Object<Param, DIParam> {
  public:
    Param(std::shared_ptr<Session> session, store::Pid pid) noexcept
        : session_(std::move(session)), pid_(pid) {}

    /// Also without a site.
    HRESULT STDMETHODCALLTYPE get_PID(LONG* result) noexcept override;
    HRESULT STDMETHODCALLTYPE get_Fmt(BSTR* result) noexcept override;
    HRESULT STDMETHODCALLTYPE get_IntervalType(BSTR* result) noexcept override;
    HRESULT STDMETHODCALLTYPE get_MeasUnits(BSTR* result) noexcept override;
    HRESULT STDMETHODCALLTYPE get_Name(BSTR* result) noexcept override;
    HRESULT STDMETHODCALLTYPE get_IOType(LONG* result) noexcept override;
    HRESULT STDMETHODCALLTYPE get_UsedPIDs(BSTR* result) noexcept override;
    HRESULT STDMETHODCALLTYPE GetDataItem(DATE timeStamp, LONG flags,
                                          DIDataArrayItem** result) noexcept override;
    /// Only a data array of this engine has room that can be filled: error 13 for another one's, 91 for none.
    HRESULT STDMETHODCALLTYPE ReadDataArray(DIDataArray* data) noexcept override;
    /// See special_function.h.
    HRESULT STDMETHODCALLTYPE SpecialFunction(LONG id, SAFEARRAY** moreArgs,
                                              VARIANT* result) noexcept override;
    /// Null when the parameter has none of that id.
    HRESULT STDMETHODCALLTYPE SpecialValue(LONG id, VARIANT* result) noexcept override;
    /// No object when the parameter has no other averaging levels.
    HRESULT STDMETHODCALLTYPE get_Relationship(DIRelationship** result) noexcept override;

  private:
    template <class Property>
    HRESULT text(BSTR* result, Property&& property) const noexcept;

    std::shared_ptr<Session> session_;
    store::Pid pid_;
};

}  // namespace vtdn::embedded
