// A client of the component: one DIWrapper, called early bound.
//
//     Client client;
//     EXPECT_TRUE(client.yes(&_DIWrapper::Setup, 5));
//     EXPECT_EQ(client.text(&_DIWrapper::Param_Name, 530001), L"Stack flow");
//     EXPECT_EQ(client.failure(&_DIWrapper::Param_Name, 530001), (Failure{E_FAIL, L"Engine", L"No."}));
#pragma once

#include <VTWrapperDN.h>
#include <gtest/gtest.h>

#include <string>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

#include "com/ptr.h"
#include "com/safe_array.h"
#include "com/strings.h"
#include "support/component.h"
#include "support/failure.h"

namespace vtdn::test {

/// A member of the interface, by its argument types.
template <class... P>
using Member = HRESULT (STDMETHODCALLTYPE _DIWrapper::*)(P...);

class Client {
  public:
    Client() : wrapper_(component().create<_DIWrapper>(CLSID_DIWrapper)) {}
    explicit Client(com::Ptr<_DIWrapper> wrapper) : wrapper_(std::move(wrapper)) {}

    /// A call that must succeed, and the result of a member that returns a boolean, a text or a number.
    template <class... P, class... A>
    bool yes(Member<P...> member, A... arguments) const {
        const auto result = succeed<VARIANT_BOOL>(0x55, member, arguments...);
        EXPECT_TRUE(result == VARIANT_TRUE || result == VARIANT_FALSE) << result;
        return result != VARIANT_FALSE;
    }
    template <class... P, class... A>
    std::wstring text(Member<P...> member, A... arguments) const {
        return std::wstring(com::Bstr::adopt(succeed<BSTR>(nullptr, member, arguments...)).view());
    }
    template <class... P, class... A>
    LONG number(Member<P...> member, A... arguments) const {
        return succeed<LONG>(0x55, member, arguments...);
    }
    /// The same for a member that returns an array of texts, which must begin at 0 and hold no null string.
    template <class... P, class... A>
    std::vector<std::wstring> texts(Member<P...> member, A... arguments) const {
        return plainTexts(com::SafeArray(succeed<SAFEARRAY*>(nullptr, member, arguments...)));
    }

    /// A call that must fail and leave no result.
    template <class... P, class... A>
    Failure failure(Member<P...> member, A... arguments) const {
        HRESULT result = S_OK;
        if constexpr (sizeof...(A) == sizeof...(P)) {
            result = (wrapper_.get()->*member)(arguments...);
        } else {
            using Result = std::remove_pointer_t<std::tuple_element_t<sizeof...(P) - 1, std::tuple<P...>>>;
            Result out{};
            result = (wrapper_.get()->*member)(arguments..., &out);
            EXPECT_EQ(out, Result{}) << "A failed call left a result";
        }
        EXPECT_TRUE(FAILED(result));
        return takeFailure(result);
    }

    [[nodiscard]] bool setup(LONG dahsId = 1) const { return yes(&_DIWrapper::Setup, dahsId); }
    void teardown() const { EXPECT_EQ(wrapper_->Teardown(), S_OK); }
    /// The whole problems list, which is empty afterwards.
    [[nodiscard]] std::wstring problems() const { return text(&_DIWrapper::GetAndClearProblemsList); }
    /// The texts of the problems list without their time stamps. A list that is not of the form
    /// "(stamp) text" + tab + "(stamp) text" fails the test.
    [[nodiscard]] std::vector<std::wstring> problemTexts() const;

    [[nodiscard]] _DIWrapper* get() const { return wrapper_.get(); }
    _DIWrapper* operator->() const { return wrapper_.get(); }
    /// Releases the wrapper: the client's reference must be the last one.
    void release() { EXPECT_EQ(wrapper_.detach()->Release(), 0U); }

  private:
    static std::vector<std::wstring> plainTexts(const com::SafeArray& array);

    template <class Result, class... P, class... A>
    Result succeed(Result unset, Member<P...> member, A... arguments) const {
        Result result = unset;
        const HRESULT hr = (wrapper_.get()->*member)(arguments..., &result);
        EXPECT_EQ(hr, S_OK) << takeFailure(hr);
        return result;
    }

    com::Ptr<_DIWrapper> wrapper_;
};

}  // namespace vtdn::test
