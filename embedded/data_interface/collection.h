// Objects of one kind, in an order.
#pragma once

#include <VTDI.h>

#include <cstddef>
#include <functional>
#include <memory>

#include "com/object.h"
#include "data_interface/session.h"

namespace vtdn::embedded {

/// The one shape of every collection that the engine hands out. Which elements there are was settled when it
/// was made; each one is made when it is asked for. It outlives the engine.
class Collection final : public com::Object<Collection, DICollection> {
  public:
    /// Makes element i, from 0.
    using Maker = std::function<com::Ptr<IDispatch>(std::size_t i)>;

    Collection(std::shared_ptr<Session> session, std::size_t count, Maker make)
        : session_(std::move(session)), count_(count), make_(std::move(make)) {}

    HRESULT STDMETHODCALLTYPE get_Count(LONG* result) noexcept override;
    /// Error 9 for an index that is not from 1 to the count.
    HRESULT STDMETHODCALLTYPE Item(LONG index, IDispatch** result) noexcept override;
    /// An IEnumVARIANT, which keeps the collection.
    HRESULT STDMETHODCALLTYPE get__NewEnum(IUnknown** result) noexcept override;

    [[nodiscard]] std::size_t count() const noexcept { return count_; }
    [[nodiscard]] com::Ptr<IDispatch> element(std::size_t i) const { return make_(i); }

  private:
    std::shared_ptr<Session> session_;
    std::size_t count_;
    Maker make_;
};

}  // namespace vtdn::embedded
