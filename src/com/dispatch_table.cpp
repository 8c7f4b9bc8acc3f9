#include "com/dispatch_table.h"

#include <algorithm>
#include <utility>

#include "com/error.h"
#include "com/ptr.h"
#include "com/safe_array.h"
#include "com/strings.h"

namespace vtdn::com {
namespace {

// Names of members are ASCII in practice, and names that are not match by their own case.
constexpr wchar_t fold(wchar_t c) noexcept {
    return c >= L'A' && c <= L'Z' ? static_cast<wchar_t>(c + 32) : c;
}

constexpr std::uint32_t hashSeed = 2166136261U;
constexpr std::uint32_t addToHash(std::uint32_t hash, wchar_t folded) noexcept {
    return (hash ^ static_cast<std::uint32_t>(folded)) * 16777619U;
}
constexpr std::uint32_t place(std::uint32_t hash) noexcept {
    return hash ^ (hash >> 15);
}

/// Whether a folded name and a caller's spelling are one name.
bool sameName(std::wstring_view folded, const wchar_t* name) noexcept {
    for (const wchar_t c : folded)
        if (fold(*name++) != c) return false;  // a shorter name ends here at its NUL
    return *name == L'\0';
}

std::wstring folded(std::wstring_view name) {
    std::wstring text(name);
    std::transform(text.begin(), text.end(), text.begin(), fold);
    return text;
}

/// Attributes of a type, released with their owner.
class Attributes {
  public:
    explicit Attributes(ITypeInfo* info) : info_(info) { check(info->GetTypeAttr(&attributes_)); }
    ~Attributes() { info_->ReleaseTypeAttr(attributes_); }
    Attributes(const Attributes&) = delete;
    Attributes& operator=(const Attributes&) = delete;
    const TYPEATTR* operator->() const noexcept { return attributes_; }

  private:
    ITypeInfo* info_;
    TYPEATTR* attributes_ = nullptr;
};

class Function {
  public:
    Function(ITypeInfo* info, UINT index) : info_(info) { check(info->GetFuncDesc(index, &function_)); }
    ~Function() { info_->ReleaseFuncDesc(function_); }
    Function(const Function&) = delete;
    Function& operator=(const Function&) = delete;
    const FUNCDESC* operator->() const noexcept { return function_; }

  private:
    ITypeInfo* info_;
    FUNCDESC* function_ = nullptr;
};

Ptr<ITypeInfo> referred(ITypeInfo* info, HREFTYPE reference) {
    Ptr<ITypeInfo> other;
    check(info->GetRefTypeInfo(reference, other.receive()));
    return other;
}

/// Reads a type into a parameter. Pointers are counted on the way: an interface pointer has one of its own,
/// so that one more than the type itself needs means "by reference".
class TypeReader {
  public:
    explicit TypeReader(Parameter& parameter) : parameter_(parameter) {}

    void read(ITypeInfo* info, const TYPEDESC& type) {
        const unsigned own = leaf(info, type);
        if (pointers_ < own || pointers_ > own + 1) throwError(DISP_E_BADVARTYPE);
        parameter_.byRef = pointers_ == own + 1;
        parameter_.size = static_cast<std::uint8_t>(elementSize(parameter_.fullType()));
    }

  private:
    /// Returns the number of pointers that the type itself has.
    unsigned leaf(ITypeInfo* info, const TYPEDESC& type) {
        switch (type.vt) {
            case VT_PTR:
                ++pointers_;
                return leaf(info, *type.lptdesc);
            case VT_USERDEFINED:
                return named(info, type.hreftype);
            case VT_SAFEARRAY: {
                Parameter element;
                TypeReader(element).read(info, *type.lptdesc);
                if (element.shape == Shape::array || element.byRef || element.type == VT_DECIMAL)
                    throwError(DISP_E_BADVARTYPE);
                parameter_.shape = Shape::array;
                parameter_.type = element.type;
                parameter_.iid = element.iid;
                return 0;
            }
            case VT_VARIANT:
                return plain(Shape::variant, VT_VARIANT);
            case VT_DISPATCH:
                parameter_.iid = IID_IDispatch;
                return plain(Shape::object, VT_DISPATCH);
            case VT_UNKNOWN:
                parameter_.iid = IID_IUnknown;
                return plain(Shape::object, VT_UNKNOWN);
            case VT_INT:
                return plain(Shape::value, VT_I4);
            case VT_UINT:
                return plain(Shape::value, VT_UI4);
            case VT_I1:
            case VT_I2:
            case VT_I4:
            case VT_I8:
            case VT_UI1:
            case VT_UI2:
            case VT_UI4:
            case VT_UI8:
            case VT_R4:
            case VT_R8:
            case VT_CY:
            case VT_DATE:
            case VT_BOOL:
            case VT_BSTR:
                return plain(Shape::value, type.vt);
            default:
                throwError(DISP_E_BADVARTYPE);
        }
    }

    unsigned named(ITypeInfo* info, HREFTYPE reference) {
        const Ptr<ITypeInfo> type = referred(info, reference);
        const Attributes attributes(type.get());
        switch (attributes->typekind) {
            case TKIND_ENUM:
                return plain(Shape::value, VT_I4);
            case TKIND_ALIAS:
                return leaf(type.get(), attributes->tdescAlias);
            case TKIND_DISPATCH:
            case TKIND_INTERFACE: {
                const bool dispatch = attributes->typekind == TKIND_DISPATCH ||
                                      (attributes->wTypeFlags & TYPEFLAG_FDISPATCHABLE) != 0 ||
                                      attributes->guid == IID_IDispatch;
                parameter_.iid = attributes->guid;
                plain(Shape::object, dispatch ? VT_DISPATCH : VT_UNKNOWN);
                return 1;
            }
            default:
                throwError(DISP_E_BADVARTYPE);
        }
    }

    unsigned plain(Shape shape, VARTYPE type) noexcept {
        parameter_.shape = shape;
        parameter_.type = type;
        return 0;
    }

    Parameter& parameter_;
    unsigned pointers_ = 0;
};

Parameter readParameter(ITypeInfo* info, const ELEMDESC& element) {
    Parameter parameter;
    TypeReader(parameter).read(info, element.tdesc);
    const USHORT flags = element.paramdesc.wParamFlags;
    parameter.in = (flags & PARAMFLAG_FIN) != 0 || (flags & PARAMFLAG_FOUT) == 0;
    parameter.optional = (flags & PARAMFLAG_FOPT) != 0;
    if ((flags & PARAMFLAG_FHASDEFAULT) != 0 && element.paramdesc.pparamdescex) {
        const VARIANT& value = element.paramdesc.pparamdescex->varDefaultValue;
        parameter.hasDefault = true;
        if (value.vt == VT_BSTR)
            parameter.fallbackText = view(value.bstrVal);
        else
            parameter.fallback = value;
        parameter.fallback.vt = value.vt;
    }
    return parameter;
}

std::size_t wordsOf(const Parameter& parameter) noexcept {
    if (wordsHoldEverything || parameter.byRef) return 1;
    if (parameter.shape == Shape::variant) return sizeof(VARIANT) / sizeof(CallWord);
    if (parameter.shape != Shape::value) return 1;
    switch (parameter.type) {
        case VT_R8:
        case VT_DATE:
        case VT_CY:
        case VT_I8:
        case VT_UI8:
            return 2;
        default:
            return 1;
    }
}

bool isFloat(const Parameter& parameter) noexcept {
    return parameter.shape == Shape::value && !parameter.byRef &&
           (parameter.type == VT_R4 || parameter.type == VT_R8 || parameter.type == VT_DATE);
}

Member readMember(ITypeInfo* info, const FUNCDESC& function) {
    Member member;
    member.id = function.memid;
    member.kind = static_cast<WORD>(function.invkind);
    member.slot = static_cast<unsigned>(function.oVft) / sizeof(void*);
    for (SHORT i = 0; i < function.cParams; ++i) {
        const ELEMDESC& element = function.lprgelemdescParam[i];
        Parameter parameter = readParameter(info, element);
        if ((element.paramdesc.wParamFlags & PARAMFLAG_FRETVAL) != 0) {
            member.hasResult = true;
            member.result = std::move(parameter);
        } else {
            if (!parameter.optional && !parameter.hasDefault)
                member.required = static_cast<unsigned>(member.parameters.size()) + 1;
            member.parameters.push_back(std::move(parameter));
        }
    }

    std::size_t words = member.hasResult ? 1 : 0;
    std::size_t floats = 0;
    for (std::size_t i = 0; i < member.parameters.size(); ++i) {
        words += wordsOf(member.parameters[i]);
        if (i < 3 && isFloat(member.parameters[i])) floats |= std::size_t{1} << i;
    }
    if (member.parameters.size() > DispatchTable::maxParameters || words > maxCallWords)
        throwError(DISP_E_BADPARAMCOUNT);
    member.call = slotCaller(floats, words);

    std::vector<BSTR> names(static_cast<std::size_t>(function.cParams) + 1);
    UINT found = 0;
    check(info->GetNames(function.memid, names.data(), static_cast<UINT>(names.size()), &found));
    for (UINT i = 0; i < found; ++i) {
        const Bstr name = Bstr::adopt(names[i]);
        if (i > 0 && i <= member.parameters.size()) member.parameters[i - 1].name = folded(name.view());
    }
    return member;
}

}  // namespace

DispatchTable::DispatchTable(ITypeInfo* description) {
    // A dual interface is described twice; the view as an interface has the slots and the results.
    Ptr<ITypeInfo> info(description);
    if (Attributes(info.get())->typekind == TKIND_DISPATCH) {
        HREFTYPE reference = 0;
        check(info->GetRefTypeOfImplType(static_cast<UINT>(-1), &reference));
        info = referred(description, reference);
    }
    const Attributes attributes(info.get());
    std::size_t slots = 16;
    while (slots < attributes->cFuncs * std::size_t{2}) slots *= 2;
    names_.resize(slots);
    for (UINT i = 0; i < attributes->cFuncs; ++i) {
        const Function function(info.get(), i);
        members_.push_back(readMember(info.get(), *function.operator->()));
        Bstr name;
        check(info->GetDocumentation(function->memid, name.receive(), nullptr, nullptr, nullptr));
        addName(name.view(), function->memid);
    }
    std::stable_sort(members_.begin(), members_.end(),
                     [](const Member& a, const Member& b) { return a.id < b.id; });
    for (const Member& member : members_) ids_.push_back(member.id);
}

void DispatchTable::addName(std::wstring_view name, DISPID id) {
    std::wstring text = folded(name);
    std::uint32_t hash = hashSeed;
    for (const wchar_t c : text) hash = addToHash(hash, c);
    std::size_t i = place(hash) & (names_.size() - 1);
    while (!names_[i].folded.empty()) {
        if (names_[i].folded == text) return;  // the other accessor of a property
        i = (i + 1) & (names_.size() - 1);
    }
    names_[i] = Name{hash, id, std::move(text)};
}

DISPID DispatchTable::memberId(const wchar_t* name) const noexcept {
    std::uint32_t hash = hashSeed;
    for (const wchar_t* c = name; *c != L'\0'; ++c) hash = addToHash(hash, fold(*c));
    const std::size_t mask = names_.size() - 1;
    for (std::size_t i = place(hash) & mask; !names_[i].folded.empty(); i = (i + 1) & mask)
        if (names_[i].hash == hash && sameName(names_[i].folded, name)) return names_[i].id;
    return DISPID_UNKNOWN;
}

std::size_t DispatchTable::firstWith(DISPID id) const noexcept {
    return static_cast<std::size_t>(std::lower_bound(ids_.begin(), ids_.end(), id) - ids_.begin());
}

DISPID DispatchTable::argumentId(DISPID member, const wchar_t* name) const noexcept {
    for (std::size_t i = firstWith(member); i < members_.size() && ids_[i] == member; ++i) {
        const std::vector<Parameter>& parameters = members_[i].parameters;
        for (std::size_t p = 0; p < parameters.size(); ++p)
            if (!parameters[p].name.empty() && sameName(parameters[p].name, name))
                return static_cast<DISPID>(p);
    }
    return DISPID_UNKNOWN;
}

HRESULT DispatchTable::idsOfNames(REFIID iid, LPOLESTR* names, UINT count, DISPID* ids) const noexcept {
    if (iid != IID_NULL) return DISP_E_UNKNOWNINTERFACE;
    if (!names || !ids || count == 0) return E_INVALIDARG;
    HRESULT result = S_OK;
    for (UINT i = 0; i < count; ++i) {
        if (!names[i])
            ids[i] = DISPID_UNKNOWN;
        else if (i == 0)
            ids[i] = memberId(names[i]);
        else
            ids[i] = ids[0] == DISPID_UNKNOWN ? DISPID_UNKNOWN : argumentId(ids[0], names[i]);
        if (ids[i] == DISPID_UNKNOWN) result = DISP_E_UNKNOWNNAME;
    }
    return result;
}

const Member* DispatchTable::find(DISPID id, WORD flags) const noexcept {
    const Member* found = nullptr;
    for (std::size_t i = firstWith(id); i < members_.size() && ids_[i] == id; ++i) {
        const Member& member = members_[i];
        if ((member.kind & flags) == 0) continue;
        // A caller that leaves open how to put means the reference when there is one.
        if (!found || member.kind == DISPATCH_PROPERTYPUTREF) found = &member;
    }
    return found;
}

}  // namespace vtdn::com
