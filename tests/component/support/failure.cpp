#include "support/failure.h"

#include <ostream>

#include "com/ptr.h"
#include "com/strings.h"

namespace vtdn::test {

std::ostream& operator<<(std::ostream& out, const Failure& failure) {
    return out << "0x" << std::hex << static_cast<ULONG>(failure.result) << std::dec << " from '"
               << com::toUtf8(failure.source) << "': '" << com::toUtf8(failure.description) << "'";
}

Failure takeFailure(HRESULT result) {
    Failure failure{result, {}, {}};
    com::Ptr<IErrorInfo> info;
    if (GetErrorInfo(0, info.receive()) != S_OK || !info) return failure;
    com::Bstr text;
    if (SUCCEEDED(info->GetSource(text.receive()))) failure.source = text.view();
    if (SUCCEEDED(info->GetDescription(text.receive()))) failure.description = text.view();
    return failure;
}

LONG clientNumber(HRESULT result) {
    if ((static_cast<ULONG>(result) & 0xFFFF0000UL) == 0x800A0000UL) return result & 0xFFFF;
    static constexpr struct {
        HRESULT result;
        LONG number;
    } known[] = {
        {DISP_E_TYPEMISMATCH, 13},   {TYPE_E_TYPEMISMATCH, 13},
        {DISP_E_OVERFLOW, 6},        {DISP_E_DIVBYZERO, 11},
        {DISP_E_BADINDEX, 9},        {TYPE_E_OUTOFBOUNDS, 9},
        {DISP_E_ARRAYISLOCKED, 10},  {DISP_E_MEMBERNOTFOUND, 438},
        {DISP_E_UNKNOWNNAME, 438},   {DISP_E_UNKNOWNINTERFACE, 438},
        {DISP_E_PARAMNOTFOUND, 448}, {DISP_E_PARAMNOTOPTIONAL, 449},
        {DISP_E_BADPARAMCOUNT, 450}, {E_INVALIDARG, 5},
        {E_OUTOFMEMORY, 7},          {E_NOTIMPL, 445},
        {E_NOINTERFACE, 430},        {REGDB_E_CLASSNOTREG, 429},
        {CO_E_CLASSSTRING, 429},     {E_ACCESSDENIED, 70},
    };
    for (const auto& [from, number] : known) {
        if (from == result) return number;
    }
    return result;
}

}  // namespace vtdn::test
