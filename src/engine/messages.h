// The Message event of the engine.
#pragma once

#include <ocidl.h>

#include <string_view>

#include "engine/client.h"

namespace vtdn::engine {

class MessageListener {
  public:
    MessageListener(const MessageListener&) = delete;
    MessageListener& operator=(const MessageListener&) = delete;
    /// Called on the client's thread, during an engine call. What it throws does not reach the engine.
    virtual void message(std::wstring_view description) = 0;

  protected:
    MessageListener() = default;
    ~MessageListener() = default;
};

/// The connection of a listener to an engine object, or none.
class Messages {
  public:
    Messages() noexcept;
    Messages(const Messages&) = delete;
    Messages& operator=(const Messages&) = delete;
    ~Messages();

    /// From now on until disconnect() the listener hears the engine. Neither is kept alive by the other: an
    /// engine that goes on raising messages afterwards reaches nobody.
    void connect(const Engine& engine, MessageListener& listener);
    void disconnect() noexcept;

  private:
    class Sink;

    com::Ptr<IConnectionPoint> point_;
    com::Ptr<Sink> sink_;
    DWORD cookie_ = 0;
};

}  // namespace vtdn::engine
