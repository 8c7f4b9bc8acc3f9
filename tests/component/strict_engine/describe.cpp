#include "strict_engine/describe.h"

#include <charconv>
#include <string>

#include "com/strings.h"
#include "com/variant.h"
#include "strict_engine/script.h"

namespace vtdn::fake {

std::string joined(std::initializer_list<std::string_view> parts) {
    std::string text;
    for (const std::string_view part : parts) text += part;
    return text;
}

std::string number(double value) {
    char text[64];
    return {text, std::to_chars(text, text + sizeof text, value).ptr};
}
std::string number(float value) {
    char text[64];
    return {text, std::to_chars(text, text + sizeof text, value).ptr};
}
std::string number(LONG value) {
    return std::to_string(value);
}
std::string quoted(BSTR text) {
    return joined({"'", com::toUtf8(com::view(text)), "'"});
}
const char* boolean(VARIANT_BOOL value) {
    return value == VARIANT_TRUE    ? "True"
           : value == VARIANT_FALSE ? "False"
                                    : "a boolean other than 0 and -1";
}

namespace {

/// An array with its bounds; `element` describes the element at an index.
template <class Element>
std::string described(SAFEARRAY* array, VARTYPE expected, Element element) {
    if (!array) return "no array";
    VARTYPE type = VT_EMPTY;
    LONG lower = 0;
    LONG upper = -1;
    if (FAILED(SafeArrayGetVartype(array, &type)) || type != expected || SafeArrayGetDim(array) != 1 ||
        FAILED(SafeArrayGetLBound(array, 1, &lower)) || FAILED(SafeArrayGetUBound(array, 1, &upper))) {
        return "an array of another kind";
    }
    std::string text = joined({"[", number(lower), "..", number(upper), ":"});
    for (LONG i = lower; i <= upper; ++i) {
        text += i == lower ? " " : ", ";
        text += element(i);
    }
    return text + "]";
}

std::string describeNumbers(SAFEARRAY* array) {
    return "I4" + described(array, VT_I4, [array](LONG i) -> std::string {
               LONG element = 0;
               if (FAILED(SafeArrayGetElement(array, &i, &element))) return "unreadable";
               return number(element);
           });
}

}  // namespace

std::string describe(const VARIANT& value, const Script& script) {
    switch (value.vt) {
        case VT_EMPTY:
            return "Empty";
        case VT_NULL:
            return "Null";
        case VT_I2:
            return joined({"I2 ", std::to_string(value.iVal)});
        case VT_I4:
            return joined({"I4 ", number(value.lVal)});
        case VT_R4:
            return joined({"R4 ", number(value.fltVal)});
        case VT_R8:
            return joined({"R8 ", number(value.dblVal)});
        case VT_DATE:
            return joined({"Date ", number(value.date)});
        case VT_BOOL:
            return joined({"Bool ", boolean(value.boolVal)});
        case VT_BSTR:
            return joined({"BSTR ", quoted(value.bstrVal)});
        case VT_DISPATCH:
            return joined({"Dispatch ", script.nameOf(value.pdispVal)});
        case VT_ARRAY | VT_VARIANT:
            return describe(value.parray, script);
        case VT_ARRAY | VT_I4:
            return describeNumbers(value.parray);
        default:
            return joined({"type ", std::to_string(value.vt)});
    }
}

std::string describe(SAFEARRAY* array, const Script& script) {
    return described(array, VT_VARIANT, [array, &script](LONG i) -> std::string {
        com::Variant element;
        if (FAILED(SafeArrayGetElement(array, &i, element.receive()))) return "unreadable";
        return describe(element.get(), script);
    });
}

}  // namespace vtdn::fake
