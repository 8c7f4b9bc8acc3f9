// How a parameter is related to the other averaging levels of its quantity.
#pragma once

#include <VTDI.h>

#include <string>
#include <utility>

#include "com/object.h"

namespace vtdn::embedded {

/// What the site said when the parameter was asked. It outlives the engine.
class Relationship final : public com::Object<Relationship, DIRelationship> {
  public:
    Relationship(LONG intervalCount, std::wstring intervalUnit, std::wstring detailXml)
        : interval_count_(intervalCount),
          interval_unit_(std::move(intervalUnit)),
          detail_xml_(std::move(detailXml)) {}

    HRESULT STDMETHODCALLTYPE get_IntervalCount(LONG* result) noexcept override;
    /// "n" for minutes, "h" for hours, "d" for days.
    HRESULT STDMETHODCALLTYPE get_IntervalUnit(BSTR* result) noexcept override;
    HRESULT STDMETHODCALLTYPE get_DetailXML(BSTR* result) noexcept override;

  private:
    LONG interval_count_;
    std::wstring interval_unit_;
    std::wstring detail_xml_;
};

}  // namespace vtdn::embedded
