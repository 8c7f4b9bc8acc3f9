// Base of every COM object: reference count, QueryInterface, error info support, class information.
//
//     class Wrapper final : public com::Object<Wrapper, _Wrapper> {
//       public:
//         static constexpr const CLSID& classId = CLSID_Wrapper;  // where the type library has a coclass
//         HRESULT STDMETHODCALLTYPE Name(BSTR* result) noexcept override {
//             return com::guard(L"VTWrapDN.Wrapper", __uuidof(_Wrapper), [&] { ... });
//         }
//     };
//     com::Ptr<Wrapper> w = com::make<Wrapper>(arguments...);
#pragma once

#include <atomic>
#include <type_traits>
#include <utility>

#include "com/dispatch.h"
#include "com/guard.h"
#include "com/module.h"
#include "com/platform.h"
#include "com/ptr.h"

namespace vtdn::com {

/// An interface with IDispatch gets its four methods from the type library; any other is implemented as it
/// is.
template <class I>
using Implements = std::conditional_t<std::is_base_of_v<IDispatch, I>, Dual<I>, I>;

/// The id of an interface. A class that implements one for others to derive from names it as its
/// `interfaceId`.
template <class I>
constexpr const IID& interfaceId() noexcept {
    if constexpr (requires { I::interfaceId; })
        return I::interfaceId;
    else
        return __uuidof(I);
}

/// Counts the objects that keep the module loaded. First base, so that it outlives the rest of an object.
class KeepsModule {
  protected:
    KeepsModule() noexcept { module::lock(); }
    ~KeepsModule() { module::unlock(); }
    KeepsModule(const KeepsModule&) = delete;
    KeepsModule& operator=(const KeepsModule&) = delete;
};

/// Implements `Interfaces`, the default one first: it also answers for IUnknown and, when it is a dual
/// interface, for IDispatch. An interface that no type library lists is private: it is answered within the
/// apartment only, because nothing marshals it (see own_object.h).
///
/// Optional members of Derived, static: `classId` (a CLSID of the type library) answers IProvideClassInfo;
/// `eventsId` (the IID of its default source interface) answers IProvideClassInfo2 as well.
template <class Derived, class... Interfaces>
class Object : private KeepsModule,
               public Implements<Interfaces>...,
               public ISupportErrorInfo,
               public IProvideClassInfo2 {
    template <class I, class...>
    struct Head {
        using Type = I;
    };
    using First = typename Head<Interfaces...>::Type;

  public:
    Object(const Object&) = delete;
    Object& operator=(const Object&) = delete;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) noexcept override {
        if (!object) return E_POINTER;
        *object = find(iid);
        if (!*object) return E_NOINTERFACE;
        AddRef();
        return S_OK;
    }

    /// The object as IUnknown, without a reference.
    [[nodiscard]] IUnknown* unknown() noexcept { return static_cast<First*>(this); }

    // Interlocked: an apartment's objects are called on its thread, but a client that releases on another one
    // by mistake should not corrupt the count.
    ULONG STDMETHODCALLTYPE AddRef() noexcept override {
        return references_.fetch_add(1, std::memory_order_relaxed) + 1;
    }
    ULONG STDMETHODCALLTYPE Release() noexcept override {
        const ULONG left = references_.fetch_sub(1, std::memory_order_acq_rel) - 1;
        if (left == 0) {
            // What the destructor calls may take and give back references: not a second last one.
            references_.store(destroying, std::memory_order_relaxed);
            delete this;
        }
        return left;
    }

    HRESULT STDMETHODCALLTYPE InterfaceSupportsErrorInfo(REFIID iid) noexcept override {
        return (... || (iid == interfaceId<Interfaces>())) ? S_OK : S_FALSE;
    }

    HRESULT STDMETHODCALLTYPE GetClassInfo(ITypeInfo** info) noexcept override {
        if (!info) return E_POINTER;
        *info = nullptr;
        if constexpr (requires { Derived::classId; })
            return guard(L"", IID_IProvideClassInfo,
                         [&] { module::typeInfo(Derived::classId).detachTo(info); });
        else
            return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE GetGUID(DWORD kind, GUID* id) noexcept override {
        if (!id) return E_POINTER;
        *id = GUID_NULL;
        if (kind != GUIDKIND_DEFAULT_SOURCE_DISP_IID) return E_INVALIDARG;
        if constexpr (requires { Derived::eventsId; }) {
            *id = Derived::eventsId;
            return S_OK;
        } else {
            return E_NOTIMPL;
        }
    }

  protected:
    Object() = default;  // an interface that comes with its methods may throw here
    virtual ~Object() = default;

  private:
    static constexpr ULONG destroying = 0x40000000;

    void* find(REFIID iid) noexcept {
        void* found = nullptr;
        if ((... ||
             (iid == interfaceId<Interfaces>() && (found = static_cast<Interfaces*>(this)) != nullptr)))
            return found;
        if (iid == IID_IUnknown) return unknown();
        if constexpr (std::is_base_of_v<IDispatch, First>)
            if (iid == IID_IDispatch) return static_cast<IDispatch*>(static_cast<First*>(this));
        if (iid == IID_ISupportErrorInfo) return static_cast<ISupportErrorInfo*>(this);
        if constexpr (requires { Derived::classId; })
            if (iid == IID_IProvideClassInfo) return static_cast<IProvideClassInfo*>(this);
        if constexpr (requires { Derived::eventsId; })
            if (iid == IID_IProvideClassInfo2) return static_cast<IProvideClassInfo2*>(this);
        return nullptr;
    }

    std::atomic<ULONG> references_{1};
};

/// Makes an object and returns its first reference. In two steps, so that code that runs while it is being
/// made can take references without ending it: the constructor, which should pass the object to nobody, and
/// then its member `created()`, when it has one. What either throws releases the object.
template <class T, class... Arguments>
[[nodiscard]] Ptr<T> make(Arguments&&... arguments) {
    Ptr<T> object = Ptr<T>::adopt(new T(std::forward<Arguments>(arguments)...));
    if constexpr (requires { object->created(); }) object->created();
    return object;
}

}  // namespace vtdn::com
