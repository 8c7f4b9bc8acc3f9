// What the typed client of the engine is made of: references to engine objects whose calls throw the engine's
// failures as they came.
#pragma once

#include <VTDI.h>

#include <utility>

#include "com/error.h"
#include "com/ptr.h"
#include "com/strings.h"
#include "com/variant.h"

namespace vtdn::engine {

/// A reference to an engine object, or to none where nothing was asked for yet.
template <class I>
class Object {
  public:
    using Interface = I;

    Object() noexcept = default;
    /// Takes what a call handed out. No object, although the call succeeded, is an unset reference: error 91.
    explicit Object(com::Ptr<I> object) : object_(std::move(object)) {
        if (!object_) [[unlikely]]
            com::throwError(com::unsetObject);
    }
    explicit operator bool() const noexcept { return static_cast<bool>(object_); }
    [[nodiscard]] I* get() const noexcept { return object_.get(); }

  private:
    com::Ptr<I> object_;
};

/// A property of type text, as &DIParam::get_Name.
template <class I>
using TextProperty = HRESULT (STDMETHODCALLTYPE I::*)(BSTR*);

template <class I>
class ObjectWithTexts : public Object<I> {
  public:
    using Object<I>::Object;

    [[nodiscard]] com::Bstr text(TextProperty<I> property) const {
        com::Bstr result;
        com::check((this->get()->*property)(result.receive()));
        return result;
    }
};

/// The same for properties of other types, as &DIDataPoint::get_TStamp.
template <class I, class T>
using Getter = HRESULT (STDMETHODCALLTYPE I::*)(T*);
template <class I, class T>
using Putter = HRESULT (STDMETHODCALLTYPE I::*)(T);

/// A record of the engine: nothing but properties.
template <class I>
class Record : public ObjectWithTexts<I> {
  public:
    using ObjectWithTexts<I>::ObjectWithTexts;

    [[nodiscard]] LONG number(Getter<I, LONG> property) const { return plain(property); }
    [[nodiscard]] DATE date(Getter<I, DATE> property) const { return plain(property); }
    [[nodiscard]] bool flag(Getter<I, VARIANT_BOOL> property) const {
        return plain(property) != VARIANT_FALSE;
    }
    [[nodiscard]] com::Variant value(Getter<I, VARIANT> property) const {
        com::Variant result;
        com::check((this->get()->*property)(result.receive()));
        return result;
    }
    template <class T>
    void put(Putter<I, T> property, T value) const {
        com::check((this->get()->*property)(value));
    }
    void put(Putter<I, VARIANT> property, const com::Variant& value) const {
        com::check((this->get()->*property)(value.get()));
    }
    void call(HRESULT (STDMETHODCALLTYPE I::*method)()) const { com::check((this->get()->*method)()); }

  private:
    template <class T>
    [[nodiscard]] T plain(Getter<I, T> property) const {
        T result{};
        com::check((this->get()->*property)(&result));
        return result;
    }
};

/// Objects of class T, in the engine's order.
template <class T>
class Collection : public Object<DICollection> {
  public:
    using Object::Object;

    [[nodiscard]] LONG count() const {
        LONG result = 0;
        com::check(get()->get_Count(&result));
        return result;
    }
    /// The object with the given index, from 1.
    [[nodiscard]] T item(LONG index) const {
        com::Ptr<IDispatch> object;
        com::check(get()->Item(index, object.receive()));
        com::Ptr<typename T::Interface> typed;
        if (object) com::check(object->QueryInterface(__uuidof(typename T::Interface), typed.receiveVoid()));
        return T(std::move(typed));
    }
};

/// A new engine object, from whichever library is registered for the class.
template <class T>
T create(REFCLSID clsid) {
    com::Ptr<typename T::Interface> object;
    com::check(CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, __uuidof(typename T::Interface),
                                object.receiveVoid()));
    return T(std::move(object));
}

}  // namespace vtdn::engine
