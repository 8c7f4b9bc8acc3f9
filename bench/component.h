// The component and the embedded engine out of their own files: nothing is registered for a measurement.
#pragma once

#include <VTDI.h>
#include <VTWrapperDN.h>

#include <string>

#include "com/ptr.h"

namespace vtdn::bench {

/// A class object out of a library beside this program or in the given folder. Throws com::Error.
com::Ptr<IClassFactory> classFactory(const std::wstring& library, REFCLSID clsid);

com::Ptr<_DIWrapper> makeWrapper(const std::wstring& componentFile);

/// Serves the embedded engine's classes on this thread for as long as it lives.
class EmbeddedEngine {
  public:
    explicit EmbeddedEngine(const std::wstring& engineFile);
    ~EmbeddedEngine();
    EmbeddedEngine(const EmbeddedEngine&) = delete;
    EmbeddedEngine& operator=(const EmbeddedEngine&) = delete;

  private:
    DWORD cookies_[3] = {};
};

}  // namespace vtdn::bench
