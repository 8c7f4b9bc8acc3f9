// A call into a vtable whose argument list is known at run time only. For x86 and x64, where the calling
// convention of a member lets a list of machine words stand for any list of arguments.
#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <type_traits>
#include <utility>

#include "com/platform.h"

namespace vtdn::com {

/// What one push, or one register, holds. On x86 a double is two of them and a VARIANT four; on x64 a float
/// is the low half of one, and a VARIANT is passed by its address.
using CallWord = std::uintptr_t;

inline constexpr bool wordsHoldEverything = sizeof(CallWord) == 8;
inline constexpr std::size_t maxCallWords = 48;
/// On x64 the first three arguments after the object travel in other registers when they are a float or a
/// double.
inline constexpr std::size_t floatMasks = wordsHoldEverything ? 8 : 1;

using SlotCaller = HRESULT (*)(void* object, void* function, const CallWord* words);

namespace detail {

constexpr bool isFloatArgument(std::size_t mask, std::size_t index) noexcept {
    return index < 3 && ((mask >> index) & 1) != 0;
}

template <std::size_t Mask, std::size_t Index>
using CallArgument = std::conditional_t<isFloatArgument(Mask, Index), double, CallWord>;

template <class Argument>
Argument asArgument(CallWord word) noexcept {
    if constexpr (std::is_same_v<Argument, CallWord>)
        return word;
    else
        return std::bit_cast<Argument>(static_cast<std::uint64_t>(word));
}

template <std::size_t Mask, std::size_t... Index>
HRESULT callWith(void* object, void* function, const CallWord* words, std::index_sequence<Index...>) {
    using Function = HRESULT(STDMETHODCALLTYPE*)(void*, CallArgument<Mask, Index>...);
    static_cast<void>(words);  // unused for an empty list
    return reinterpret_cast<Function>(function)(object,
                                                asArgument<CallArgument<Mask, Index>>(words[Index])...);
}

template <std::size_t Mask, std::size_t Count>
HRESULT callCounted(void* object, void* function, const CallWord* words) {
    return callWith<Mask>(object, function, words, std::make_index_sequence<Count>());
}

using Callers = std::array<SlotCaller, maxCallWords + 1>;

template <std::size_t Mask, std::size_t... Count>
constexpr Callers callersOf(std::index_sequence<Count...>) {
    return {&callCounted<Mask, Count>...};
}

template <std::size_t... Mask>
constexpr std::array<Callers, floatMasks> allCallers(std::index_sequence<Mask...>) {
    return {callersOf<Mask>(std::make_index_sequence<maxCallWords + 1>())...};
}

}  // namespace detail

/// The function that makes calls with `count` argument words. Bit i of `floatMask`: argument i is a float or
/// a double.
inline SlotCaller slotCaller(std::size_t floatMask, std::size_t count) {
    static constexpr auto callers = detail::allCallers(std::make_index_sequence<floatMasks>());
    return callers[floatMask & (floatMasks - 1)][count];
}

}  // namespace vtdn::com
