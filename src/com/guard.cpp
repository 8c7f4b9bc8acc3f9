#include "com/guard.h"

#include <exception>
#include <new>
#include <stdexcept>

#include "com/strings.h"

namespace vtdn::com {
namespace {

HRESULT fail(HRESULT result, const wchar_t* source, REFIID iid, std::wstring_view description) noexcept {
    // Null when memory is short: the client then knows the result without a description.
    SetErrorInfo(0, makeErrorInfo(source, description, iid).get());
    return result;
}

}  // namespace

HRESULT currentExceptionToResult(const wchar_t* source, REFIID iid) noexcept {
    // Exceptions that could come out of a handler (a description is copied) end here as lack of memory.
    try {
        try {
            throw;
        } catch (const OwnError& error) {
            return fail(error.result(), source, iid, error.description());
        } catch (const Error& error) {
            // The callee's own words, or none: we do not know better what went wrong there.
            SetErrorInfo(0, error.info().get());
            return error.result();
        } catch (const std::bad_alloc&) {
            return fail(E_OUTOFMEMORY, source, iid, errorText(7));
        } catch (const std::length_error&) {
            return fail(E_OUTOFMEMORY, source, iid, errorText(7));
        } catch (const std::exception& error) {
            return fail(E_UNEXPECTED, source, iid, L"Internal error: " + fromUtf8(error.what()));
        } catch (...) {
            return fail(E_UNEXPECTED, source, iid, errorText(51));
        }
    } catch (...) {
        return fail(E_OUTOFMEMORY, source, iid, errorText(7));
    }
}

}  // namespace vtdn::com
