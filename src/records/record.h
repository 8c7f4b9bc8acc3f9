// What the public record classes have in common: each is attached to one record of the engine, or to none,
// and keeps no copy of its data. A record class is its table of properties:
//
//     class LimitWrapper final : public records::Record<LimitWrapper, _LimitWrapper, engine::Limit> {
//       public:
//         static constexpr const CLSID& classId = CLSID_LimitWrapper;
//         static constexpr wchar_t source[] = L"VTWrapDN.LimitWrapper";
//         using Record::Record;
//         STDMETHODIMP get_Name(BSTR* result) noexcept override {
//             return get(result, L"", [](const engine::Limit& limit) { return limit.text(&DILimit::get_Name);
//             });
//         }
//     };
//
// Clients cannot make a useful one: the component's operations attach the engine's record, and take it out
// again when a client hands the object back (records::attachedTo).
#pragma once

#include <utility>

#include "com/answer.h"
#include "com/object.h"
#include "com/own_object.h"
#include "com/safe_array.h"
#include "engine/object.h"

namespace vtdn::records {

template <class Derived, class I, class EngineRecord>
class Record : public com::Object<Derived, I, com::IOwnObject> {
  public:
    using Attached = EngineRecord;

    Record() noexcept = default;
    explicit Record(EngineRecord record) noexcept : record_(std::move(record)) {}

    STDMETHODIMP HeldObject(REFCLSID wanted, IDispatch** held) noexcept override {
        if (!held) return E_POINTER;
        *held = nullptr;
        if (!IsEqualCLSID(wanted, Derived::classId)) return DISP_E_TYPEMISMATCH;
        com::Ptr<IDispatch>(record_.get()).detachTo(held);
        return S_OK;
    }

  protected:
    /// A property get: what `read` makes of the engine's record, or the default when there is none.
    template <class Result, class Default, class Read>
    HRESULT get(Result* result, const Default& none, Read&& read) const noexcept {
        return com::answer(Derived::source, __uuidof(I), result, [&] {
            using Value = decltype(read(record_));
            return record_ ? read(record_) : Value(none);
        });
    }
    /// A property let or a call: nothing happens when there is no record.
    template <class Write>
    HRESULT change(Write&& write) const noexcept {
        return com::guard(Derived::source, __uuidof(I), [&] {
            if (record_) write(record_);
        });
    }
    [[nodiscard]] const EngineRecord& record() const noexcept { return record_; }

  private:
    EngineRecord record_;
};

/// The engine's record behind an object that a client hands in: none for no object and for one that is not
/// attached. Error 13 for an object that is not of this class.
template <class Class>
typename Class::Attached attachedTo(IUnknown* object) {
    using Engine = typename Class::Attached::Interface;
    const com::Ptr<IDispatch> held = com::heldObject(object, Class::classId);
    if (!held) return {};
    com::Ptr<Engine> record;
    com::check(held.get()->QueryInterface(__uuidof(Engine), record.receiveVoid()));
    return typename Class::Attached(std::move(record));
}

/// Objects of a record class around the engine's records, in their order; no array when there are none.
template <class Class>
com::SafeArray wrapAll(const engine::Collection<typename Class::Attached>& records) {
    const LONG count = records ? records.count() : 0;
    if (count <= 0) return {};
    auto array = com::SafeArray::of<IDispatch*>(count);
    const com::ArrayView<IDispatch*> elements(array.get());
    for (LONG i = 0; i < count; ++i)
        elements[static_cast<std::size_t>(i)] = com::make<Class>(records.item(i + 1)).detach();
    return array;
}

}  // namespace vtdn::records
