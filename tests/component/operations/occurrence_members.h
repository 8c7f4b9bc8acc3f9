// The members of an occurrence's two parts as rows, and the fixture of their tests.
#pragma once

#include <functional>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "operations/occurrences.h"

namespace vtdn::test {

using I = _OccurrenceDataWrapper;
template <class T>
using Get = HRESULT (STDMETHODCALLTYPE I::*)(T*);
template <class T>
using Put = HRESULT (STDMETHODCALLTYPE I::*)(T);

inline std::wstring shown(LONG value) {
    return std::to_wstring(value);
}
inline std::wstring shown(VARIANT_BOOL value) {
    return value == VARIANT_TRUE ? L"True" : value == VARIANT_FALSE ? L"False" : L"neither 0 nor -1";
}
inline std::wstring shown(BSTR value) {
    return L"'" + std::wstring(com::Bstr::adopt(value).view()) + L"'";
}

/// A member of a part: it is asked for the field only when the event has the part.
struct PartMember {
    std::string name;
    std::string has;  ///< the engine's question whether there is the part
    /// Reads and shows the result; a failed call must leave none.
    std::function<HRESULT(I&, std::wstring&)> get;
    std::function<HRESULT(I&)> put;  ///< none for what cannot be set
    std::string written;             ///< the value that `put` hands over
    Answer answer;
    std::wstring seen;  ///< the same, read
    std::wstring none;  ///< read without the part
};

inline std::string questionFor(const std::string& name) {
    return name.starts_with("Excursion") ? "HasExcursion" : "HasDowntime";
}

template <class T>
PartMember member(const char* name, Get<T> get, Answer answer, T seen, T none) {
    const auto read = [get](I& object, std::wstring& text) {
        T result{};
        if constexpr (!std::is_same_v<T, BSTR>) result = T{0x55};
        const HRESULT got = (object.*get)(&result);
        if (FAILED(got)) {
            EXPECT_EQ(result, T{}) << "A failed call left a result";
        }
        text = shown(result);
        return got;
    };
    return {name, questionFor(name), read, nullptr, {}, std::move(answer), shown(seen), shown(none)};
}
template <class T>
PartMember member(const char* name, Get<T> get, Answer answer, T seen, T none, Put<T> put, T value,
                  const char* written) {
    PartMember both = member(name, get, std::move(answer), seen, none);
    both.put = [put, value](I& object) { return (object.*put)(value); };
    both.written = written;
    return both;
}
inline PartMember pid(const char* name, Get<LONG> get) {
    return member(name, get, 101000501, LONG{101000501}, LONG{0});
}
inline PartMember flag(const char* name, Get<VARIANT_BOOL> get, Put<VARIANT_BOOL> put) {
    return member(name, get, true, VARIANT_TRUE, VARIANT_FALSE, put, VARIANT_TRUE, "True");
}
inline const Bstr newText(L"new");
inline PartMember text(const char* name, Get<BSTR> get) {
    return member(name, get, L"kept", SysAllocString(L"kept"), BSTR{nullptr});
}
inline PartMember text(const char* name, Get<BSTR> get, Put<BSTR> put) {
    PartMember both = text(name, get);
    both.put = [put](I& object) { return (object.*put)(newText.get()); };
    both.written = "'new'";
    return both;
}

inline const std::vector<PartMember>& members() {
    static const std::vector<PartMember> all = {
        pid("Excursion_PID", &I::get_Excursion_PID),
        pid("Downtime_PID", &I::get_Downtime_PID),
        text("Excursion_Action", &I::get_Excursion_Action, &I::put_Excursion_Action),
        text("Downtime_Action", &I::get_Downtime_Action, &I::put_Downtime_Action),
        text("Excursion_Reason", &I::get_Excursion_Reason, &I::put_Excursion_Reason),
        text("Downtime_Reason", &I::get_Downtime_Reason, &I::put_Downtime_Reason),
        flag("Excursion_Excludable", &I::get_Excursion_Excludable, &I::put_Excursion_Excludable),
        flag("Downtime_Excludable", &I::get_Downtime_Excludable, &I::put_Downtime_Excludable),
        text("Excursion_Category", &I::get_Excursion_Category, &I::put_Excursion_Category),
        text("Downtime_Category", &I::get_Downtime_Category, &I::put_Downtime_Category),
        text("Excursion_Limit", &I::get_Excursion_Limit),
        pid("Excursion_LimitPID", &I::get_Excursion_LimitPID),
    };
    return all;
}

class OccurrenceMembers : public OnOccurrences {
  protected:
    /// The engine's calls for a member of a part that is there, the call for the field last.
    static std::vector<Call> calls(const PartMember& member, const std::string& field, const Answer& answer) {
        return {{"Occurrence(1).Event"},
                {"Event." + member.has, true},
                {"Occurrence(1).Event"},
                {"Event." + field, answer}};
    }
    static std::vector<Call> reading(const PartMember& member) {
        return calls(member, member.name, member.answer);
    }
    static std::vector<Call> writing(const PartMember& member) {
        return calls(member, member.name + " = " + member.written, {});
    }
    static const std::vector<std::string>& untouched() {
        static const std::vector<std::string> names = {"Engine", "Occurrence(1)"};
        return names;
    }
    template <class T>
    Failure failure(Get<T> property, T* result) {
        const HRESULT got = (occurrence.get()->*property)(result);
        EXPECT_TRUE(FAILED(got));
        return takeFailure(got);
    }
    [[nodiscard]] std::wstring shownOf(const PartMember& member) {
        std::wstring text;
        EXPECT_EQ(member.get(*occurrence.get(), text), S_OK) << member.name;
        return text;
    }
    /// Every call of one use of a member fails in turn.
    void failEach(const std::vector<Call>& all, const std::function<HRESULT(I&)>& use) {
        for (std::size_t failing = 0; failing < all.size(); ++failing) {
            for (const bool explained : {true, false}) {
                for (std::size_t i = 0; i < failing; ++i) engine.expect({all[i]});
                engine.expect(
                    {{all[failing].text, explained ? engineFails() : Answer::failure(engineResult)}});
                const Failure failure = takeFailure(use(*occurrence.get()));
                EXPECT_EQ(failure.result, engineResult) << all[failing].text;
                if (explained) {
                    EXPECT_EQ(failure, engineFailure()) << all[failing].text;
                }
                EXPECT_EQ(engine.alive(), untouched()) << all[failing].text;
                engine.verify();
            }
        }
    }

    Occurrence occurrence = listedOne();
};

}  // namespace vtdn::test
