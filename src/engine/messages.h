// The Message event of the engine.
#pragma once

#include <optional>

#include "com/event_sink.h"
#include "engine/client.h"

namespace vtdn::engine {

/// Connects a listener to the events of an engine.
inline void listen(com::EventSink& sink, const Engine& engine, com::EventListener& listener) {
    sink.connect(engine.get(), DIID_DIEngineEvents, listener);
}

/// The description of a Message event, its second argument behind the message type. Nothing for any other
/// event.
inline std::optional<com::Bstr> messageDescription(DISPID id, const com::EventArguments& arguments) {
    constexpr DISPID messageId = 1;
    com::Bstr description;
    if (id != messageId || arguments.size() != 2 || FAILED(com::toText(arguments[1], description))) return {};
    return description;
}

}  // namespace vtdn::engine
