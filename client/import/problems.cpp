#include "client/import/problems.h"

namespace vtdn::client {

std::string ImportProblem::text() const {
    std::string text = file;
    if (line > 0) text += ":" + std::to_string(line);
    text += ": ";
    if (!column.empty()) text += "column \"" + column + "\": ";
    return text + reason;
}

}  // namespace vtdn::client
