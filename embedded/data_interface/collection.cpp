#include "data_interface/collection.h"

#include <algorithm>
#include <string>
#include <vector>

#include "com/variant.h"

namespace vtdn::embedded {
namespace {

class Enumerator final : public com::Object<Enumerator, IEnumVARIANT> {
  public:
    Enumerator(com::Ptr<Collection> collection, std::size_t next)
        : collection_(std::move(collection)), next_(next) {}

    HRESULT STDMETHODCALLTYPE Next(ULONG count, VARIANT* elements, ULONG* fetched) noexcept override {
        return com::guard(errorSource, IID_IEnumVARIANT, [&]() -> HRESULT {
            if (fetched) *fetched = 0;
            if (!fetched && count != 1) return E_POINTER;
            com::needPointers(elements);
            const std::size_t some = std::min<std::size_t>(count, collection_->count() - next_);
            // All of them are made before any is handed out.
            std::vector<com::Variant> made;
            made.reserve(some);
            for (std::size_t i = 0; i < some; ++i)
                made.push_back(com::Variant::of(collection_->element(next_ + i).get()));
            for (std::size_t i = 0; i < some; ++i) made[i].detachTo(&elements[i]);
            next_ += some;
            if (fetched) *fetched = static_cast<ULONG>(some);
            return some == count ? S_OK : S_FALSE;
        });
    }
    HRESULT STDMETHODCALLTYPE Skip(ULONG count) noexcept override {
        const std::size_t left = collection_->count() - next_;
        next_ += std::min<std::size_t>(count, left);
        return count <= left ? S_OK : S_FALSE;
    }
    HRESULT STDMETHODCALLTYPE Reset() noexcept override {
        next_ = 0;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE Clone(IEnumVARIANT** result) noexcept override {
        return com::guard(errorSource, IID_IEnumVARIANT, [&] {
            com::needPointers(result);
            *result = nullptr;
            *result = com::make<Enumerator>(collection_, next_).detach();
        });
    }

  private:
    com::Ptr<Collection> collection_;
    std::size_t next_;
};

}  // namespace

HRESULT Collection::get_Count(LONG* result) noexcept {
    return com::guard(errorSource, __uuidof(DICollection), [&] {
        com::needPointers(result);
        *result = static_cast<LONG>(count_);
    });
}

HRESULT Collection::Item(LONG index, IDispatch** result) noexcept {
    return com::guard(errorSource, __uuidof(DICollection), [&] {
        com::needPointers(result);
        *result = nullptr;
        session_->reporting([&] {
            if (index < 1 || static_cast<std::size_t>(index) > count_)
                com::throwError(DISP_E_BADINDEX,
                                L"The collection has no element " + std::to_wstring(index) +
                                    (count_ == 0 ? L". It is empty."
                                                 : L". Its elements are numbered from 1 to " +
                                                       std::to_wstring(count_) + L"."));
        });
        *result = element(static_cast<std::size_t>(index) - 1).detach();
    });
}

HRESULT Collection::get__NewEnum(IUnknown** result) noexcept {
    return com::guard(errorSource, __uuidof(DICollection), [&] {
        com::needPointers(result);
        *result = nullptr;
        IEnumVARIANT* enumerator = com::make<Enumerator>(com::Ptr<Collection>(this), 0U).detach();
        *result = enumerator;
    });
}

}  // namespace vtdn::embedded
