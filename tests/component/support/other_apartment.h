// Clients in another apartment than their objects.
#pragma once

#include <gtest/gtest.h>

#include <thread>

#include "com/platform.h"
#include "com/ptr.h"

namespace vtdn::test {

/// Runs a body on a thread of another apartment, and answers calls into this apartment meanwhile.
template <class Body>
void inAnotherApartment(Body body, COINIT kind = COINIT_MULTITHREADED) {
    const HANDLE done = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    std::thread thread([&] {
        EXPECT_EQ(CoInitializeEx(nullptr, kind), S_OK);
        body();
        CoUninitialize();
        SetEvent(done);
    });
    while (MsgWaitForMultipleObjects(1, &done, FALSE, INFINITE, QS_ALLINPUT) != WAIT_OBJECT_0) {
        MSG message;
        while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) DispatchMessageW(&message);
    }
    thread.join();
    CloseHandle(done);
}

/// What this apartment hands to another one.
template <class I>
class Handed {
  public:
    explicit Handed(const com::Ptr<I>& object) {
        EXPECT_EQ(CoMarshalInterThreadInterfaceInStream(__uuidof(I), object.get(), stream_.receive()), S_OK);
    }
    [[nodiscard]] com::Ptr<I> take() {
        com::Ptr<I> proxy;
        EXPECT_EQ(CoGetInterfaceAndReleaseStream(stream_.detach(), __uuidof(I), proxy.receiveVoid()), S_OK);
        return proxy;
    }

  private:
    com::Ptr<IStream> stream_;
};

}  // namespace vtdn::test
