// What all charts share: a page of a fixed width, what is drawn on it, and its axis of time.
#pragma once

#include <string>
#include <string_view>

#include "store/time.h"

namespace vtdn::client {

// The page, in SVG units.
inline constexpr double pageWidth = 1000;
inline constexpr double rightMargin = 40;
inline constexpr double titleHeight = 48;

/// A text as it stands in XML. What XML cannot hold becomes a space.
std::string escapedText(std::string_view text);

/// A coordinate as text, to a tenth of a unit.
std::string coordinate(double number);

/// Shapes and texts, in the order in which they are drawn.
class Drawing {
  public:
    void add(std::string_view svg) { svg_ += svg; }
    void text(double x, double y, std::string_view anchor, std::string_view cls, std::string_view content);
    void line(double x1, double y1, double x2, double y2, std::string_view cls);
    /// With a tooltip when there is a text for it, line breaks and all.
    void rect(double x, double y, double width, double height, std::string_view fill,
              std::string_view tooltip = {});
    void dot(double x, double y, double radius, std::string_view fill);

    [[nodiscard]] const std::string& svg() const { return svg_; }
    /// The whole picture, with the title at its head.
    [[nodiscard]] std::string page(std::string_view title, double left, double height) const;

  private:
    std::string svg_;
};

/// Where times stand between the left and the right end of a chart.
struct TimeScale {
    store::Time from;
    store::Time to;
    double left;

    [[nodiscard]] double width() const { return pageWidth - rightMargin - left; }
    [[nodiscard]] double x(store::Time time) const {
        return left + width() * static_cast<double>(time - from) / static_cast<double>(to - from);
    }
};

/// Vertical lines at round times, and their labels on two lines of text, the first of which stands at
/// `labels`.
void drawTimeAxis(Drawing& drawing, const TimeScale& scale, double top, double bottom, double labels);

}  // namespace vtdn::client
