#include "client/import/problems.h"

namespace vtdn::client {

std::string ImportProblem::text() const {
    std::string text = file;
    if (line > 0) text += ":" + std::to_string(line);
    text += ": ";
    if (!column.empty()) text += "column \"" + column + "\": ";
    return text + reason;
}

std::string reasonOf(const store::Error& error) {
    std::string sentence = error.what();
    if (sentence.ends_with('.')) sentence.pop_back();
    return sentence;
}

}  // namespace vtdn::client
