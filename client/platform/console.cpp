#include "client/platform/console.h"

#include <fcntl.h>
#include <io.h>
#include <windows.h>

#include <algorithm>
#include <cstdio>
#include <iostream>

#include "client/cli/failure.h"

namespace vtdn::client {

namespace {

bool isTerminal(DWORD handle) {
    DWORD mode = 0;
    return GetConsoleMode(GetStdHandle(handle), &mode) != 0;
}

}  // namespace

Console::Console() : codePage_(GetConsoleOutputCP()), errorIsTerminal_(isTerminal(STD_ERROR_HANDLE)) {
    SetConsoleOutputCP(CP_UTF8);
    // Bytes as they are: files are the same whether written here or elsewhere.
    _setmode(_fileno(stdout), _O_BINARY);
    _setmode(_fileno(stderr), _O_BINARY);
    // A line at a time costs a system call each.
    static char buffer[1 << 16];
    std::setvbuf(stdout, buffer, _IOFBF, sizeof buffer);
}

Console::~Console() {
    std::fflush(stdout);
    if (codePage_ != 0) SetConsoleOutputCP(codePage_);
}

void Console::out(std::string_view text) {
    if (std::fwrite(text.data(), 1, text.size(), stdout) != text.size())
        throw Failure(ExitCode::environment, "Standard output cannot be written.",
                      "Check that the disk is not full and that the program behind the pipe still runs.");
}

void Console::flush() {
    if (std::fflush(stdout) != 0) out("\n");
}

void Console::error(std::string_view line) {
    std::fflush(stdout);
    const std::string text = std::string(line) + "\n";
    std::fwrite(text.data(), 1, text.size(), stderr);
    std::fflush(stderr);
}

std::optional<std::string> Console::ask(std::string_view question) {
    std::fflush(stdout);
    std::fwrite(question.data(), 1, question.size(), stderr);
    std::fflush(stderr);
    std::string answer;
    if (!std::getline(std::cin, answer)) return std::nullopt;
    while (!answer.empty() && (answer.back() == '\r' || answer.back() == ' ')) answer.pop_back();
    return answer;
}

void Console::status(std::string_view text) {
    const std::string line = "\r" + std::string(text);
    std::fwrite(line.data(), 1, line.size(), stderr);
    std::fflush(stderr);
}

Progress::Progress(Console& console, std::string_view what, bool plainLines)
    : console_(console), what_(what), bar_(console.errorIsTerminal() && !plainLines), lines_(plainLines) {}

Progress::~Progress() {
    if (bar_ && shown_ >= 0) console_.status(std::string(what_.size() + 60, ' ') + "\r");
}

void Progress::update(std::uintmax_t done, std::uintmax_t total) {
    if (total == 0 || (!bar_ && !lines_)) return;
    const int percent = static_cast<int>(std::min<std::uintmax_t>(done * 100 / total, 100));
    const int step = bar_ ? percent : percent / 10 * 10;
    if (step <= shown_) return;
    shown_ = step;
    if (lines_) {
        console_.error(what_ + ": " + std::to_string(step) + " %");
        return;
    }
    constexpr int width = 40;
    const auto filled = static_cast<std::size_t>(percent * width / 100);
    console_.status(what_ + " [" + std::string(filled, '#') + std::string(width - filled, '.') + "] " +
                    std::to_string(percent) + " %");
}

}  // namespace vtdn::client
