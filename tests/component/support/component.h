// The built component, loaded by its path as no registration knows it.
#pragma once

#include <string>

#include "com/platform.h"
#include "com/ptr.h"

namespace vtdn::test {

/// Full path of a file that is named relative to the test program.
std::wstring besideProgram(const std::wstring& relative);

/// The library VTWrapDN, loaded for as long as this object lives.
class Component {
  public:
    /// Throws std::runtime_error when the library cannot be loaded.
    explicit Component(const std::wstring& path);
    ~Component();
    Component(const Component&) = delete;
    Component& operator=(const Component&) = delete;

    [[nodiscard]] HMODULE module() const noexcept { return module_; }
    [[nodiscard]] HRESULT getClassObject(REFCLSID classId, REFIID iid, void** out) const;
    [[nodiscard]] HRESULT canUnloadNow() const;
    /// An export without arguments, as DllRegisterServer.
    [[nodiscard]] HRESULT call(const char* name) const;
    /// A new object of a creatable class. Throws com::Error.
    template <class I>
    [[nodiscard]] com::Ptr<I> create(REFCLSID classId) const {
        com::Ptr<I> object;
        createInstance(classId, __uuidof(I), object.receiveVoid());
        return object;
    }

  private:
    void createInstance(REFCLSID classId, REFIID iid, void** out) const;
    HMODULE module_;
};

/// The library of this test program, loaded on first use, and its path.
Component& component();
std::wstring componentPath();

}  // namespace vtdn::test
