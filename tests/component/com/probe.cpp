#include "probe.h"

#include <atomic>
#include <string>

#include "com/safe_array.h"

namespace vtdn::test {
namespace {

using com::Bstr;
using com::SafeArray;

std::atomic<LONG> living{0};

std::wstring textOf(const VARIANT& value) {
    Bstr text;
    const HRESULT result = com::toText(value, text);
    if (result == E_OUTOFMEMORY) com::throwError(result);
    if (FAILED(result)) return L"?";
    return std::wstring(text.view());
}

template <class T, class Fill>
void fill(SAFEARRAY** values, LONG count, Fill fillOne) {
    com::needPointers(values);
    if (count == -1) return;
    com::redimension(values, com::ElementType<T>::value, count);
    const com::ArrayView<T> view(*values);
    for (LONG i = 0; i < count; ++i) fillOne(view[static_cast<std::size_t>(i)], i);
}

}  // namespace

Probe::Probe(LONG number) : number_(number) {
    ++living;
}
Probe::~Probe() {
    --living;
}
LONG Probe::count() noexcept {
    return living;
}

HRESULT Probe::get_Number(LONG* result) noexcept {
    return guarded([&] {
        com::needPointers(result);
        *result = number_;
    });
}
HRESULT Probe::put_Number(LONG value) noexcept {
    number_ = value;
    return S_OK;
}
HRESULT Probe::get_Any(VARIANT* result) noexcept {
    return guarded([&] { com::Variant(any_).detachTo(result); });
}
HRESULT Probe::put_Any(VARIANT value) noexcept {
    return guarded([&] { any_ = com::Variant::copyOf(value); });
}
HRESULT Probe::putref_Any(IDispatch* value) noexcept {
    any_ = com::Variant::of(value);
    return S_OK;
}
HRESULT Probe::get_Cell(LONG row, BSTR column, BSTR* result) noexcept {
    return guarded([&] {
        *result =
            Bstr(std::to_wstring(row) + L"/" + std::wstring(com::view(column)) + L"/" + textOf(any_.get()))
                .detach();
    });
}
HRESULT Probe::put_Cell(LONG row, BSTR column, BSTR value) noexcept {
    return guarded([&] {
        any_ = com::Variant::of(std::wstring(com::view(value)) + L"@" + std::to_wstring(row) + L"," +
                                std::wstring(com::view(column)));
    });
}

HRESULT Probe::Three(LONG a, double b, BSTR c, BSTR* result) noexcept {
    return guarded([&] {
        *result = Bstr(std::to_wstring(a) + L"|" + textOf(com::Variant::of(b).get()) + L"|" +
                       std::wstring(com::view(c)))
                      .detach();
    });
}
HRESULT Probe::EveryValue(unsigned char byteValue, short shortValue, LONG longValue, float singleValue,
                          double doubleValue, DATE when, BSTR text, VARIANT_BOOL flag, VARIANT anything,
                          ProbeColour colour, hyper big, BSTR* result) noexcept {
    return guarded([&] {
        const std::wstring list =
            std::to_wstring(byteValue) + L"|" + std::to_wstring(shortValue) + L"|" +
            std::to_wstring(longValue) + L"|" + textOf(com::Variant::of(singleValue).get()) + L"|" +
            textOf(com::Variant::of(doubleValue).get()) + L"|" + textOf(com::Variant::of(when).get()) + L"|" +
            std::wstring(com::view(text)) + L"|" + std::to_wstring(flag) + L"|" + textOf(anything) + L"|" +
            std::to_wstring(static_cast<int>(colour)) + L"|" + std::to_wstring(big);
        *result = Bstr(list).detach();
    });
}
HRESULT Probe::Floats(float a, double b, float c, double d, float e, LONG f, double* result) noexcept {
    *result =
        a + 10 * b + 100 * static_cast<double>(c) + 1000 * d + 10000 * static_cast<double>(e) + 100000.0 * f;
    return S_OK;
}
HRESULT Probe::Optional(LONG a, LONG b, BSTR c, VARIANT d, BSTR* result) noexcept {
    return guarded([&] {
        const bool missing = d.vt == VT_ERROR && d.scode == DISP_E_PARAMNOTFOUND;
        *result = Bstr(std::to_wstring(a) + L"|" + std::to_wstring(b) + L"|" + std::wstring(com::view(c)) +
                       L"|" + (missing ? std::wstring(L"missing") : textOf(d)))
                      .detach();
    });
}
HRESULT Probe::Kind(VARIANT value, LONG* result) noexcept {
    *result = value.vt;
    return S_OK;
}
HRESULT Probe::Flag(VARIANT_BOOL value, VARIANT_BOOL* result) noexcept {
    *result = com::variantBool(value != VARIANT_FALSE);
    return S_OK;
}

HRESULT Probe::References(LONG* longValue, float* singleValue, BSTR* text, VARIANT_BOOL* flag, DATE* when,
                          VARIANT* anything) noexcept {
    return guarded([&] {
        com::needPointers(longValue, singleValue, text, flag, when, anything);
        *longValue *= 2;
        *singleValue *= 2;
        com::replace(text, Bstr(std::wstring(com::view(*text)) + std::wstring(com::view(*text))));
        *flag = com::variantBool(!*flag);
        *when *= 2;
        com::Variant twice = com::Variant::of(textOf(*anything) + textOf(*anything));
        com::check(VariantClear(anything));
        twice.detachTo(anything);
    });
}
HRESULT Probe::Outs(LONG* longValue, BSTR* text) noexcept {
    return guarded([&] {
        com::needPointers(longValue, text);
        *longValue = number_;
        *text = Bstr(L"out").detach();
    });
}
HRESULT Probe::FailLate(LONG* longValue, BSTR* text, SAFEARRAY** values) noexcept {
    return guarded([&] {
        *longValue = 99;
        com::replace(text, Bstr(L"half done"));
        com::redimension(values, VT_R4, 5);
        com::throwError(E_FAIL, L"Failed late");
    });
}

HRESULT Probe::Singles(SAFEARRAY** values, LONG count) noexcept {
    return guarded(
        [&] { fill<float>(values, count, [](float& v, LONG i) { v = static_cast<float>(i) + 0.5F; }); });
}
HRESULT Probe::Longs(SAFEARRAY** values, LONG count) noexcept {
    return guarded([&] { fill<LONG>(values, count, [](LONG& v, LONG i) { v = i; }); });
}
HRESULT Probe::Flags(SAFEARRAY** values, LONG count) noexcept {
    return guarded([&] {
        fill<VARIANT_BOOL>(values, count, [](VARIANT_BOOL& v, LONG i) { v = com::variantBool(i % 2 == 1); });
    });
}
HRESULT Probe::Texts(SAFEARRAY** values, LONG count) noexcept {
    return guarded([&] {
        fill<BSTR>(values, count, [](BSTR& v, LONG i) { com::replace(&v, Bstr(L"t" + std::to_wstring(i))); });
    });
}
HRESULT Probe::Variants(SAFEARRAY** values, LONG count) noexcept {
    return guarded([&] {
        fill<VARIANT>(values, count, [](VARIANT& v, LONG i) {
            com::check(VariantClear(&v));
            com::Variant::of(i).detachTo(&v);
        });
    });
}
HRESULT Probe::Sum(SAFEARRAY* values, double* result) noexcept {
    return guarded([&] {
        *result = 0;
        for (const float v : com::ArrayView<float>(values)) *result += static_cast<double>(v);
    });
}
HRESULT Probe::Erase(SAFEARRAY** values) noexcept {
    return guarded([&] { SafeArray(std::exchange(*values, nullptr)); });
}
HRESULT Probe::MakeLongs(LONG count, SAFEARRAY** result) noexcept {
    return guarded([&] {
        if (count == 0) return;
        SafeArray made = SafeArray::of<LONG>(count);
        {
            LONG i = 0;
            for (LONG& v : com::ArrayView<LONG>(made.get())) v = i++;
        }
        made.detachTo(result);
    });
}

HRESULT Probe::Other(IProbe* object, LONG* result) noexcept {
    *result = -1;
    return object ? object->get_Number(result) : S_OK;
}
HRESULT Probe::Swap(IProbe** object) noexcept {
    return guarded([&] {
        com::Ptr<Probe> fresh = com::make<Probe>(number_);
        const com::Ptr<IProbe> old = com::Ptr<IProbe>::adopt(*object);
        *object = fresh.detach();
        if (old) com::check(old->get_Number(&number_));
    });
}
HRESULT Probe::MakeProbe(LONG number, IProbe** result) noexcept {
    return guarded([&] {
        if (number != 0) *result = com::make<Probe>(number).detach();
    });
}
HRESULT Probe::MakeProbes(LONG count, SAFEARRAY** result) noexcept {
    return guarded([&] {
        SafeArray made = SafeArray::of<IDispatch*>(count);
        {
            LONG i = 0;
            for (IDispatch*& v : com::ArrayView<IDispatch*>(made.get())) v = com::make<Probe>(i++).detach();
        }
        made.detachTo(result);
    });
}
HRESULT Probe::AddProbes(SAFEARRAY* objects, LONG* result) noexcept {
    return guarded([&] {
        *result = 0;
        for (IDispatch* v : com::ArrayView<IDispatch*>(objects)) {
            LONG number = 0;
            if (v) com::check(static_cast<IProbe*>(v)->get_Number(&number));
            *result += number;
        }
    });
}
HRESULT Probe::Probes(SAFEARRAY** objects, LONG count) noexcept {
    return guarded([&] {
        fill<IDispatch*>(objects, count, [](IDispatch*& v, LONG i) {
            com::Ptr<IDispatch>::adopt(v).reset();
            v = com::make<Probe>(i).detach();
        });
    });
}

HRESULT Probe::Fail(LONG code, BSTR description) noexcept {
    return guarded([&] { com::throwError(static_cast<HRESULT>(code), com::view(description)); });
}
HRESULT Probe::FailPlain(LONG code) noexcept {
    return guarded([&] { return static_cast<HRESULT>(code); });
}
HRESULT Probe::Raise(LONG kind, BSTR text) noexcept {
    return guarded([&] { raise(1, {com::Variant::of(kind), com::Variant::of(com::view(text))}); });
}

HRESULT Probe::HeldObject(REFCLSID wanted, IDispatch** object) noexcept {
    *object = nullptr;
    if (wanted != classId) return DISP_E_TYPEMISMATCH;
    com::Ptr<IDispatch>(held).detachTo(object);
    return S_OK;
}

}  // namespace vtdn::test
