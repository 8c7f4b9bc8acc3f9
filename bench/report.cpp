#include "bench/report.h"

#include <cstdio>

namespace vtdn::bench {

std::string over(double a, double b, const char* unit) {
    char out[120];
    std::snprintf(out, sizeof out, "%.2f %s over %.2f %s", a, unit, b, unit);
    return out;
}

void print(const std::vector<Figure>& figures) {
    std::printf("{");
    const char* separator = "\n";
    for (const Figure& figure : figures) {
        std::fprintf(stderr, "%-26s %10.4g  %s\n", figure.key.c_str(), figure.value, figure.basis.c_str());
        std::printf("%s    \"%s\": %.6g", separator, figure.key.c_str(), figure.value);
        separator = ",\n";
    }
    std::printf("\n}\n");
}

}  // namespace vtdn::bench
