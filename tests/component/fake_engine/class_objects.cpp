#include "fake_engine/class_objects.h"

#include <objbase.h>

#include <utility>

#include "com/error.h"
#include "com/ptr.h"
#include "fake_engine/object.h"

namespace vtdn::fake {

namespace {

class Factory final : public Counted<IClassFactory> {
  public:
    explicit Factory(Create create) : create_(std::move(create)) {}

    HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID iid, void** out) override {
        if (!out) return E_POINTER;
        *out = nullptr;
        return outer ? CLASS_E_NOAGGREGATION : create_(iid, out);
    }
    HRESULT STDMETHODCALLTYPE LockServer(BOOL) override { return S_OK; }

  protected:
    void* find(REFIID iid) override {
        if (IsEqualIID(iid, __uuidof(IUnknown)) || IsEqualIID(iid, __uuidof(IClassFactory))) return this;
        return nullptr;
    }

  private:
    Create create_;
};

}  // namespace

ClassObjects::~ClassObjects() {
    for (const DWORD cookie : cookies_) CoRevokeClassObject(cookie);
}

void ClassObjects::serve(REFCLSID classId, Create create) {
    const com::Ptr<IClassFactory> factory(new Factory(std::move(create)));
    DWORD cookie = 0;
    com::check(
        CoRegisterClassObject(classId, factory.get(), CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE, &cookie));
    cookies_.push_back(cookie);
}

}  // namespace vtdn::fake
