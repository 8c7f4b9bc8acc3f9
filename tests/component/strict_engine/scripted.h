// Base of the strict engine's objects.
#pragma once

#include <VTDI.h>
#include <oleauto.h>

#include <memory>
#include <string>
#include <utility>

#include "com/ptr.h"
#include "com/strings.h"
#include "com/variant.h"
#include "fake_engine/object.h"
#include "strict_engine/describe.h"
#include "strict_engine/script.h"

namespace vtdn::fake {

/// What every strict object does: it has a name, and its calls go to the script.
template <class Base>
class Scripted : public Base {
  public:
    template <class... Arguments>
    explicit Scripted(std::shared_ptr<Script> script, std::string name, Arguments&&... arguments)
        : Base(std::forward<Arguments>(arguments)...), script_(std::move(script)), name_(std::move(name)) {
        script_->born(this, name_);
    }
    ~Scripted() override { script_->died(this); }

  protected:
    [[nodiscard]] const std::shared_ptr<Script>& script() const { return script_; }
    [[nodiscard]] Answer play(const std::string& member) const {
        return script_->play(joined({name_, member}));
    }
    [[nodiscard]] HRESULT done(const std::string& member) const { return play(member).result(); }

    HRESULT text(const std::string& member, BSTR* out) const {
        *out = nullptr;
        const Answer answer = play(member);
        if (FAILED(answer.result()) || answer.value().type() != VT_BSTR) return answer.result();
        *out = com::Bstr(com::view(answer.value().get().bstrVal)).detach();
        return S_OK;
    }
    HRESULT integer(const std::string& member, LONG* out) const {
        const Answer answer = play(member);
        if (FAILED(answer.result())) return answer.result();
        *out = answer.value().type() == VT_I4 ? answer.value().get().lVal : 0;
        return S_OK;
    }
    HRESULT date(const std::string& member, DATE* out) const {
        const Answer answer = play(member);
        if (FAILED(answer.result())) return answer.result();
        *out = answer.value().type() == VT_R8 ? answer.value().get().dblVal : 0;
        return S_OK;
    }
    HRESULT yesOrNo(const std::string& member, VARIANT_BOOL* out) const {
        const Answer answer = play(member);
        if (FAILED(answer.result())) return answer.result();
        // A number is an engine's unusual True: any value but 0.
        *out = answer.value().type() == VT_I4
                   ? static_cast<VARIANT_BOOL>(answer.value().get().lVal)
                   : com::variantBool(answer.value().type() == VT_BOOL && answer.value().get().boolVal != 0);
        return S_OK;
    }
    HRESULT variant(const std::string& member, VARIANT* out) const {
        VariantInit(out);
        const Answer answer = play(member);
        return FAILED(answer.result()) ? answer.result() : copyVariant(out, answer.value().get());
    }
    template <class Class, class I, class... Names>
    HRESULT object(const std::string& member, I** out, Names... names) const {
        *out = nullptr;
        const Answer answer = play(member);
        if (FAILED(answer.result()) || !answer.hasObject()) return answer.result();
        com::Ptr<I>(new Class(script_, std::move(names)...)).detachTo(out);
        return S_OK;
    }

  private:
    std::shared_ptr<Script> script_;
    std::string name_;
};

/// A collection of objects of class Element; the n-th is called "Name(n)".
template <class Element>
class StrictList : public Scripted<EngineObject<DICollection>> {
  public:
    StrictList(std::shared_ptr<Script> script, std::string name, std::string elementName)
        : Scripted(std::move(script), std::move(name)), elementName_(std::move(elementName)) {}

    HRESULT STDMETHODCALLTYPE get_Count(LONG* result) override { return integer(".Count", result); }
    HRESULT STDMETHODCALLTYPE Item(LONG index, IDispatch** result) override {
        return object<Element>(joined({".Item(", number(index), ")"}), result,
                               joined({elementName_, "(", number(index), ")"}));
    }
    HRESULT STDMETHODCALLTYPE get__NewEnum(IUnknown** result) override {
        *result = nullptr;
        return done("._NewEnum");
    }

  private:
    std::string elementName_;
};

}  // namespace vtdn::fake
