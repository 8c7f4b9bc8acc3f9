// Calls from IDispatch arguments into the vtable.
#include <cstring>

#include "com/array_conversion.h"
#include "com/dispatch_table.h"
#include "com/error.h"
#include "com/safe_array.h"

namespace vtdn::com {
namespace {

bool isMissing(const VARIANT& argument) noexcept {
    return argument.vt == VT_ERROR && argument.scode == DISP_E_PARAMNOTFOUND;
}

bool isObject(const VARIANT& value) noexcept {
    return value.vt == VT_DISPATCH || value.vt == VT_UNKNOWN;
}

/// The variable that a reference to a VARIANT means: a script engine may hand on a reference to a reference.
VARIANT* variableOf(const VARIANT& argument) noexcept {
    VARIANT* variable = argument.pvarVal;
    for (int depth = 0; depth < 4 && variable && variable->vt == (VT_BYREF | VT_VARIANT); ++depth)
        variable = variable->pvarVal;
    return variable;
}

/// The value of an argument: itself, or a shallow copy of what it refers to. Null for what cannot be
/// followed.
const VARIANT* valueOf(const VARIANT& argument, VARIANT& shallow) noexcept {
    const VARIANT* value = &argument;
    if (value->vt == (VT_BYREF | VT_VARIANT)) value = variableOf(argument);
    if (!value || !(value->vt & VT_BYREF)) return value;
    const auto type = static_cast<VARTYPE>(value->vt & ~VT_BYREF);
    if (!value->byref || type == VT_VARIANT || type == VT_RECORD) return nullptr;
    VariantInit(&shallow);
    if (type == VT_DECIMAL) {
        shallow.decVal = *value->pdecVal;
        shallow.vt = type;
        return &shallow;
    }
    shallow.vt = type;
    std::memcpy(&shallow.llVal, value->byref, (type & VT_ARRAY) ? sizeof(void*) : elementSize(type));
    return &shallow;
}

/// Swaps a value with a variable of its type: the old content goes where the value is cleared.
void swapContent(VARIANT& value, void* variable) noexcept {
    VARIANT old = value;
    const std::size_t size = (value.vt & VT_ARRAY) ? sizeof(void*) : elementSize(value.vt);
    std::memcpy(&old.llVal, variable, size);
    std::memcpy(variable, &value.llVal, size);
    value = old;
}

bool isLockedArray(const VARIANT& variable) noexcept {
    return (variable.vt & (VT_ARRAY | VT_BYREF)) == VT_ARRAY && variable.parray &&
           variable.parray->cLocks != 0;
}

void fillException(EXCEPINFO& exception, HRESULT result) noexcept {
    std::memset(&exception, 0, sizeof exception);
    exception.scode = result;
    const Error error = lastError(result);
    if (error.info()) {
        error.info()->GetSource(&exception.bstrSource);
        error.info()->GetDescription(&exception.bstrDescription);
        error.info()->GetHelpFile(&exception.bstrHelpFile);
        error.info()->GetHelpContext(&exception.dwHelpContext);
    }
    if (SysStringLen(exception.bstrDescription) == 0) {
        // What a client would make of the number by itself, had it the text.
        const std::wstring_view text = errorText(errorNumber(result));
        SysFreeString(exception.bstrDescription);
        exception.bstrDescription = SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
    }
}

/// The argument list of one call, and what has to be kept and given back for it.
class Frame {
  public:
    explicit Frame(const Member& member) noexcept : member_(member) {}
    ~Frame() {
        for (std::size_t i = 0; i < heldCount_; ++i)
            if (held_[i].owned) VariantClear(&held_[i].value);
    }
    Frame(const Frame&) = delete;
    Frame& operator=(const Frame&) = delete;

    /// Converts the caller's arguments; `badArgument` is set for one that cannot be.
    HRESULT take(const DISPPARAMS& arguments, UINT* badArgument) noexcept;
    HRESULT call(void* object) noexcept {
        void** slots = *static_cast<void***>(object);
        return member_.call(object, slots[member_.slot], words_);
    }
    /// After a call that succeeded: gives the caller's variables what is theirs, all or none, and moves the
    /// result out.
    HRESULT giveBack(VARIANT* result) noexcept;

  private:
    /// A value that lives for the call, and where it goes afterwards.
    struct Held {
        VARIANT value;
        const Parameter* parameter;
        VARIANT* variable;  ///< of the caller, to be replaced
        SAFEARRAY** array;  ///< an array of VARIANT of the caller, to be replaced
        void* reference;    ///< a variable of the caller of the declared type, to be replaced
        bool owned;
    };

    Held& hold(const Parameter& parameter, VARTYPE type) noexcept {
        Held& held = held_[heldCount_++];
        held.value.vt = type;
        held.value.llVal = 0;
        held.parameter = &parameter;
        held.variable = nullptr;
        held.array = nullptr;
        held.reference = nullptr;
        held.owned = true;
        return held;
    }

    void push(CallWord word) noexcept { words_[wordCount_++] = word; }
    void pushPointer(const void* pointer) noexcept { push(reinterpret_cast<CallWord>(pointer)); }
    void pushValue(const VARIANT& value, const Parameter& parameter) noexcept;
    void pushVariant(const Parameter& parameter, const VARIANT& value) noexcept;
    /// The address of what a by-reference parameter of this type points to.
    void pushContent(const Parameter& parameter, VARIANT& value) noexcept {
        pushPointer(parameter.shape == Shape::variant ? static_cast<void*>(&value) : &value.llVal);
    }

    std::size_t takeExact(const DISPPARAMS& arguments) noexcept;
    HRESULT place(const DISPPARAMS& arguments, UINT* badArgument) noexcept;
    HRESULT takeOne(const Parameter& parameter, VARIANT* argument) noexcept;
    HRESULT takeMissing(const Parameter& parameter) noexcept;
    HRESULT takeValue(const Parameter& parameter, const VARIANT& value) noexcept;
    HRESULT takeReference(const Parameter& parameter, VARIANT& argument) noexcept;
    HRESULT takeVariable(const Parameter& parameter, VARIANT& variable) noexcept;
    /// A copy of `value` as the parameter's type, owned by `out`.
    static HRESULT convertIn(const Parameter& parameter, const VARIANT& value, VARIANT& out) noexcept;
    static HRESULT makeFresh(Held& held) noexcept;

    const Member& member_;
    std::size_t wordCount_ = 0;
    std::size_t heldCount_ = 0;
    Held* result_ = nullptr;
    // Not initialised: only what is counted is looked at.
    CallWord words_[maxCallWords];
    VARIANT* placed_[DispatchTable::maxParameters];
    Held held_[2 * DispatchTable::maxParameters + 1];  // a default text takes two
};

inline void Frame::pushValue(const VARIANT& value, const Parameter& parameter) noexcept {
    if (parameter.size == sizeof(CallWord)) {
        CallWord word;
        std::memcpy(&word, &value.llVal, sizeof word);
        push(word);
    } else if (parameter.size > sizeof(CallWord)) {
        std::memcpy(words_ + wordCount_, &value.llVal, sizeof value.llVal);
        wordCount_ += sizeof value.llVal / sizeof(CallWord);
    } else if (parameter.size == sizeof value.iVal) {
        push(parameter.type == VT_UI2 ? value.uiVal : static_cast<CallWord>(value.iVal));
    } else if (parameter.size == sizeof value.bVal) {
        push(parameter.type == VT_I1 ? static_cast<CallWord>(static_cast<signed char>(value.cVal))
                                     : value.bVal);
    } else {
        push(value.ulVal);
    }
}

void Frame::pushVariant(const Parameter& parameter, const VARIANT& value) noexcept {
    if constexpr (wordsHoldEverything) {
        // By its address; the callee may change what is there, so it gets a copy of its own.
        Held& held = hold(parameter, VT_EMPTY);
        held.value = value;
        held.owned = false;
        pushPointer(&held.value);
    } else {
        std::memcpy(words_ + wordCount_, &value, sizeof value);
        wordCount_ += sizeof value / sizeof(CallWord);
    }
}

HRESULT Frame::place(const DISPPARAMS& arguments, UINT* badArgument) noexcept {
    const auto count = static_cast<UINT>(member_.parameters.size());
    const UINT named = arguments.cNamedArgs;
    const UINT positional = arguments.cArgs - named;
    if (arguments.cArgs > count) return DISP_E_BADPARAMCOUNT;
    if (named == 0 && (positional < member_.required)) return DISP_E_BADPARAMCOUNT;
    for (UINT i = 0; i < positional; ++i) placed_[i] = &arguments.rgvarg[arguments.cArgs - 1 - i];
    for (UINT i = positional; i < count; ++i) placed_[i] = nullptr;
    bool put = !member_.isPut();
    for (UINT i = 0; i < named; ++i) {
        DISPID id = arguments.rgdispidNamedArgs[i];
        if (id == DISPID_PROPERTYPUT && !put) {
            put = true;
            id = static_cast<DISPID>(count) - 1;
        }
        if (id < 0 || id >= static_cast<DISPID>(count) || placed_[id]) {
            if (badArgument) *badArgument = i;
            return DISP_E_PARAMNOTFOUND;
        }
        placed_[id] = &arguments.rgvarg[i];
    }
    // The new value of a property is a named argument.
    return put ? S_OK : DISP_E_PARAMNOTFOUND;
}

/// Takes the arguments from the first on for as long as they stand in their places and are of the declared
/// types; how many those were. That is all of them in most calls.
std::size_t Frame::takeExact(const DISPPARAMS& arguments) noexcept {
    if (member_.isPut() || arguments.cNamedArgs != 0 || arguments.cArgs != member_.parameters.size())
        return 0;
    const Parameter* parameter = member_.parameters.data();
    const VARIANT* argument = arguments.rgvarg + arguments.cArgs;
    for (std::size_t i = 0; i < arguments.cArgs; ++i, ++parameter) {
        --argument;
        if (parameter->byRef || parameter->shape != Shape::value || argument->vt != parameter->type) return i;
        pushValue(*argument, *parameter);
    }
    return arguments.cArgs;
}

HRESULT Frame::take(const DISPPARAMS& arguments, UINT* badArgument) noexcept {
    std::size_t i = takeExact(arguments);
    if (i < member_.parameters.size() || arguments.cArgs != i) {
        const HRESULT placed = place(arguments, badArgument);
        if (FAILED(placed)) return placed;
    }
    for (; i < member_.parameters.size(); ++i) {
        const HRESULT result = takeOne(member_.parameters[i], placed_[i]);
        if (FAILED(result)) {
            if (placed_[i] && badArgument) *badArgument = static_cast<UINT>(placed_[i] - arguments.rgvarg);
            return result;
        }
    }
    if (member_.hasResult) {
        const Parameter& type = member_.result;
        result_ =
            &hold(type, type.shape == Shape::variant ? static_cast<VARTYPE>(VT_EMPTY) : type.fullType());
        pushContent(type, result_->value);
    }
    return S_OK;
}

HRESULT Frame::takeOne(const Parameter& parameter, VARIANT* argument) noexcept {
    if (!argument) return takeMissing(parameter);
    if (!parameter.byRef) {
        if (argument->vt == parameter.type && parameter.shape == Shape::value) [[likely]] {
            pushValue(*argument, parameter);
            return S_OK;
        }
        if (isMissing(*argument) && (parameter.shape != Shape::variant || parameter.hasDefault))
            return takeMissing(parameter);
        VARIANT shallow;
        const VARIANT* value = valueOf(*argument, shallow);
        return value ? takeValue(parameter, *value) : DISP_E_TYPEMISMATCH;
    }
    if (argument->vt & VT_BYREF) return takeReference(parameter, *argument);
    if (isMissing(*argument) && (parameter.shape != Shape::variant || parameter.hasDefault))
        return takeMissing(parameter);
    Held& held = hold(parameter, VT_EMPTY);
    const HRESULT result = convertIn(parameter, *argument, held.value);
    pushContent(parameter, held.value);
    return result;
}

HRESULT Frame::takeMissing(const Parameter& parameter) noexcept {
    if (!parameter.hasDefault && !parameter.optional) return DISP_E_PARAMNOTOPTIONAL;
    VARIANT fallback;
    VariantInit(&fallback);
    if (parameter.hasDefault) {
        fallback = parameter.fallback;
        if (fallback.vt == VT_BSTR) {
            Held& text = hold(parameter, VT_BSTR);
            text.value.bstrVal = SysAllocStringLen(parameter.fallbackText.data(),
                                                   static_cast<UINT>(parameter.fallbackText.size()));
            if (!text.value.bstrVal) return E_OUTOFMEMORY;
            fallback = text.value;
        }
    } else if (parameter.shape == Shape::variant) {
        fallback.vt = VT_ERROR;
        fallback.scode = DISP_E_PARAMNOTFOUND;
    }
    if (!parameter.byRef) return takeValue(parameter, fallback);
    Held& held = hold(parameter, VT_EMPTY);
    const HRESULT result = convertIn(parameter, fallback, held.value);
    pushContent(parameter, held.value);
    return result;
}

HRESULT Frame::takeValue(const Parameter& parameter, const VARIANT& value) noexcept {
    if (parameter.shape == Shape::variant) {
        pushVariant(parameter, value);
        return S_OK;
    }
    const bool asItIs = parameter.shape == Shape::object
                            ? isObject(value) && (!value.punkVal || value.vt == VT_DISPATCH) &&
                                  (!value.punkVal || parameter.iid == IID_IDispatch)
                            : value.vt == parameter.fullType();
    if (asItIs) {
        pushValue(value, parameter);
        return S_OK;
    }
    Held& held = hold(parameter, VT_EMPTY);
    const HRESULT result = convertIn(parameter, value, held.value);
    pushValue(held.value, parameter);
    return result;
}

HRESULT Frame::takeReference(const Parameter& parameter, VARIANT& argument) noexcept {
    if (argument.vt == (VT_BYREF | VT_VARIANT)) {
        VARIANT* variable = variableOf(argument);
        return variable ? takeVariable(parameter, *variable) : DISP_E_TYPEMISMATCH;
    }
    const bool anyPointer = parameter.shape != Shape::object || parameter.iid == IID_IDispatch;
    if (argument.vt == (VT_BYREF | parameter.fullType()) && parameter.in && anyPointer) {
        pushPointer(argument.byref);
        return S_OK;
    }
    if (!argument.byref) return DISP_E_TYPEMISMATCH;
    Held& held = hold(parameter, VT_EMPTY);
    if (argument.vt == (VT_BYREF | parameter.fullType()) ||
        (parameter.shape == Shape::object &&
         (argument.vt == (VT_BYREF | VT_DISPATCH) || argument.vt == (VT_BYREF | VT_UNKNOWN))))
        held.reference = argument.byref;
    else if (parameter.shape == Shape::array && argument.vt == (VT_BYREF | VT_ARRAY | VT_VARIANT))
        held.array = argument.pparray;
    else
        return DISP_E_TYPEMISMATCH;
    VARIANT shallow;
    const VARIANT* value = valueOf(argument, shallow);
    if (!value) return DISP_E_TYPEMISMATCH;
    const HRESULT result = convertIn(parameter, *value, held.value);
    pushContent(parameter, held.value);
    return result;
}

HRESULT Frame::takeVariable(const Parameter& parameter, VARIANT& variable) noexcept {
    if (parameter.shape == Shape::variant && parameter.in) {
        pushPointer(&variable);
        return S_OK;
    }
    // A variable that refers to something of the declared type, or of the only type that scripts have.
    if (variable.vt & VT_BYREF) return takeReference(parameter, variable);
    if (variable.vt == parameter.fullType() && parameter.in && parameter.shape != Shape::object) {
        pushContent(parameter, variable);
        return S_OK;
    }
    if (isLockedArray(variable)) return DISP_E_ARRAYISLOCKED;
    Held& held = hold(parameter, VT_EMPTY);
    held.variable = &variable;
    const HRESULT result = convertIn(parameter, variable, held.value);
    pushContent(parameter, held.value);
    return result;
}

HRESULT Frame::convertIn(const Parameter& parameter, const VARIANT& value, VARIANT& out) noexcept {
    VariantInit(&out);
    switch (parameter.shape) {
        case Shape::value:
            if (parameter.in) return convertArgument(value, parameter.type, out);
            out.vt = parameter.type;
            return S_OK;
        case Shape::variant:
            return parameter.in ? VariantCopy(&out, const_cast<VARIANT*>(&value)) : S_OK;
        case Shape::object: {
            out.vt = parameter.type;
            return parameter.in ? objectArgument(value, parameter.iid, &out.punkVal) : S_OK;
        }
        case Shape::array:
            out.vt = parameter.fullType();
            if (!parameter.in || value.vt == VT_EMPTY) return S_OK;
            if (value.vt == parameter.fullType())
                return value.parray ? SafeArrayCopy(value.parray, &out.parray) : S_OK;
            if (value.vt == (VT_ARRAY | VT_VARIANT))
                return fromVariants(value.parray, parameter.type, parameter.iid, &out.parray);
            if (parameter.type == VT_VARIANT && (value.vt & VT_ARRAY))
                return toVariants(value.parray, static_cast<VARTYPE>(value.vt & ~VT_ARRAY), &out.parray);
            return DISP_E_TYPEMISMATCH;
    }
    return DISP_E_TYPEMISMATCH;
}

/// Brings a held value into the form in which the caller gets it. Everything that can fail happens here.
HRESULT Frame::makeFresh(Held& held) noexcept {
    VARIANT& value = held.value;
    if (held.array && *held.array && isFixed(**held.array) && !value.parray) return DISP_E_ARRAYISLOCKED;
    if (held.reference || held.parameter->shape != Shape::array) return S_OK;
    if (!value.parray) {
        value.vt = VT_EMPTY;
        return S_OK;
    }
    if (value.vt == (VT_ARRAY | VT_VARIANT)) return S_OK;
    SAFEARRAY* variants = nullptr;
    const HRESULT result = toVariants(value.parray, held.parameter->type, &variants);
    if (FAILED(result)) return result;
    VariantClear(&value);
    value.vt = VT_ARRAY | VT_VARIANT;
    value.parray = variants;
    return S_OK;
}

HRESULT Frame::giveBack(VARIANT* result) noexcept {
    for (std::size_t i = 0; i < heldCount_; ++i) {
        Held& held = held_[i];
        if (!held.variable && !held.array && !held.reference) continue;
        const HRESULT made = makeFresh(held);
        if (FAILED(made)) return made;
    }
    if (result && result_) {
        const HRESULT made = makeFresh(*result_);
        if (FAILED(made)) return made;
    }
    HRESULT outcome = S_OK;
    for (std::size_t i = 0; i < heldCount_; ++i) {
        Held& held = held_[i];
        HRESULT given = S_OK;
        if (held.variable) {
            given = VariantClear(held.variable);
            if (SUCCEEDED(given)) std::swap(*held.variable, held.value);
        } else if (held.array) {
            given = replaceVariants(held.array, &held.value.parray);
            held.value.vt = held.value.parray ? VT_ARRAY | VT_VARIANT : VT_EMPTY;
        } else if (held.reference) {
            swapContent(held.value, held.reference);
        }
        if (FAILED(given)) outcome = given;
    }
    if (FAILED(outcome)) return outcome;
    if (result && result_) {
        *result = result_->value;
        result_->owned = false;
    }
    return S_OK;
}

}  // namespace

HRESULT DispatchTable::invoke(void* object, DISPID id, REFIID iid, WORD flags, const DISPPARAMS* arguments,
                              VARIANT* result, EXCEPINFO* exception, UINT* badArgument) const noexcept {
    if (iid != IID_NULL) return DISP_E_UNKNOWNINTERFACE;
    if (!arguments || arguments->cNamedArgs > arguments->cArgs ||
        (arguments->cArgs != 0 && !arguments->rgvarg) ||
        (arguments->cNamedArgs != 0 && !arguments->rgdispidNamedArgs))
        return E_INVALIDARG;
    const Member* member = find(id, flags);
    if (!member) return DISP_E_MEMBERNOTFOUND;
    if (result) result->vt = VT_EMPTY;

    Frame frame(*member);
    const HRESULT taken = frame.take(*arguments, badArgument);
    if (FAILED(taken)) return taken;
    const HRESULT called = frame.call(object);
    if (FAILED(called)) {
        if (!exception) return called;
        fillException(*exception, called);
        return DISP_E_EXCEPTION;
    }
    return frame.giveBack(result);
}

}  // namespace vtdn::com
