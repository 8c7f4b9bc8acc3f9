// The members of one interface as plain tables, copied out of its type description once: names to ids in one
// hash probe, and calls from IDispatch arguments straight into the vtable. Holds no COM object.
//
// Arguments. Every argument is converted to its declared type in the user's locale; puArgErr names the one
// that cannot be. An argument that is declared by reference is
//   - passed as it is when the caller's reference has exactly the declared type;
//   - converted in, and converted back after a call that succeeded, when the caller's reference is to a
//   VARIANT or to
//     an array of VARIANT, which is all that script engines have. Arrays come back as arrays of VARIANT,
//     because scripts index no others, and no array as Empty; a variable that held the declared type before
//     keeps it;
//   - given a temporary when the caller passed a plain value.
// After a call that failed, the caller's variables hold what they held before, or what the callee had stored
// by then. Empty stands for no array. The arrays of objects that are converted hold objects of the declared
// interface.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "com/platform.h"
#include "com/slot_call.h"

namespace vtdn::com {

/// How an argument travels.
enum class Shape : std::uint8_t {
    value,    ///< a number, boolean, date or text
    variant,  ///< any of them
    object,   ///< an interface pointer
    array,    ///< a SAFEARRAY
};

/// A declared parameter.
struct Parameter {
    std::wstring name;
    Shape shape = Shape::value;
    VARTYPE type =
        VT_EMPTY;         ///< of the value or the elements; VT_DISPATCH or VT_UNKNOWN for interface pointers
    IID iid = GUID_NULL;  ///< of the pointers
    std::uint8_t size = 0;  ///< bytes of the type
    bool byRef = false;
    bool in = false;
    bool optional = false;
    bool hasDefault = false;
    VARIANT fallback{};  ///< the default; a text is in fallbackText
    std::wstring fallbackText;

    /// The VARTYPE of the argument without VT_BYREF.
    [[nodiscard]] VARTYPE fullType() const noexcept {
        return static_cast<VARTYPE>(shape == Shape::array ? type | VT_ARRAY : type);
    }
};

/// A declared member.
struct Member {
    DISPID id = DISPID_UNKNOWN;
    WORD kind = 0;      ///< one of the DISPATCH_ flags
    unsigned slot = 0;  ///< index in the vtable
    SlotCaller call = nullptr;
    std::vector<Parameter> parameters;  ///< without the result
    unsigned required = 0;              ///< parameters up to the last that cannot be left out
    bool hasResult = false;
    Parameter result;

    [[nodiscard]] bool isPut() const noexcept {
        return (kind & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) != 0;
    }
};

class DispatchTable {
  public:
    /// The most parameters that a member can have.
    static constexpr std::size_t maxParameters = 32;

    /// Copies the description of a dual interface that derives from IDispatch. Throws a failure of the
    /// description, and DISP_E_BADVARTYPE for a parameter type that late binding cannot pass.
    explicit DispatchTable(ITypeInfo* description);

    /// IDispatch::GetIDsOfNames: ids[0] is the member, the others are its arguments. Every unknown name gives
    /// DISPID_UNKNOWN in its place, and the result DISP_E_UNKNOWNNAME.
    HRESULT idsOfNames(REFIID iid, LPOLESTR* names, UINT count, DISPID* ids) const noexcept;

    /// IDispatch::Invoke on an object that implements the interface. A member's failure is DISP_E_EXCEPTION
    /// with `exception` filled from the error info; when the caller has no EXCEPINFO, it is the member's own
    /// HRESULT and the error info stays on the thread.
    HRESULT invoke(void* object, DISPID id, REFIID iid, WORD flags, const DISPPARAMS* arguments,
                   VARIANT* result, EXCEPINFO* exception, UINT* badArgument) const noexcept;

    [[nodiscard]] const std::vector<Member>& members() const noexcept { return members_; }

  private:
    /// A slot of the hash table. Members of one name (get and put) share one, because they share an id.
    struct Name {
        std::uint32_t hash = 0;
        DISPID id = DISPID_UNKNOWN;
        std::wstring folded;  ///< empty: a free slot
    };

    void addName(std::wstring_view name, DISPID id);
    [[nodiscard]] DISPID memberId(const wchar_t* name) const noexcept;
    [[nodiscard]] DISPID argumentId(DISPID member, const wchar_t* name) const noexcept;
    [[nodiscard]] const Member* find(DISPID id, WORD flags) const noexcept;
    /// Index of the first member with this id, or of the next one.
    [[nodiscard]] std::size_t firstWith(DISPID id) const noexcept;

    std::vector<Member> members_;  ///< in the order of their ids
    std::vector<DISPID> ids_;      ///< the id of each, side by side for the search
    std::vector<Name> names_;      ///< open addressing, a power of two of slots, at most half of them taken
};

}  // namespace vtdn::com
