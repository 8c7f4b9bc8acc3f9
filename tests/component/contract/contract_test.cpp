// The contract of the type library: the checked-in list, and every member called before set-up, rightly and
// wrongly, early and late bound. Nothing here names a member: what the library declares is walked.
#include <VTWrapperDN.h>
#include <gtest/gtest.h>
#include <ocidl.h>

#include <algorithm>
#include <fstream>
#include <functional>
#include <sstream>
#include <string>
#include <vector>

#include "com/error.h"
#include "com/strings.h"
#include "contract/arguments.h"
#include "contract/type_text.h"
#include "fake_engine/lenient.h"
#include "support/component.h"
#include "support/failure.h"

namespace vtdn::test {
namespace {

using com::Bstr;
using com::check;
using com::Ptr;
using com::Variant;

/// A class of the library that a client creates, with its default interface.
struct CreatableClass {
    std::wstring name;
    CLSID classId{};
    Ptr<ITypeInfo> interfaceType;
    IID interfaceId{};
};

std::vector<CreatableClass> creatableClasses() {
    std::vector<CreatableClass> all;
    const auto library = loadTypeLibrary();
    for (const auto& type : classTypes(*library.get())) {
        const TypeAttributes of(*type.get());
        if (!(of->wTypeFlags & TYPEFLAG_FCANCREATE)) continue;
        CreatableClass one{documentation(*type.get()).name, of->guid, {}, {}};
        HREFTYPE reference = 0;
        Ptr<ITypeInfo> dispatch;
        check(type->GetRefTypeOfImplType(0, &reference));
        check(type->GetRefTypeInfo(reference, dispatch.receive()));
        check(dispatch->GetRefTypeOfImplType(static_cast<UINT>(-1), &reference));
        check(dispatch->GetRefTypeInfo(reference, one.interfaceType.receive()));
        one.interfaceId = TypeAttributes(*one.interfaceType.get())->guid;
        all.push_back(std::move(one));
    }
    return all;
}

/// One member of a creatable class, with a fresh object.
struct Walked {
    std::string name;
    Ptr<IDispatch> object;
    ITypeInfo& type;
    const FUNCDESC& member;
    std::vector<ArgumentType> types;

    [[nodiscard]] std::size_t argumentCount() const {
        return types.size() -
               static_cast<std::size_t>(std::count_if(
                   types.begin(), types.end(), [](const ArgumentType& type_) { return type_.result; }));
    }
    HRESULT invoke(std::vector<VARIANT>& reversed, Variant& result, UINT* badArgument = nullptr) const {
        DISPPARAMS params{reversed.data(), nullptr, static_cast<UINT>(reversed.size()), 0};
        EXCEPINFO info{};
        const HRESULT called = object->Invoke(member.memid, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD,
                                              &params, result.receive(), &info, badArgument);
        SysFreeString(info.bstrSource);
        SysFreeString(info.bstrDescription);
        SysFreeString(info.bstrHelpFile);
        return called == DISP_E_EXCEPTION ? info.scode : called;
    }
};

/// Walks every own member of every creatable class. The engine refuses every set-up, so that a set-up has the
/// default result too.
void walk(const std::function<void(const Walked&)>& visit) {
    int visited = 0;
    fake::Site site;
    site.setupAnswer = false;
    const fake::LenientServer server(site);
    for (const CreatableClass& one : creatableClasses()) {
        const TypeAttributes of(*one.interfaceType.get());
        for (UINT i = 0; i < of->cFuncs; ++i) {
            const Function member(*one.interfaceType.get(), i);
            const FUNCDESC& description = *member.operator->();
            const auto names = memberNames(*one.interfaceType.get(), description.memid, 0);
            const auto object = component().create<IDispatch>(one.classId);
            // The interface of the vtable is the default one: IDispatch of a dual interface is the same
            // pointer.
            SCOPED_TRACE(com::toUtf8(one.name + L"." + names.front()));
            visit({com::toUtf8(names.front()), object, *one.interfaceType.get(), description,
                   argumentTypes(*one.interfaceType.get(), description)});
            ++visited;
        }
    }
    EXPECT_GT(visited, 0);
}

/// The name lists and the parameter cache, which need a wrapper that is set up.
bool needsSetUp(const Walked& walked) {
    constexpr MEMBERID first = 161;
    constexpr MEMBERID last = 168;
    return walked.member.memid >= first && walked.member.memid <= last;
}

/// The blank data point, which needs no set-up; other members hand out no object before it.
bool makesObject(const Walked& walked) {
    return walked.member.memid == 203;
}

/// What a call before set-up answers.
HRESULT beforeSetUp(const Walked& walked) {
    return needsSetUp(walked) ? numbered(91) : S_OK;
}

/// False, 0, "", no array or nothing at all; an object where a call makes one.
void expectDefault(const Variant& result, const Walked& walked) {
    const std::vector<ArgumentType>& types = walked.types;
    const bool returns = !types.empty() && types.back().result;
    const VARTYPE type = returns ? types.back().type : VARTYPE{VT_EMPTY};
    const VARTYPE expected = type & VT_ARRAY ? VARTYPE{VT_EMPTY} : type;
    ASSERT_EQ(result.type(), expected);
    switch (expected) {
        case VT_EMPTY:
            break;
        case VT_BOOL:
            EXPECT_EQ(result.get().boolVal, VARIANT_FALSE);
            break;
        case VT_I4:
            EXPECT_EQ(result.get().lVal, 0);
            break;
        case VT_BSTR:
            EXPECT_EQ(com::view(result.get().bstrVal), L"");
            break;
        case VT_DISPATCH:
            EXPECT_EQ(result.get().pdispVal != nullptr, makesObject(walked));
            break;
        default:
            FAIL() << "no default is known for type " << expected;
    }
}

/// The default result, or none of a call that failed.
void expectOutcome(const Variant& result, const Walked& walked) {
    if (needsSetUp(walked)) {
        EXPECT_EQ(result.type(), VT_EMPTY);
    } else {
        expectDefault(result, walked);
    }
}

// ---- The list

/// The list, in the source folder.
std::string listPath() {
    return com::toUtf8(besideProgram(VTDN_CONTRACT_LIST));
}

/// With VTDN_WRITE_CONTRACT in the environment the list is written anew before it is compared.
TEST(TypeLibrary, IsTheCheckedInListToTheLetter) {
    const auto library = loadTypeLibrary();
    const std::string declared = describe(*library.get());
    ASSERT_TRUE(declared.starts_with("library VTWrapperDN "));
    if (GetEnvironmentVariableW(L"VTDN_WRITE_CONTRACT", nullptr, 0) != 0) {
        std::ofstream(listPath(), std::ios::binary) << declared;
    }
    std::ifstream file(listPath());
    ASSERT_TRUE(file) << listPath();
    std::stringstream listed;
    listed << file.rdbuf();
    EXPECT_EQ(declared, listed.str())
        << "A change that is meant: run this program with VTDN_WRITE_CONTRACT=1 in the "
           "environment, look at the difference, and check the list in.";
}

TEST(TypeLibrary, HasAHelpstringOnEverything) {
    const auto library = loadTypeLibrary();
    Bstr help;
    check(library->GetDocumentation(MEMBERID_NIL, nullptr, help.receive(), nullptr, nullptr));
    EXPECT_EQ(help.view(), L"Vantor 5 Wrapper For .NET");
    int members = 0;
    for (UINT i = 0; i < library->GetTypeInfoCount(); ++i) {
        Ptr<ITypeInfo> type;
        check(library->GetTypeInfo(i, type.receive()));
        const Documentation own = documentation(*type.get());
        EXPECT_FALSE(own.help.empty()) << com::toUtf8(own.name);
    }
    for (const auto& type : interfaceTypes(*library.get())) {
        const TypeAttributes of(*type.get());
        for (UINT i = 0; i < of->cFuncs; ++i) {
            const Documentation member = documentation(*type.get(), Function(*type.get(), i)->memid);
            EXPECT_FALSE(member.help.empty()) << com::toUtf8(member.name);
            ++members;
        }
    }
    EXPECT_GT(members, 0);
}

TEST(TypeLibrary, NamesEveryArgument) {
    walk([](const Walked& walked) {
        const auto names = memberNames(walked.type, walked.member.memid, walked.types.size());
        EXPECT_GE(names.size(), walked.argumentCount() + 1);
    });
}

// ---- Classes

TEST(Classes, AnswerTheInterfacesOfAnAutomationObject) {
    for (const CreatableClass& one : creatableClasses()) {
        SCOPED_TRACE(com::toUtf8(one.name));
        const auto object = component().create<IUnknown>(one.classId);
        Ptr<IUnknown> own;
        EXPECT_EQ(object->QueryInterface(one.interfaceId, own.receiveVoid()), S_OK);
        EXPECT_TRUE(object.as<IDispatch>());
        const auto errors = object.as<ISupportErrorInfo>();
        ASSERT_TRUE(errors);
        EXPECT_EQ(errors->InterfaceSupportsErrorInfo(one.interfaceId), S_OK);
        EXPECT_EQ(errors->InterfaceSupportsErrorInfo(IID_IProvideClassInfo), S_FALSE);
        const auto provider = object.as<IProvideClassInfo>();
        ASSERT_TRUE(provider);
        Ptr<ITypeInfo> info;
        ASSERT_EQ(provider->GetClassInfo(info.receive()), S_OK);
        EXPECT_TRUE(IsEqualGUID(TypeAttributes(*info.get())->guid, one.classId));
        EXPECT_EQ(provider->GetClassInfo(nullptr), E_POINTER);
    }
}

TEST(Classes, HoldTheRulesOfIdentity) {
    for (const CreatableClass& one : creatableClasses()) {
        const auto object = component().create<IUnknown>(one.classId);
        const auto dispatch = object.as<IDispatch>();
        const auto errors = object.as<ISupportErrorInfo>();
        ASSERT_TRUE(dispatch && errors);
        EXPECT_EQ(dispatch.as<IUnknown>().get(), object.as<IUnknown>().get());
        EXPECT_EQ(errors.as<IUnknown>().get(), object.as<IUnknown>().get());
        EXPECT_TRUE(errors.as<IDispatch>());
        EXPECT_EQ(object->QueryInterface(IID_IUnknown, nullptr), E_POINTER);
        void* out = &out;
        EXPECT_EQ(object->QueryInterface(IID_IStream, &out), E_NOINTERFACE);
        EXPECT_EQ(out, nullptr);
    }
}

TEST(Classes, GiveTheirTypeInformation) {
    for (const CreatableClass& one : creatableClasses()) {
        const auto object = component().create<IDispatch>(one.classId);
        UINT count = 0;
        EXPECT_EQ(object->GetTypeInfoCount(&count), S_OK);
        EXPECT_EQ(count, 1U);
        Ptr<ITypeInfo> info;
        ASSERT_EQ(object->GetTypeInfo(0, LOCALE_USER_DEFAULT, info.receive()), S_OK);
        EXPECT_TRUE(IsEqualGUID(TypeAttributes(*info.get())->guid, one.interfaceId));
        EXPECT_EQ(object->GetTypeInfo(1, LOCALE_USER_DEFAULT, info.receive()), DISP_E_BADINDEX);
        EXPECT_FALSE(info);
        EXPECT_EQ(object->GetTypeInfo(0, LOCALE_USER_DEFAULT, nullptr), E_POINTER);
        EXPECT_EQ(object->GetTypeInfoCount(nullptr), E_POINTER);
    }
}

// ---- Early bound

TEST(EarlyBound, EveryMemberBeforeSetUpHasItsDefaultResultOrNeedsSetUp) {
    walk([](const Walked& walked) {
        Arguments arguments(walked.types, Style::typed);
        EXPECT_EQ(arguments.callSlot(*walked.object.get(), walked.member.oVft), beforeSetUp(walked));
        if (!needsSetUp(walked)) expectDefault(arguments.result(), walked);
    });
}

TEST(EarlyBound, NoMemberAddsAProblemBeforeSetUp) {
    walk([](const Walked& walked) {
        const auto wrapper = walked.object.as<_DIWrapper>();
        if (!wrapper) return;
        Arguments arguments(walked.types, Style::typed);
        EXPECT_EQ(arguments.callSlot(*wrapper.get(), walked.member.oVft), beforeSetUp(walked));
        Bstr problems;
        EXPECT_EQ(wrapper->GetAndClearProblemsList(problems.receive()), S_OK);
        EXPECT_EQ(problems.view(), L"");
    });
}

TEST(EarlyBound, ANullPointerForAByReferenceArgumentIsRefused) {
    int refused = 0;
    walk([&refused](const Walked& walked) {
        for (std::size_t i = 0; i < walked.types.size(); ++i) {
            if (!walked.types[i].byReference) continue;
            Arguments arguments(walked.types, Style::typed);
            EXPECT_EQ(arguments.callSlot(*walked.object.get(), walked.member.oVft, static_cast<int>(i)),
                      E_POINTER)
                << "argument " << i;
            ++refused;
        }
    });
    EXPECT_GT(refused, 0);
}

// ---- Late bound

TEST(LateBound, EveryNameIsFoundWhateverItsCase) {
    walk([](const Walked& walked) {
        auto names = memberNames(walked.type, walked.member.memid, walked.argumentCount());
        for (const bool upper : {false, true}) {
            std::vector<LPOLESTR> pointers;
            for (std::wstring& name : names) {
                for (wchar_t& c : name) c = static_cast<wchar_t>(upper ? towupper(c) : towlower(c));
                pointers.push_back(name.data());
            }
            std::vector<DISPID> ids(pointers.size(), -77);
            EXPECT_EQ(
                walked.object->GetIDsOfNames(IID_NULL, pointers.data(), static_cast<UINT>(pointers.size()),
                                             LOCALE_USER_DEFAULT, ids.data()),
                S_OK);
            EXPECT_EQ(ids[0], walked.member.memid);
            for (std::size_t i = 1; i < ids.size(); ++i) EXPECT_EQ(ids[i], static_cast<DISPID>(i) - 1);
        }
    });
}

TEST(LateBound, UnknownNamesAreRefused) {
    walk([](const Walked& walked) {
        auto names = memberNames(walked.type, walked.member.memid, 0);
        std::wstring unknown = L"NoSuchName";
        LPOLESTR pointers[] = {names[0].data(), unknown.data()};
        DISPID ids[] = {-77, -77};
        EXPECT_EQ(walked.object->GetIDsOfNames(IID_NULL, pointers, 2, LOCALE_USER_DEFAULT, ids),
                  DISP_E_UNKNOWNNAME);
        EXPECT_EQ(ids[0], walked.member.memid);
        EXPECT_EQ(ids[1], DISPID_UNKNOWN);
        EXPECT_EQ(walked.object->GetIDsOfNames(IID_NULL, pointers + 1, 1, LOCALE_USER_DEFAULT, ids),
                  DISP_E_UNKNOWNNAME);
        EXPECT_EQ(ids[0], DISPID_UNKNOWN);
    });
}

TEST(LateBound, EveryMemberBeforeSetUpHasItsDefaultResultOrNeedsSetUp) {
    for (const Style style : {Style::typed, Style::script}) {
        walk([style](const Walked& walked) {
            Arguments arguments(walked.types, style);
            Variant result;
            EXPECT_EQ(walked.invoke(arguments.forInvoke(), result), beforeSetUp(walked))
                << static_cast<int>(style);
            expectOutcome(result, walked);
        });
    }
}

TEST(LateBound, AResultThatNobodyWantsIsNoError) {
    walk([](const Walked& walked) {
        Arguments arguments(walked.types, Style::typed);
        auto& values = arguments.forInvoke();
        DISPPARAMS params{values.data(), nullptr, static_cast<UINT>(values.size()), 0};
        EXPECT_EQ(walked.object->Invoke(walked.member.memid, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD,
                                        &params, nullptr, nullptr, nullptr),
                  beforeSetUp(walked));
    });
}

TEST(LateBound, ArgumentsCanBeNamedInAnyOrder) {
    walk([](const Walked& walked) {
        const std::size_t count = walked.argumentCount();
        if (count == 0) return;
        Arguments arguments(walked.types, Style::typed);
        auto& values = arguments.forInvoke();
        // The first argument first, where positional ones would stand last.
        std::reverse(values.begin(), values.end());
        std::vector<DISPID> names(count);
        for (std::size_t i = 0; i < count; ++i) names[i] = static_cast<DISPID>(i);
        DISPPARAMS params{values.data(), names.data(), static_cast<UINT>(count), static_cast<UINT>(count)};
        Variant result;
        EXPECT_EQ(walked.object->Invoke(walked.member.memid, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD,
                                        &params, result.receive(), nullptr, nullptr),
                  S_OK);
        expectDefault(result, walked);
    });
}

TEST(LateBound, TheNumberOfArgumentsMustBeRight) {
    walk([](const Walked& walked) {
        Arguments arguments(walked.types, Style::typed);
        const std::vector<VARIANT>& exact = arguments.forInvoke();
        Variant result;
        std::vector<VARIANT> values{com::Variant::of(LONG{0}).get()};
        values.insert(values.end(), exact.begin(), exact.end());
        EXPECT_EQ(walked.invoke(values, result), DISP_E_BADPARAMCOUNT);
        EXPECT_EQ(result.type(), VT_EMPTY);
        if (exact.empty()) return;
        values.erase(values.begin(), values.begin() + 2);
        const HRESULT tooFew = walked.invoke(values, result);
        EXPECT_TRUE(tooFew == DISP_E_BADPARAMCOUNT || tooFew == DISP_E_PARAMNOTOPTIONAL)
            << std::hex << tooFew;
    });
}

/// A value that no argument of a type can take, and what comes of it.
struct Wrong {
    const char* what;
    Variant value;
    bool forNumbers;
    bool forTexts;
    bool forArrays;
    std::vector<HRESULT> results;
};

std::vector<Wrong> wrongValues() {
    const auto array = [](VARTYPE type) {
        Variant variant;
        variant.inOut()->parray = SafeArrayCreateVector(type, 0, 1);
        variant.inOut()->vt = static_cast<VARTYPE>(VT_ARRAY | type);
        return variant;
    };
    return {
        {"a text that is no number", Variant::of(L"abc"), true, false, true, {DISP_E_TYPEMISMATCH}},
        {"a number out of range", Variant::of(1e300), false, false, true, {DISP_E_TYPEMISMATCH}},
        {"an empty object reference",
         Variant::of(static_cast<IDispatch*>(nullptr)),
         true,
         true,
         true,
         {DISP_E_TYPEMISMATCH, numbered(91)}},
        {"an argument left out",
         Variant::missing(),
         true,
         true,
         true,
         {DISP_E_TYPEMISMATCH, DISP_E_PARAMNOTOPTIONAL}},
        {"Null", Variant::null(), true, true, true, {DISP_E_TYPEMISMATCH, numbered(94)}},
        {"an array of dates", array(VT_DATE), true, true, true, {DISP_E_TYPEMISMATCH}},
    };
}

TEST(LateBound, AWrongArgumentIsRefusedAndNamed) {
    int refused = 0;
    walk([&refused](const Walked& walked) {
        for (const Wrong& wrong : wrongValues()) {
            const std::size_t count = walked.argumentCount();
            for (std::size_t i = 0; i < count; ++i) {
                const ArgumentType& type = walked.types[i];
                const bool applies = type.type & VT_ARRAY       ? wrong.forArrays
                                     : type.type == VT_BSTR     ? wrong.forTexts
                                     : type.type == VT_DISPATCH ? wrong.value.type() != VT_DISPATCH
                                                                : wrong.forNumbers;
                // A VARIANT takes everything; what is in it, the member itself looks at, and after set-up
                // only.
                if (type.type == VT_VARIANT) continue;
                // An array of VARIANT takes what any other array holds.
                if (type.type == (VT_ARRAY | VT_VARIANT) && (wrong.value.type() & VT_ARRAY)) continue;
                if (!applies) continue;
                Arguments arguments(walked.types, Style::typed);
                std::vector<VARIANT> values = arguments.forInvoke();
                const std::size_t place = count - 1 - i;
                values[place] = wrong.value.get();  // borrowed
                Variant result;
                UINT bad = 77;
                const HRESULT refusal = walked.invoke(values, result, &bad);
                EXPECT_NE(std::find(wrong.results.begin(), wrong.results.end(), refusal), wrong.results.end())
                    << wrong.what << " for argument " << i << ": 0x" << std::hex << refusal;
                if (refusal == DISP_E_TYPEMISMATCH) {
                    EXPECT_EQ(bad, place) << wrong.what;
                }
                EXPECT_EQ(result.type(), VT_EMPTY);
                ++refused;
            }
        }
    });
    EXPECT_GT(refused, 0);
}

TEST(LateBound, ANumberTooLargeForItsArgumentIsAnOverflow) {
    walk([](const Walked& walked) {
        const std::size_t count = walked.argumentCount();
        for (std::size_t i = 0; i < count; ++i) {
            if (walked.types[i].type != VT_I4 || walked.types[i].byReference) continue;
            for (const double large : {1e300, 2147483648.0}) {
                Arguments arguments(walked.types, Style::typed);
                std::vector<VARIANT> values = arguments.forInvoke();
                values[count - 1 - i].vt = VT_R8;
                values[count - 1 - i].dblVal = large;
                Variant result;
                EXPECT_EQ(walked.invoke(values, result), DISP_E_OVERFLOW) << "argument " << i;
            }
        }
    });
}

TEST(LateBound, NumbersAndTextsOfOtherTypesAreConverted) {
    walk([](const Walked& walked) {
        const std::size_t count = walked.argumentCount();
        Arguments arguments(walked.types, Style::typed);
        std::vector<VARIANT> values = arguments.forInvoke();
        const Bstr twelve(L"12");
        for (std::size_t i = 0; i < count; ++i) {
            if (walked.types[i].byReference || walked.types[i].type == VT_DISPATCH) continue;
            VARIANT& value = values[count - 1 - i];
            value = {};
            if (walked.types[i].type == VT_BSTR) {
                value.vt = VT_I2;
                value.iVal = 12;
            } else if (walked.types[i].type == VT_DATE) {
                value.vt = VT_I4;
                value.lVal = 12;
            } else {
                value.vt = VT_BSTR;
                value.bstrVal = twelve.get();
            }
        }
        Variant result;
        EXPECT_EQ(walked.invoke(values, result), beforeSetUp(walked));
        expectOutcome(result, walked);
    });
}

TEST(LateBound, OnlyMethodCallsAreTaken) {
    walk([](const Walked& walked) {
        Arguments arguments(walked.types, Style::typed);
        auto& values = arguments.forInvoke();
        DISPPARAMS params{values.data(), nullptr, static_cast<UINT>(values.size()), 0};
        Variant result;
        const auto invoke = [&](DISPID id, REFIID iid, WORD flags) {
            return walked.object->Invoke(id, iid, LOCALE_USER_DEFAULT, flags, &params, result.receive(),
                                         nullptr, nullptr);
        };
        EXPECT_EQ(invoke(walked.member.memid, IID_NULL, DISPATCH_METHOD | DISPATCH_PROPERTYGET),
                  beforeSetUp(walked));
        EXPECT_EQ(invoke(walked.member.memid, IID_NULL, DISPATCH_PROPERTYPUT), DISP_E_MEMBERNOTFOUND);
        EXPECT_EQ(invoke(walked.member.memid, IID_IDispatch, DISPATCH_METHOD), DISP_E_UNKNOWNINTERFACE);
        EXPECT_EQ(invoke(99999, IID_NULL, DISPATCH_METHOD), DISP_E_MEMBERNOTFOUND);
        EXPECT_EQ(invoke(DISPID_VALUE, IID_NULL, DISPATCH_METHOD), DISP_E_MEMBERNOTFOUND);
        EXPECT_EQ(invoke(-1, IID_NULL, DISPATCH_METHOD), DISP_E_MEMBERNOTFOUND);
    });
}

}  // namespace
}  // namespace vtdn::test
