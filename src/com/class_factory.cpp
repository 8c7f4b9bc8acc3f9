#include "com/class_factory.h"

#include <algorithm>

namespace vtdn::com {
namespace {

class ClassFactory final : public Object<ClassFactory, IClassFactory> {
  public:
    explicit ClassFactory(const ClassEntry& entry) : entry_(entry) {}

    HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID iid, void** out) noexcept override {
        if (!out) return E_POINTER;
        *out = nullptr;
        if (outer) return CLASS_E_NOAGGREGATION;
        return guard(entry_.independentProgId, IID_IClassFactory,
                     [&] { return entry_.create()->QueryInterface(iid, out); });
    }
    HRESULT STDMETHODCALLTYPE LockServer(BOOL lock) noexcept override {
        lock ? module::lock() : module::unlock();
        return S_OK;
    }

  private:
    const ClassEntry& entry_;
};

}  // namespace

HRESULT classObject(std::span<const ClassEntry> classes, REFCLSID id, REFIID iid, void** out) noexcept {
    if (!out) return E_POINTER;
    *out = nullptr;
    const auto entry =
        std::find_if(classes.begin(), classes.end(), [&](const ClassEntry& c) { return c.id == id; });
    if (entry == classes.end()) return CLASS_E_CLASSNOTAVAILABLE;
    return guard(entry->independentProgId, IID_IClassFactory,
                 [&] { return make<ClassFactory>(*entry)->QueryInterface(iid, out); });
}

HRESULT canUnloadNow() noexcept {
    return module::isLocked() ? S_FALSE : S_OK;
}

}  // namespace vtdn::com
