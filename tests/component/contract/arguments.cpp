#include "contract/arguments.h"

#include <stdexcept>
#include <utility>

#include "com/error.h"
#include "contract/type_text.h"

namespace vtdn::test {

namespace {

/// The type behind a name, and what kind it is.
std::pair<com::Ptr<ITypeInfo>, TYPEKIND> named(ITypeInfo& owner, const TYPEDESC& type) {
    com::Ptr<ITypeInfo> other;
    com::check(owner.GetRefTypeInfo(type.hreftype, other.receive()));
    const TYPEKIND kind = TypeAttributes(*other.get())->typekind;
    return {std::move(other), kind};
}

bool isInterface(ITypeInfo& owner, const TYPEDESC& type) {
    if (type.vt != VT_USERDEFINED) return false;
    const TYPEKIND kind = named(owner, type).second;
    return kind == TKIND_DISPATCH || kind == TKIND_INTERFACE;
}

/// The automation type of a described type; a pointer becomes by reference, one to an interface an object.
ArgumentType plain(ITypeInfo& owner, const TYPEDESC& type) {
    switch (type.vt) {
        case VT_PTR: {
            if (isInterface(owner, *type.lptdesc)) return {VT_DISPATCH, false, false};
            ArgumentType inner = plain(owner, *type.lptdesc);
            inner.byReference = true;
            return inner;
        }
        case VT_SAFEARRAY:
            return {static_cast<VARTYPE>(VT_ARRAY | plain(owner, *type.lptdesc).type), false, false};
        case VT_I2:
        case VT_I4:
        case VT_R4:
        case VT_R8:
        case VT_DATE:
        case VT_BOOL:
        case VT_BSTR:
        case VT_VARIANT:
            return {type.vt, false, false};
        case VT_USERDEFINED: {
            const auto [other, kind] = named(owner, type);
            if (kind == TKIND_ENUM) return {VT_I4, false, false};
            if (kind == TKIND_ALIAS) return plain(*other.get(), TypeAttributes(*other.get())->tdescAlias);
            throw std::runtime_error("No test argument for a type of kind " + std::to_string(kind));
        }
        default:
            throw std::runtime_error("No test argument for type " + std::to_string(type.vt));
    }
}

}  // namespace

std::vector<ArgumentType> argumentTypes(ITypeInfo& type, const FUNCDESC& member) {
    std::vector<ArgumentType> all;
    for (SHORT i = 0; i < member.cParams; ++i) {
        const ELEMDESC& described = member.lprgelemdescParam[i];
        all.push_back(plain(type, described.tdesc));
        all.back().result = (described.paramdesc.wParamFlags & PARAMFLAG_FRETVAL) != 0;
    }
    return all;
}

Arguments::Arguments(std::vector<ArgumentType> types, Style style)
    : types_(std::move(types)), rooms_(types_.size()), scripted_(types_.size()) {
    // The result stands last, where there is one.
    const std::size_t count = types_.size() - (!types_.empty() && types_.back().result ? 1 : 0);
    reversed_.resize(count);
    for (std::size_t i = 0; i < count; ++i) {
        const ArgumentType& type = types_[i];
        VARIANT& argument = reversed_[count - 1 - i];
        if (style == Style::script) {
            com::Variant& variable = scripted_[i];
            if (type.type & VT_ARRAY) {
                variable.inOut()->parray = SafeArrayCreateVector(VT_VARIANT, 0, 1);
                variable.inOut()->vt = VT_ARRAY | VT_VARIANT;
            }
            argument.vt = VT_BYREF | VT_VARIANT;
            argument.pvarVal = variable.inOut();
        } else if (type.byReference) {
            argument.vt = static_cast<VARTYPE>(VT_BYREF | type.type);
            argument.byref = &rooms_[i];
        } else {
            argument.vt = type.type;
        }
    }
}

Arguments::~Arguments() {
    for (std::size_t i = 0; i < types_.size(); ++i) {
        if (types_[i].type == VT_BSTR) SysFreeString(rooms_[i].text);
        if ((types_[i].type & VT_ARRAY) && rooms_[i].array) SafeArrayDestroy(rooms_[i].array);
        if (types_[i].type == VT_DISPATCH && rooms_[i].object) rooms_[i].object->Release();
    }
}

HRESULT Arguments::callSlot(IUnknown& object, SHORT offset, int nullAt) {
    std::vector<VARIANT> values(types_.size());
    std::vector<VARIANT*> pointers;
    std::vector<VARTYPE> passed;
    for (std::size_t i = 0; i < types_.size(); ++i) {
        values[i] = {};
        if (types_[i].byReference) {
            values[i].vt = static_cast<VARTYPE>(VT_BYREF | types_[i].type);
            values[i].byref = static_cast<int>(i) == nullAt ? nullptr : &rooms_[i];
        } else {
            values[i].vt = types_[i].type;
        }
        pointers.push_back(&values[i]);
        passed.push_back(values[i].vt);
    }
    VARIANT returned{};
    const HRESULT called =
        DispCallFunc(&object, static_cast<ULONG_PTR>(offset), CC_STDCALL, VT_ERROR,
                     static_cast<UINT>(passed.size()), passed.data(), pointers.data(), &returned);
    return FAILED(called) ? called : returned.scode;
}

com::Variant Arguments::result() const {
    com::Variant result;
    for (std::size_t i = 0; i < types_.size(); ++i) {
        if (!types_[i].result) continue;
        if ((types_[i].type & VT_ARRAY) && !rooms_[i].array) continue;
        VARIANT by{};
        by.vt = static_cast<VARTYPE>(VT_BYREF | types_[i].type);
        by.byref = const_cast<Room*>(&rooms_[i]);
        VariantCopyInd(result.receive(), &by);
    }
    return result;
}

}  // namespace vtdn::test
