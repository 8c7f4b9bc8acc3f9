#include "data_interface/occurrence_text.h"

namespace vtdn::embedded {

const store::Occurrence& OccurrenceText::parsed() const {
    if (!parsed_) {
        try {
            parsed_ = std::make_unique<const store::Occurrence>(store::parseOccurrence(text_));
        } catch (const store::Error& error) {
            com::throwError(E_FAIL, sentenceOf(error));
        }
    }
    return *parsed_;
}

std::string OccurrenceText::written(const store::Occurrence& occurrence) {
    std::string text = store::occurrenceText(occurrence);
    if (text.size() > store::longestText)
        com::throwError(invalidCall, L"The occurrence would take " + std::to_wstring(text.size()) +
                                         L" bytes as a text, and no more than " +
                                         std::to_wstring(store::longestText) +
                                         L" can be kept. Shorten its category, reason or action.");
    return text;
}

}  // namespace vtdn::embedded
