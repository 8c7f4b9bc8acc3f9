// The occurrence text of one record, looked into only when somebody asks.
#pragma once

#include <memory>
#include <string>

#include "com/error.h"
#include "data_interface/failure.h"
#include "store/error.h"
#include "store/occurrence.h"
#include "store/value.h"

namespace vtdn::embedded {

/// Keeps the text as it was given until a part is changed. A text that is no occurrence can be kept and given
/// back; looking into it and changing it throw com::Error (E_FAIL), so that nothing of it is lost.
class OccurrenceText {
  public:
    OccurrenceText() = default;
    explicit OccurrenceText(std::string text) : text_(std::move(text)) {}

    [[nodiscard]] const std::string& text() const noexcept { return text_; }
    void setText(std::string text) noexcept {
        text_ = std::move(text);
        parsed_.reset();
    }

    /// What it says. Valid until the next change.
    [[nodiscard]] const store::Occurrence& parsed() const;

    /// Changes what it says, and the text with it. Throws error 5 when it would be too long, and then, as
    /// when the change itself throws, everything is as it was.
    template <class Change>
    void change(Change&& apply) {
        auto changed = std::make_unique<store::Occurrence>(parsed());
        std::forward<Change>(apply)(*changed);
        std::string text = written(*changed);
        text_ = std::move(text);
        parsed_ = std::move(changed);
    }

  private:
    [[nodiscard]] static std::string written(const store::Occurrence& occurrence);

    std::string text_;
    mutable std::unique_ptr<const store::Occurrence> parsed_;  // what text_ says, once somebody asked
};

}  // namespace vtdn::embedded
