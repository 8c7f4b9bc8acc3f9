// Owning pointer to a COM object.
#pragma once

#include <utility>

#include "com/platform.h"

namespace vtdn::com {

/// Holds one reference. Copying adds one; receive() is for [out] arguments and needs an empty pointer.
template <class I>
class Ptr {
  public:
    Ptr() noexcept = default;
    Ptr(std::nullptr_t) noexcept {}  // NOLINT(google-explicit-constructor): reads as the null it is
    explicit Ptr(I* object) noexcept : object_(object) {
        if (object_) object_->AddRef();
    }
    Ptr(const Ptr& other) noexcept : Ptr(other.object_) {}
    Ptr(Ptr&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
    ~Ptr() { reset(); }
    Ptr& operator=(Ptr other) noexcept {
        std::swap(object_, other.object_);
        return *this;
    }

    /// Takes over a reference that the caller owns.
    static Ptr adopt(I* object) noexcept {
        Ptr p;
        p.object_ = object;
        return p;
    }

    void reset() noexcept {
        // Cleared first: the release may run code that looks at this pointer again.
        if (I* object = std::exchange(object_, nullptr)) object->Release();
    }
    [[nodiscard]] I* get() const noexcept { return object_; }
    I* operator->() const noexcept { return object_; }
    explicit operator bool() const noexcept { return object_ != nullptr; }
    [[nodiscard]] I** receive() noexcept {
        reset();
        return &object_;
    }
    [[nodiscard]] void** receiveVoid() noexcept { return reinterpret_cast<void**>(receive()); }
    [[nodiscard]] I* detach() noexcept { return std::exchange(object_, nullptr); }
    void detachTo(I** out) noexcept { *out = detach(); }

    /// The same object's interface J, or an empty pointer.
    template <class J>
    [[nodiscard]] Ptr<J> as(REFIID iid = __uuidof(J)) const noexcept {
        Ptr<J> other;
        if (object_ && FAILED(object_->QueryInterface(iid, other.receiveVoid()))) return nullptr;
        return other;
    }

  private:
    I* object_ = nullptr;
};

}  // namespace vtdn::com
