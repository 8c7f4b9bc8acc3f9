// The component's type library in words: one line for each enumeration, interface, member
// and class.
#pragma once

#include <string>
#include <vector>

#include "com/platform.h"
#include "com/ptr.h"

namespace vtdn::test {

/// The type library inside the built component.
com::Ptr<ITypeLib> loadTypeLibrary();

/// The interface types of the library: what a dual interface is behind its dispatch face, vtable included.
std::vector<com::Ptr<ITypeInfo>> interfaceTypes(ITypeLib& library);
/// The class types of the library.
std::vector<com::Ptr<ITypeInfo>> classTypes(ITypeLib& library);
/// The enumerations of the library.
std::vector<com::Ptr<ITypeInfo>> enumerationTypes(ITypeLib& library);

/// A type's or a library's name and helpstring.
struct Documentation {
    std::wstring name;
    std::wstring help;
};
Documentation documentation(ITypeInfo& type, MEMBERID member = MEMBERID_NIL);

/// Names of a member and its arguments.
std::vector<std::wstring> memberNames(ITypeInfo& type, MEMBERID member, std::size_t arguments);

/// The whole library, line by line. Vtable places are counted in slots, so that 32 and 64 bits say the same.
std::string describe(ITypeLib& library);

/// Holds a TYPEATTR or a FUNCDESC.
class TypeAttributes {
  public:
    explicit TypeAttributes(ITypeInfo& type);
    ~TypeAttributes();
    TypeAttributes(const TypeAttributes&) = delete;
    TypeAttributes& operator=(const TypeAttributes&) = delete;
    const TYPEATTR* operator->() const { return attributes_; }

  private:
    ITypeInfo& type_;
    TYPEATTR* attributes_ = nullptr;
};
class Function {
  public:
    Function(ITypeInfo& type, UINT index);
    ~Function();
    Function(const Function&) = delete;
    Function& operator=(const Function&) = delete;
    const FUNCDESC* operator->() const { return description_; }

  private:
    ITypeInfo& type_;
    FUNCDESC* description_ = nullptr;
};

}  // namespace vtdn::test
