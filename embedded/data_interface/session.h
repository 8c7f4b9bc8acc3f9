// What the objects of one engine share: the site that the engine is set up on, and the way to the engine's
// listeners.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "com/error.h"
#include "com/platform.h"
#include "data_interface/failure.h"
#include "store/directory.h"
#include "store/edits.h"
#include "store/error.h"
#include "store/site.h"

namespace vtdn::embedded {

/// The type that a `Message` event carries.
enum class MessageType : LONG {
    refusal = 1,  ///< a call or a set-up was refused
    note = 2,     ///< worth knowing; the call went on
};

/// Raises `Message` events: the engine object.
class Listener {
  public:
    virtual void message(MessageType type, std::wstring_view sentence) = 0;

  protected:
    ~Listener() = default;
};

/// Shared by an engine and by every object that it handed out, which can outlive it. A session is set up,
/// closed and set up again as its engine is; objects handed out before serve the site that is open when they
/// are called.
class Session {
  public:
    explicit Session(Listener& listener) noexcept : listener_(&listener) {}
    /// The engine is gone, and with it everybody who listened. The site stays open for the objects that are
    /// left.
    void engineGone() noexcept { listener_ = nullptr; }

    [[nodiscard]] bool isSetUp() const noexcept { return binding_.has_value(); }
    /// Opens the site of a DAHS. Throws store::Error.
    void setUp(store::Dahs dahs);
    /// Lets the site's files go. Without a site it does nothing.
    void close() noexcept { binding_.reset(); }

    /// The DAHS that the session is set up on; one without any entries when it is not.
    [[nodiscard]] const store::Dahs& dahs() const noexcept;

    /// The application that the engine works for.
    void nameClient(std::string name) noexcept { client_ = std::move(name); }
    /// An edit of now, by the client application and the user of this computer.
    [[nodiscard]] store::EditOrigin editNow() const;

    /// Runs a part of a call. What it refuses (store::Error, com::Error) is said as a message and leaves as a
    /// com::Error with the same sentence.
    template <class Call>
    decltype(auto) reporting(Call&& call) {
        try {
            return std::forward<Call>(call)();
        } catch (const store::Error& error) {
            say(error);
            throwRefusal(error);
        } catch (const com::Error& error) {
            say(MessageType::refusal, error.description());
            throw;
        }
    }
    /// The same with the open site, error 91 without one. The call must not leave the engine: whoever it
    /// reached could close the site under it.
    template <class Call>
    decltype(auto) onSite(Call&& call) {
        return reporting([&]() -> decltype(auto) { return std::forward<Call>(call)(site()); });
    }
    /// Runs a set-up, whose refusal is said and gives false.
    template <class Call>
    bool tried(Call&& call) {
        try {
            std::forward<Call>(call)();
            return true;
        } catch (const store::Error& error) {
            say(error);
            return false;
        }
    }

    void say(MessageType type, std::wstring_view sentence);

  private:
    struct Binding {
        store::Dahs dahs;
        store::Site site;
    };

    store::Site& site();
    void say(const store::Error& error);

    Listener* listener_;
    std::string client_;
    std::optional<Binding> binding_;
};

}  // namespace vtdn::embedded
