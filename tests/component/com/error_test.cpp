// Errors: numbers and texts of HRESULTs, error info in both directions.
#include <gtest/gtest.h>

#include <new>
#include <stdexcept>

#include "com/error.h"
#include "com/guard.h"
#include "com/strings.h"

namespace vtdn::test {
namespace {

constexpr IID someInterface = {0x1b2c3d4e, 1, 2, {3, 4, 5, 6, 7, 8, 9, 10}};

struct Known {
    HRESULT result;
    LONG number;
    const wchar_t* text;
};

class KnownErrors : public testing::TestWithParam<Known> {};

TEST_P(KnownErrors, HaveTheirNumberAndText) {
    EXPECT_EQ(com::errorNumber(GetParam().result), GetParam().number);
    EXPECT_EQ(com::errorText(GetParam().number), GetParam().text);
    EXPECT_EQ(com::Error(GetParam().result).number(), GetParam().number);
    EXPECT_EQ(com::Error(GetParam().result).description(), GetParam().text);
}

INSTANTIATE_TEST_SUITE_P(
    Table, KnownErrors,
    testing::Values(
        Known{static_cast<HRESULT>(0x800A005B), 91, L"Object variable or With block variable not set"},
        Known{static_cast<HRESULT>(0x800A005E), 94, L"Invalid use of Null"},
        Known{static_cast<HRESULT>(0x800A000D), 13, L"Type mismatch"},
        Known{static_cast<HRESULT>(0x800A0009), 9, L"Subscript out of range"},
        Known{static_cast<HRESULT>(0x800AFFFF), 65535, L"Application-defined or object-defined error"},
        Known{DISP_E_TYPEMISMATCH, 13, L"Type mismatch"}, Known{TYPE_E_TYPEMISMATCH, 13, L"Type mismatch"},
        Known{DISP_E_OVERFLOW, 6, L"Overflow"}, Known{DISP_E_DIVBYZERO, 11, L"Division by zero"},
        Known{DISP_E_BADINDEX, 9, L"Subscript out of range"},
        Known{TYPE_E_OUTOFBOUNDS, 9, L"Subscript out of range"},
        Known{DISP_E_ARRAYISLOCKED, 10, L"This array is fixed or temporarily locked"},
        Known{DISP_E_MEMBERNOTFOUND, 438, L"Object doesn't support this property or method"},
        Known{DISP_E_UNKNOWNNAME, 438, L"Object doesn't support this property or method"},
        Known{DISP_E_UNKNOWNINTERFACE, 438, L"Object doesn't support this property or method"},
        Known{DISP_E_PARAMNOTFOUND, 448, L"Named argument not found"},
        Known{DISP_E_PARAMNOTOPTIONAL, 449, L"Argument not optional"},
        Known{DISP_E_BADPARAMCOUNT, 450, L"Wrong number of arguments or invalid property assignment"},
        Known{E_INVALIDARG, 5, L"Invalid procedure call or argument"},
        Known{E_OUTOFMEMORY, 7, L"Out of memory"},
        Known{E_NOTIMPL, 445, L"Object doesn't support this action"},
        Known{E_NOINTERFACE, 430,
              L"Class does not support Automation or does not support expected interface"},
        Known{REGDB_E_CLASSNOTREG, 429, L"ActiveX component can't create object"},
        Known{CO_E_CLASSSTRING, 429, L"ActiveX component can't create object"},
        Known{E_ACCESSDENIED, 70, L"Permission denied"}, Known{E_FAIL, -2147467259, L"Automation error"},
        Known{E_POINTER, -2147467261, L"Automation error"},
        Known{static_cast<HRESULT>(0x8004DEAD), static_cast<LONG>(0x8004DEAD), L"Automation error"}));

/// An object info as a callee sets one.
com::Ptr<IErrorInfo> infoOf(const wchar_t* source, const wchar_t* description) {
    return com::makeErrorInfo(source, description, someInterface);
}

struct Seen {
    std::wstring source, description;
    GUID iid{};
};
Seen take() {
    com::Ptr<IErrorInfo> info;
    Seen seen;
    if (GetErrorInfo(0, info.receive()) != S_OK) return seen;
    com::Bstr source, description;
    info->GetSource(source.receive());
    info->GetDescription(description.receive());
    info->GetGUID(&seen.iid);
    seen.source = source.view();
    seen.description = description.view();
    return seen;
}

TEST(Error, TheCalleesDescriptionWinsButNotTheNumber) {
    const com::Error error(E_ACCESSDENIED, infoOf(L"Engine", L"13, locked by somebody"));
    EXPECT_EQ(error.number(), 70);
    EXPECT_EQ(error.description(), L"13, locked by somebody");
    EXPECT_EQ(com::Error(E_ACCESSDENIED, infoOf(L"Engine", L"")).description(), L"Permission denied");
}

TEST(Error, OfAFailedCallComesWithItsErrorInfo) {
    SetErrorInfo(0, infoOf(L"Engine", L"No such unit").get());
    try {
        com::check(E_FAIL);
        FAIL() << "did not throw";
    } catch (const com::Error& error) {
        EXPECT_EQ(error.result(), E_FAIL);
        EXPECT_EQ(error.description(), L"No such unit");
    }
    EXPECT_EQ(take().description, L"");
}

TEST(Error, ASuccessPasses) {
    EXPECT_EQ(com::check(S_FALSE), S_FALSE);
}

TEST(Guard, ReportsSuccess) {
    SetErrorInfo(0, infoOf(L"Somebody", L"Old").get());
    EXPECT_EQ(com::guard(L"Here", someInterface, [] {}), S_OK);
    EXPECT_EQ(com::guard(L"Here", someInterface, [] { return S_FALSE; }), S_FALSE);
    EXPECT_EQ(take().description, L"");
}

TEST(Guard, PassesACalleesErrorOnAsItIs) {
    const HRESULT result = com::guard(L"Here", IID_IDispatch, [] {
        SetErrorInfo(0, infoOf(L"Engine", L"No such unit").get());
        com::check(static_cast<HRESULT>(0x8004DEAD));
    });
    EXPECT_EQ(result, static_cast<HRESULT>(0x8004DEAD));
    const Seen seen = take();
    EXPECT_EQ(seen.source, L"Engine");
    EXPECT_EQ(seen.description, L"No such unit");
    EXPECT_TRUE(seen.iid == someInterface);
}

TEST(Guard, InventsNothingForACalleeThatSetNothing) {
    EXPECT_EQ(com::guard(L"Here", someInterface, [] { com::check(E_FAIL); }), E_FAIL);
    EXPECT_EQ(take().description, L"");
}

TEST(Guard, DescribesAFailureOfItsOwn) {
    EXPECT_EQ(com::guard(L"Here", someInterface, [] { com::throwError(E_INVALIDARG, L"Not that one"); }),
              E_INVALIDARG);
    Seen seen = take();
    EXPECT_EQ(seen.source, L"Here");
    EXPECT_EQ(seen.description, L"Not that one");
    EXPECT_TRUE(seen.iid == someInterface);
    EXPECT_EQ(com::guard(L"Here", someInterface, [] { com::throwError(com::unsetObject); }),
              com::unsetObject);
    seen = take();
    EXPECT_EQ(seen.description, L"Object variable or With block variable not set");
}

TEST(Guard, CoversWhatTheLibraryThrows) {
    EXPECT_EQ(com::guard(L"Here", someInterface, [] { throw std::bad_alloc(); }), E_OUTOFMEMORY);
    EXPECT_EQ(take().description, L"Out of memory");
    EXPECT_EQ(com::guard(L"Here", someInterface, [] { com::throwError(E_OUTOFMEMORY); }), E_OUTOFMEMORY);
    EXPECT_EQ(com::guard(L"Here", someInterface, [] { throw std::length_error("too long"); }), E_OUTOFMEMORY);
    EXPECT_EQ(com::guard(L"Here", someInterface, [] { throw std::runtime_error("odd"); }), E_UNEXPECTED);
    EXPECT_EQ(take().description, L"Internal error: odd");
    EXPECT_EQ(com::guard(L"Here", someInterface, [] { throw 5; }), E_UNEXPECTED);
    EXPECT_EQ(take().description, L"Internal error");
}

TEST(Guard, RefusesNullPointers) {
    int value = 0;
    int* none = nullptr;
    EXPECT_EQ(com::guard(L"Here", someInterface, [&] { com::needPointers(&value, none); }), E_POINTER);
    EXPECT_EQ(com::guard(L"Here", someInterface, [&] { com::needPointers(&value); }), S_OK);
    SetErrorInfo(0, nullptr);
}

}  // namespace
}  // namespace vtdn::test
