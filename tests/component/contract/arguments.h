// Arguments for any member of the type library, made from its description.
#pragma once

#include <string>
#include <vector>

#include "com/platform.h"
#include "com/variant.h"

namespace vtdn::test {

/// One argument of a member, without the pointers around it.
struct ArgumentType {
    VARTYPE type;  ///< VT_I4, VT_BSTR, VT_DISPATCH, ... or VT_ARRAY | the element's type
    bool byReference;
    bool result;  ///< the [retval]
};
std::vector<ArgumentType> argumentTypes(ITypeInfo& type, const FUNCDESC& member);

/// How a late-bound client writes its arguments.
enum class Style {
    typed,   ///< the exact types; by-reference ones as VT_BYREF | type
    script,  ///< every one as VT_BYREF | VT_VARIANT; arrays as arrays of VARIANT
};

/// Zeros, empty texts, no objects and arrays that hold nothing, alive as long as this object.
class Arguments {
  public:
    Arguments(std::vector<ArgumentType> types, Style style);
    ~Arguments();
    Arguments(const Arguments&) = delete;
    Arguments& operator=(const Arguments&) = delete;

    /// For Invoke: without the result, last argument first.
    [[nodiscard]] std::vector<VARIANT>& forInvoke() { return reversed_; }

    /// Calls a vtable slot of the object with these arguments, result included. The by-reference argument
    /// with the index `nullAt` is a null pointer; none when it is negative.
    HRESULT callSlot(IUnknown& object, SHORT offset, int nullAt = -1);
    /// The result of the last callSlot as a variant; Empty for no array.
    [[nodiscard]] com::Variant result() const;
    [[nodiscard]] const std::vector<ArgumentType>& types() const { return types_; }

  private:
    /// Room for any value that a pointer argument can point to.
    union Room {
        LONGLONG bits;
        BSTR text;
        SAFEARRAY* array;
        IDispatch* object;
    };
    std::vector<ArgumentType> types_;
    std::vector<Room> rooms_;  // as many as arguments, never moved
    std::vector<com::Variant> scripted_;
    std::vector<VARIANT> reversed_;
};

}  // namespace vtdn::test
