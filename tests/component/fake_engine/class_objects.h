// Serves classes from the test program itself, in place of a registered engine library.
#pragma once

#include <unknwn.h>

#include <functional>
#include <vector>

namespace vtdn::fake {

/// Makes an object and hands out its interface `iid`.
using Create = std::function<HRESULT(REFIID iid, void** out)>;

/// Class objects of the calling thread's apartment; CoCreateInstance finds them before any registered
/// library. They are withdrawn when this object goes.
class ClassObjects {
  public:
    ClassObjects() = default;
    ClassObjects(const ClassObjects&) = delete;
    ClassObjects& operator=(const ClassObjects&) = delete;
    ~ClassObjects();
    /// Throws com::Error when the class cannot be served.
    void serve(REFCLSID classId, Create create);

  private:
    std::vector<DWORD> cookies_;
};

}  // namespace vtdn::fake
