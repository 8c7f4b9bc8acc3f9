// Self-registration of a DLL's class table: classes with their names, type libraries with the interfaces in
// them.
//
//     STDAPI DllRegisterServer() { return com::registerServer(classes, com::Scope::machine); }
//     STDAPI DllUnregisterServer() { return com::unregisterServer(classes, com::Scope::machine); }
//     STDAPI DllInstall(BOOL install, PCWSTR what) { return com::install(classes, install, what); }
#pragma once

#include <span>

#include "com/class_factory.h"

namespace vtdn::com {

/// Whom a registration is for: everybody (HKEY_LOCAL_MACHINE), or the current user (HKEY_CURRENT_USER).
enum class Scope { machine, user };

/// Writes the classes under Software\Classes (threading model: apartment; path of this module's file) and
/// registers their type libraries. All or nothing: on a failure, what was written is taken out again and the
/// failure returned.
HRESULT registerServer(std::span<const ClassEntry> classes, Scope scope) noexcept;

/// Takes out what registerServer() wrote. A class or library that another file has registered meanwhile
/// stays; what is not there is no failure.
HRESULT unregisterServer(std::span<const ClassEntry> classes, Scope scope) noexcept;

/// DllInstall: `what` is "user" for the current user, null or empty for everybody; anything else is
/// E_INVALIDARG.
HRESULT install(std::span<const ClassEntry> classes, BOOL install, const wchar_t* what) noexcept;

}  // namespace vtdn::com
