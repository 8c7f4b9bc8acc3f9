#include "client/output/svg.h"

#include "client/output/axis.h"
#include "client/text/numbers.h"

namespace vtdn::client {

namespace {

constexpr int mostTimeTicks = 10;
constexpr double lineOfText = 14;

constexpr std::string_view styles =
    "<style>text{font-family:'Segoe UI','Helvetica Neue',Arial,sans-serif;fill:#222}.title{font-size:18px;"
    "font-weight:600}.panel{font-size:14px;font-weight:600}.tick{font-size:12px;fill:#555}.grid{stroke:#"
    "e4e4e4}"
    ".axis{stroke:#888}.line{fill:none;stroke:#1f5a99;stroke-width:1.4;stroke-linejoin:round}</style>\n";

/// U+FFFE and U+FFFF, which XML does not have although UTF-8 does.
bool isNoXmlCharacter(std::string_view text) {
    return text.starts_with("\xEF\xBF\xBE") || text.starts_with("\xEF\xBF\xBF");
}

}  // namespace

std::string escapedText(std::string_view text) {
    std::string out;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        switch (c) {
            case '&':
                out += "&amp;";
                break;
            case '<':
                out += "&lt;";
                break;
            case '>':
                out += "&gt;";
                break;
            case '"':
                out += "&quot;";
                break;
            default:
                if (isNoXmlCharacter(text.substr(i))) {
                    out += ' ';
                    i += 2;
                } else {
                    out += static_cast<unsigned char>(c) < 0x20 && c != '\n' ? ' ' : c;
                }
        }
    }
    return out;
}

std::string coordinate(double number) {
    return formatNumber(number, "0.#");
}

void Drawing::text(double x, double y, std::string_view anchor, std::string_view cls,
                   std::string_view content) {
    svg_ += "<text x=\"" + coordinate(x) + "\" y=\"" + coordinate(y) + "\" text-anchor=\"" +
            std::string(anchor) + "\"";
    if (!cls.empty()) svg_ += " class=\"" + std::string(cls) + "\"";
    svg_ += ">" + escapedText(content) + "</text>\n";
}

void Drawing::line(double x1, double y1, double x2, double y2, std::string_view cls) {
    svg_ += "<line x1=\"" + coordinate(x1) + "\" y1=\"" + coordinate(y1) + "\" x2=\"" + coordinate(x2) +
            "\" y2=\"" + coordinate(y2) + "\" class=\"" + std::string(cls) + "\"/>\n";
}

void Drawing::rect(double x, double y, double width, double height, std::string_view fill,
                   std::string_view tooltip) {
    svg_ += "<rect x=\"" + coordinate(x) + "\" y=\"" + coordinate(y) + "\" width=\"" + coordinate(width) +
            "\" height=\"" + coordinate(height) + "\" fill=\"" + std::string(fill) + "\"";
    svg_ += tooltip.empty() ? "/>\n" : "><title>" + escapedText(tooltip) + "</title></rect>\n";
}

void Drawing::dot(double x, double y, double radius, std::string_view fill) {
    svg_ += "<circle cx=\"" + coordinate(x) + "\" cy=\"" + coordinate(y) + "\" r=\"" + coordinate(radius) +
            "\" fill=\"" + std::string(fill) + "\"/>\n";
}

std::string Drawing::page(std::string_view title, double left, double height) const {
    const std::string tall = coordinate(height);
    const std::string wide = coordinate(pageWidth);
    const std::string shown = escapedText(title);
    std::string svg =
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<svg xmlns=\"http://www.w3.org/2000/svg\" viewBox=\"0 "
        "0 " +
        wide + " " + tall + "\" width=\"" + wide + "\" height=\"" + tall + "\" role=\"img\">\n<title>" +
        shown + "</title>\n";
    svg += styles;
    svg += "<rect width=\"100%\" height=\"100%\" fill=\"#ffffff\"/>\n";
    svg += "<text x=\"" + coordinate(left) + "\" y=\"28\" class=\"title\">" + shown + "</text>\n";
    svg += svg_;
    return svg + "</svg>\n";
}

void drawTimeAxis(Drawing& drawing, const TimeScale& scale, double top, double bottom, double labels) {
    for (const TimeTick& tick : timeTicks(scale.from, scale.to, mostTimeTicks)) {
        const double x = scale.x(tick.time);
        drawing.line(x, top, x, bottom, "grid");
        drawing.text(x, labels, "middle", "tick", tick.label);
        if (!tick.second.empty()) drawing.text(x, labels + lineOfText, "middle", "tick", tick.second);
    }
}

}  // namespace vtdn::client
