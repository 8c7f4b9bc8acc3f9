#include "client/text/times.h"

#include <array>

namespace vtdn::client {

namespace {

/// Takes digits and fixed characters off the front of a text. Once something did not fit, nothing fits any
/// more.
class Scanner {
  public:
    explicit Scanner(std::string_view text) : text_(text) {}

    int number(std::size_t digits) {
        int value = 0;
        if (text_.size() < digits) fits_ = false;
        for (std::size_t i = 0; fits_ && i < digits; ++i) {
            if (text_[i] < '0' || text_[i] > '9')
                fits_ = false;
            else
                value = value * 10 + (text_[i] - '0');
        }
        if (fits_) text_.remove_prefix(digits);
        return value;
    }
    void expect(std::string_view anyOf) {
        if (!fits_ || text_.empty() || anyOf.find(text_[0]) == std::string_view::npos)
            fits_ = false;
        else
            text_.remove_prefix(1);
    }
    [[nodiscard]] bool more() const { return fits_ && !text_.empty(); }
    [[nodiscard]] bool done() const { return fits_ && text_.empty(); }

  private:
    std::string_view text_;
    bool fits_ = true;
};

int daysIn(int year, int month) {
    constexpr std::array<int, 13> days{0, 31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    const bool leap = (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
    return month == 2 && leap ? 29 : days[static_cast<std::size_t>(month)];
}

std::optional<store::Time> timeIfReal(const store::Civil& c) {
    if (c.year < 1900 || c.month < 1 || c.month > 12 || c.day < 1 || c.day > daysIn(c.year, c.month) ||
        c.hour > 23 || c.minute > 59 || c.second > 59)
        return std::nullopt;
    return store::timeOf(c);
}

void takeDate(Scanner& scanner, store::Civil& civil) {
    civil.year = scanner.number(4);
    scanner.expect("-");
    civil.month = scanner.number(2);
    scanner.expect("-");
    civil.day = scanner.number(2);
}

}  // namespace

std::optional<store::Time> parseTimestamp(std::string_view text) {
    Scanner scanner(text);
    store::Civil civil;
    takeDate(scanner, civil);
    scanner.expect(" T");
    civil.hour = scanner.number(2);
    scanner.expect(":");
    civil.minute = scanner.number(2);
    if (scanner.more()) {
        scanner.expect(":");
        civil.second = scanner.number(2);
    }
    if (!scanner.done()) return std::nullopt;
    return timeIfReal(civil);
}

std::optional<store::Time> parseDay(std::string_view text) {
    Scanner scanner(text);
    store::Civil civil;
    takeDate(scanner, civil);
    if (!scanner.done()) return std::nullopt;
    return timeIfReal(civil);
}

std::optional<store::Time> parseTime(std::string_view text) {
    if (const auto day = parseDay(text)) return day;
    return parseTimestamp(text);
}

std::optional<store::Time> parseMonth(std::string_view text) {
    Scanner scanner(text);
    store::Civil civil;
    civil.year = scanner.number(4);
    scanner.expect("-");
    civil.month = scanner.number(2);
    civil.day = 1;
    if (!scanner.done()) return std::nullopt;
    return timeIfReal(civil);
}

std::string timestampText(store::Time time, bool seconds) {
    std::string text = store::timeText(time);
    if (seconds && text.size() == 16) text += ":00";
    return text;
}

}  // namespace vtdn::client
