// Standard output, standard error and standard input, all of them UTF-8, on a console and redirected alike.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "client/output/rows.h"

namespace vtdn::client {

/// Switches the console to UTF-8 for as long as it lives, and gives it its own code page back.
class Console {
  public:
    Console();
    ~Console();
    Console(const Console&) = delete;
    Console& operator=(const Console&) = delete;

    /// Writes to standard output. What cannot be written (a full disk, a closed pipe) is a Failure.
    void out(std::string_view text);
    /// Writes a line to standard error.
    void error(std::string_view line);
    [[nodiscard]] Sink sink() {
        return [this](std::string_view text) { out(text); };
    }
    /// Hands on what is still buffered. Throws Failure like out().
    void flush();

    [[nodiscard]] bool errorIsTerminal() const { return errorIsTerminal_; }
    /// Asks on standard error; nothing when standard input ends.
    std::optional<std::string> ask(std::string_view question);
    /// Replaces the line that the cursor is in, on a terminal.
    void status(std::string_view text);

  private:
    unsigned codePage_;
    bool errorIsTerminal_;
};

/// A progress bar on a terminal, or a plain line per tenth of the way when asked for.
class Progress {
  public:
    Progress(Console& console, std::string_view what, bool plainLines);
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    void update(std::uintmax_t done, std::uintmax_t total);

  private:
    Console& console_;
    std::string what_;
    bool bar_;
    bool lines_;
    int shown_ = -1;
};

}  // namespace vtdn::client
