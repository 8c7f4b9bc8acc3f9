#include "contract/type_text.h"

#include <cctype>
#include <sstream>

#include "com/error.h"
#include "com/strings.h"
#include "com/variant.h"
#include "support/component.h"

namespace vtdn::test {

namespace {

using com::Bstr;
using com::check;
using com::Ptr;

std::string shown(REFGUID guid) {
    wchar_t text[40];
    StringFromGUID2(guid, text, 40);
    return com::toUtf8(text);
}

std::string typeName(ITypeInfo& owner, const TYPEDESC& type) {
    switch (type.vt) {
        case VT_I2:
            return "short";
        case VT_I4:
            return "long";
        case VT_R4:
            return "float";
        case VT_R8:
            return "double";
        case VT_DATE:
            return "DATE";
        case VT_BOOL:
            return "VARIANT_BOOL";
        case VT_BSTR:
            return "BSTR";
        case VT_VARIANT:
            return "VARIANT";
        case VT_DISPATCH:
            return "IDispatch*";
        case VT_UNKNOWN:
            return "IUnknown*";
        case VT_HRESULT:
            return "HRESULT";
        case VT_VOID:
            return "void";
        case VT_PTR:
            return typeName(owner, *type.lptdesc) + "*";
        case VT_SAFEARRAY:
            return "SAFEARRAY(" + typeName(owner, *type.lptdesc) + ")";
        case VT_USERDEFINED: {
            Ptr<ITypeInfo> other;
            check(owner.GetRefTypeInfo(type.hreftype, other.receive()));
            return com::toUtf8(documentation(*other.get()).name);
        }
        default:
            return "type " + std::to_string(type.vt);
    }
}

std::string direction(USHORT flags) {
    if (flags & PARAMFLAG_FRETVAL) return "retval ";
    std::string text;
    if (flags & PARAMFLAG_FIN) text += "in";
    if (flags & PARAMFLAG_FOUT) text += text.empty() ? "out" : ",out";
    if (flags & PARAMFLAG_FOPT) text += ",optional";
    return text + " ";
}

void describeMember(ITypeInfo& type, const Function& member, std::ostream& out) {
    const auto arguments = static_cast<std::size_t>(member->cParams);
    const auto names = memberNames(type, member->memid, arguments);
    const char* kind = member->invkind == INVOKE_PROPERTYGET   ? "get "
                       : member->invkind == INVOKE_PROPERTYPUT ? "put "
                                                               : "";
    out << "  slot " << static_cast<std::size_t>(member->oVft) / sizeof(void*) << " id " << member->memid
        << ": " << kind << com::toUtf8(names.front()) << "(";
    for (std::size_t i = 0; i < arguments; ++i) {
        const ELEMDESC& argument = member->lprgelemdescParam[i];
        out << (i == 0 ? "" : ", ") << direction(argument.paramdesc.wParamFlags)
            << typeName(type, argument.tdesc);
        // A property's names are those of its get: the new value has none of its own.
        const bool isNewValue = member->invkind == INVOKE_PROPERTYPUT && i + 1 == arguments;
        if (i + 1 < names.size() && !isNewValue) out << " " << com::toUtf8(names[i + 1]);
    }
    out << ")\n";
}

void describeEnumeration(ITypeInfo& type, std::ostream& out) {
    const TypeAttributes of(type);
    out << "\nenum " << com::toUtf8(documentation(type).name) << " " << shown(of->guid) << "\n";
    for (UINT i = 0; i < of->cVars; ++i) {
        VARDESC* constant = nullptr;
        check(type.GetVarDesc(i, &constant));
        LONG value = 0;
        const HRESULT converted = com::toInt32(*constant->lpvarValue, value);
        const MEMBERID id = constant->memid;
        type.ReleaseVarDesc(constant);
        check(converted);
        out << "  " << com::toUtf8(documentation(type, id).name) << " = " << value << "\n";
    }
}

template <class Filter>
std::vector<Ptr<ITypeInfo>> types(ITypeLib& library, TYPEKIND wanted, Filter filter) {
    std::vector<Ptr<ITypeInfo>> all;
    for (UINT i = 0; i < library.GetTypeInfoCount(); ++i) {
        TYPEKIND kind{};
        check(library.GetTypeInfoType(i, &kind));
        if (kind != wanted) continue;
        Ptr<ITypeInfo> type;
        check(library.GetTypeInfo(i, type.receive()));
        all.push_back(filter(std::move(type)));
    }
    return all;
}

}  // namespace

TypeAttributes::TypeAttributes(ITypeInfo& type) : type_(type) {
    check(type.GetTypeAttr(&attributes_));
}
TypeAttributes::~TypeAttributes() {
    type_.ReleaseTypeAttr(attributes_);
}

Function::Function(ITypeInfo& type, UINT index) : type_(type) {
    check(type.GetFuncDesc(index, &description_));
}
Function::~Function() {
    type_.ReleaseFuncDesc(description_);
}

Ptr<ITypeLib> loadTypeLibrary() {
    Ptr<ITypeLib> library;
    check(LoadTypeLibEx(componentPath().c_str(), REGKIND_NONE, library.receive()));
    return library;
}

std::vector<Ptr<ITypeInfo>> interfaceTypes(ITypeLib& library) {
    return types(library, TKIND_DISPATCH, [](const Ptr<ITypeInfo>& dispatch) {
        // The other face of a dual interface.
        HREFTYPE reference = 0;
        check(dispatch->GetRefTypeOfImplType(static_cast<UINT>(-1), &reference));
        Ptr<ITypeInfo> interfaceType;
        check(dispatch->GetRefTypeInfo(reference, interfaceType.receive()));
        return interfaceType;
    });
}

std::vector<Ptr<ITypeInfo>> classTypes(ITypeLib& library) {
    return types(library, TKIND_COCLASS, [](Ptr<ITypeInfo> type) { return type; });
}

std::vector<Ptr<ITypeInfo>> enumerationTypes(ITypeLib& library) {
    return types(library, TKIND_ENUM, [](Ptr<ITypeInfo> type) { return type; });
}

Documentation documentation(ITypeInfo& type, MEMBERID member) {
    Bstr name;
    Bstr help;
    check(type.GetDocumentation(member, name.receive(), help.receive(), nullptr, nullptr));
    return {std::wstring(name.view()), std::wstring(help.view())};
}

std::vector<std::wstring> memberNames(ITypeInfo& type, MEMBERID member, std::size_t arguments) {
    std::vector<BSTR> raw(arguments + 1);
    UINT count = 0;
    check(type.GetNames(member, raw.data(), static_cast<UINT>(raw.size()), &count));
    std::vector<std::wstring> names;
    for (UINT i = 0; i < count; ++i) names.emplace_back(Bstr::adopt(raw[i]).view());
    return names;
}

std::string describe(ITypeLib& library) {
    std::ostringstream out;
    TLIBATTR* attributes = nullptr;
    check(library.GetLibAttr(&attributes));
    Bstr name;
    check(library.GetDocumentation(MEMBERID_NIL, name.receive(), nullptr, nullptr, nullptr));
    out << "library " << com::toUtf8(name.view()) << " " << shown(attributes->guid) << " "
        << attributes->wMajorVerNum << "." << attributes->wMinorVerNum << "\n";
    library.ReleaseTLibAttr(attributes);
    for (const auto& type : enumerationTypes(library)) describeEnumeration(*type.get(), out);
    for (const auto& type : interfaceTypes(library)) {
        const TypeAttributes of(*type.get());
        out << "\ninterface " << com::toUtf8(documentation(*type.get()).name) << " " << shown(of->guid)
            << (of->wTypeFlags & TYPEFLAG_FDUAL ? " dual" : "")
            << (of->wTypeFlags & TYPEFLAG_FOLEAUTOMATION ? " oleautomation" : "")
            << (of->wTypeFlags & TYPEFLAG_FNONEXTENSIBLE ? " nonextensible" : "") << "\n";
        for (UINT i = 0; i < of->cFuncs; ++i) describeMember(*type.get(), Function(*type.get(), i), out);
    }
    for (const auto& type : classTypes(library)) {
        const TypeAttributes of(*type.get());
        out << "\nclass " << com::toUtf8(documentation(*type.get()).name) << " " << shown(of->guid)
            << (of->wTypeFlags & TYPEFLAG_FCANCREATE ? " creatable" : "") << "\n";
        for (UINT i = 0; i < of->cImplTypes; ++i) {
            HREFTYPE reference = 0;
            INT flags = 0;
            Ptr<ITypeInfo> implemented;
            check(type->GetRefTypeOfImplType(i, &reference));
            check(type->GetImplTypeFlags(i, &flags));
            check(type->GetRefTypeInfo(reference, implemented.receive()));
            out << "  " << (flags & IMPLTYPEFLAG_FDEFAULT ? "default " : "")
                << (flags & IMPLTYPEFLAG_FSOURCE ? "source " : "")
                << com::toUtf8(documentation(*implemented.get()).name) << "\n";
        }
    }
    return out.str();
}

}  // namespace vtdn::test
