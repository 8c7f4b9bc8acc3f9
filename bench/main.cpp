// Measures the figures that the component is held to and prints them as one JSON object; what is behind each
// goes to the standard error. Works in the current folder, which must be empty, on the libraries beside this
// program.

#include "bench/calls.h"
#include "bench/program.h"
#include "bench/year.h"

int main() {
    using namespace vtdn::bench;
    return runBench([](const std::wstring& component, const std::wstring& engine) {
        std::vector<Figure> figures = measureCalls(component);
        for (Figure& figure : measureYear(component, engine, ".")) figures.push_back(std::move(figure));
        return figures;
    });
}
