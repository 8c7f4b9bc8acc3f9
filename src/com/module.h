// The DLL (or program) that this code is linked into: what keeps it loaded, where it lies, its type
// libraries.
#pragma once

#include <string>

#include "com/platform.h"
#include "com/ptr.h"

namespace vtdn::com::module {

/// Every object and every LockServer(TRUE) keeps the module loaded.
void lock() noexcept;
void unlock() noexcept;
[[nodiscard]] bool isLocked() noexcept;

[[nodiscard]] HINSTANCE handle() noexcept;
/// Full path of the module's file.
[[nodiscard]] std::wstring path();

/// The type library with the given resource id (from 1), loaded from the module's own file, so that nothing
/// needs registration before it works.
[[nodiscard]] Ptr<ITypeLib> typeLibrary(unsigned resource);
/// The description of an interface or a class, from whichever of the module's type libraries (resources 1, 2,
/// ...) has it. TYPE_E_ELEMENTNOTFOUND when none has.
[[nodiscard]] Ptr<ITypeInfo> typeInfo(REFGUID id);

}  // namespace vtdn::com::module
