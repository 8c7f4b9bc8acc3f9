// The built engine library, and the classes that it serves without being registered.
#pragma once

#include <vector>

#include "support/component.h"

namespace vtdn::embedded::test {

/// VTEngine.dll, loaded for as long as this object lives. It serves when it is made.
class EngineLibrary : public vtdn::test::Component {
  public:
    EngineLibrary() : Component(vtdn::test::componentPath()) { serve(); }
    ~EngineLibrary() { stopServing(); }
    EngineLibrary(const EngineLibrary&) = delete;
    EngineLibrary& operator=(const EngineLibrary&) = delete;

    /// From now on CoCreateInstance on this thread finds the classes.
    void serve();
    void stopServing();

  private:
    std::vector<DWORD> cookies_;
};

}  // namespace vtdn::embedded::test
