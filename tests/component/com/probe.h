// A class with one member for each way in which an argument can travel.
#pragma once

#include <toolkit.h>

#include "com/connection_point.h"
#include "com/object.h"
#include "com/own_object.h"
#include "com/variant.h"

namespace vtdn::test {

class Probe final : public com::Object<Probe, IProbe, com::IOwnObject, com::EventSource<DIID_IProbeEvents>> {
  public:
    static constexpr const CLSID& classId = CLSID_Probe;
    static constexpr const IID& eventsId = DIID_IProbeEvents;

    explicit Probe(LONG number = 0);
    ~Probe() override;

    /// Probes that live.
    static LONG count() noexcept;

    /// What HeldObject hands out.
    com::Ptr<IDispatch> held;

    HRESULT STDMETHODCALLTYPE get_Number(LONG* result) noexcept override;
    HRESULT STDMETHODCALLTYPE put_Number(LONG value) noexcept override;
    HRESULT STDMETHODCALLTYPE get_Any(VARIANT* result) noexcept override;
    HRESULT STDMETHODCALLTYPE put_Any(VARIANT value) noexcept override;
    HRESULT STDMETHODCALLTYPE putref_Any(IDispatch* value) noexcept override;
    HRESULT STDMETHODCALLTYPE get_Cell(LONG row, BSTR column, BSTR* result) noexcept override;
    HRESULT STDMETHODCALLTYPE put_Cell(LONG row, BSTR column, BSTR value) noexcept override;

    HRESULT STDMETHODCALLTYPE Three(LONG a, double b, BSTR c, BSTR* result) noexcept override;
    HRESULT STDMETHODCALLTYPE EveryValue(unsigned char byteValue, short shortValue, LONG longValue,
                                         float singleValue, double doubleValue, DATE when, BSTR text,
                                         VARIANT_BOOL flag, VARIANT anything, ProbeColour colour, hyper big,
                                         BSTR* result) noexcept override;
    HRESULT STDMETHODCALLTYPE Floats(float a, double b, float c, double d, float e, LONG f,
                                     double* result) noexcept override;
    HRESULT STDMETHODCALLTYPE Optional(LONG a, LONG b, BSTR c, VARIANT d, BSTR* result) noexcept override;
    HRESULT STDMETHODCALLTYPE Kind(VARIANT value, LONG* result) noexcept override;
    HRESULT STDMETHODCALLTYPE Flag(VARIANT_BOOL value, VARIANT_BOOL* result) noexcept override;

    HRESULT STDMETHODCALLTYPE References(LONG* longValue, float* singleValue, BSTR* text, VARIANT_BOOL* flag,
                                         DATE* when, VARIANT* anything) noexcept override;
    HRESULT STDMETHODCALLTYPE Outs(LONG* longValue, BSTR* text) noexcept override;
    HRESULT STDMETHODCALLTYPE FailLate(LONG* longValue, BSTR* text, SAFEARRAY** values) noexcept override;

    HRESULT STDMETHODCALLTYPE Singles(SAFEARRAY** values, LONG count) noexcept override;
    HRESULT STDMETHODCALLTYPE Longs(SAFEARRAY** values, LONG count) noexcept override;
    HRESULT STDMETHODCALLTYPE Flags(SAFEARRAY** values, LONG count) noexcept override;
    HRESULT STDMETHODCALLTYPE Texts(SAFEARRAY** values, LONG count) noexcept override;
    HRESULT STDMETHODCALLTYPE Variants(SAFEARRAY** values, LONG count) noexcept override;
    HRESULT STDMETHODCALLTYPE Sum(SAFEARRAY* values, double* result) noexcept override;
    HRESULT STDMETHODCALLTYPE Erase(SAFEARRAY** values) noexcept override;
    HRESULT STDMETHODCALLTYPE MakeLongs(LONG count, SAFEARRAY** result) noexcept override;

    HRESULT STDMETHODCALLTYPE Other(IProbe* object, LONG* result) noexcept override;
    HRESULT STDMETHODCALLTYPE Swap(IProbe** object) noexcept override;
    HRESULT STDMETHODCALLTYPE MakeProbe(LONG number, IProbe** result) noexcept override;
    HRESULT STDMETHODCALLTYPE MakeProbes(LONG count, SAFEARRAY** result) noexcept override;
    HRESULT STDMETHODCALLTYPE AddProbes(SAFEARRAY* objects, LONG* result) noexcept override;
    HRESULT STDMETHODCALLTYPE Probes(SAFEARRAY** objects, LONG count) noexcept override;

    HRESULT STDMETHODCALLTYPE Fail(LONG code, BSTR description) noexcept override;
    HRESULT STDMETHODCALLTYPE FailPlain(LONG code) noexcept override;
    HRESULT STDMETHODCALLTYPE Raise(LONG kind, BSTR text) noexcept override;

    HRESULT STDMETHODCALLTYPE HeldObject(REFCLSID wanted, IDispatch** object) noexcept override;

  private:
    template <class Body>
    HRESULT guarded(Body&& body) noexcept {
        return com::guard(L"ToolkitTest.Probe", __uuidof(IProbe), std::forward<Body>(body));
    }

    LONG number_;
    com::Variant any_;
};

}  // namespace vtdn::test
