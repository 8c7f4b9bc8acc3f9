#include "data_interface/param.h"

#include "com/strings.h"
#include "data_interface/data_array.h"
#include "data_interface/data_array_item.h"
#include "data_interface/date.h"
#include "data_interface/relationship.h"
#include "data_interface/special_function.h"
#include "data_interface/value.h"
#include "store/parameters.h"

namespace vtdn::embedded {

template <class Property>
HRESULT Param::text(BSTR* result, Property&& property) const noexcept {
    return com::guard(errorSource, __uuidof(DIParam), [&] {
        com::needPointers(result);
        *result = nullptr;
        *result = session_
                      ->onSite([&](store::Site& site) {
                          return com::Bstr(com::fromUtf8(std::invoke(property, site.parameters().get(pid_))));
                      })
                      .detach();
    });
}

HRESULT Param::get_PID(LONG* result) noexcept {
    return com::guard(errorSource, __uuidof(DIParam), [&] {
        com::needPointers(result);
        *result = pid_;
    });
}

HRESULT Param::get_Fmt(BSTR* result) noexcept {
    return text(result, &store::Parameter::format);
}

HRESULT Param::get_IntervalType(BSTR* result) noexcept {
    return text(result, &store::Parameter::interval);
}

HRESULT Param::get_MeasUnits(BSTR* result) noexcept {
    return text(result, &store::Parameter::units);
}

HRESULT Param::get_Name(BSTR* result) noexcept {
    return text(result, &store::Parameter::name);
}

HRESULT Param::get_IOType(LONG* result) noexcept {
    return com::guard(errorSource, __uuidof(DIParam), [&] {
        com::needPointers(result);
        *result = session_->onSite([&](store::Site& site) { return site.parameters().get(pid_).io_type; });
    });
}

HRESULT Param::get_UsedPIDs(BSTR* result) noexcept {
    return text(result, [](const store::Parameter& parameter) {
        std::string list;
        for (const store::Pid used : parameter.uses) {
            if (!list.empty()) list += ',';
            list += std::to_string(used);
        }
        return list;
    });
}

HRESULT Param::GetDataItem(DATE timeStamp, LONG, DIDataArrayItem** result) noexcept {
    return com::guard(errorSource, __uuidof(DIParam), [&] {
        com::needPointers(result);
        *result = nullptr;
        *result = com::make<DataArrayItem>(session_->onSite([&](store::Site& site) {
                      return site.read(pid_, timeOfDate(timeStamp));
                  })).detach();
    });
}

HRESULT Param::ReadDataArray(DIDataArray* data) noexcept {
    return com::guard(errorSource, __uuidof(DIParam), [&] {
        const auto own = session_->reporting([&] {
            if (data == nullptr)
                com::throwError(com::unsetObject, L"ReadDataArray was given no data array to fill.");
            auto found = com::Ptr<DIDataArray>(data).as<OwnDataArray>();
            if (!found)
                com::throwError(
                    DISP_E_TYPEMISMATCH,
                    L"ReadDataArray was given a data array that is not one of this engine's. Create it "
                    L"from this engine's own class.");
            return found;
        });
        session_->onSite([&](store::Site& site) {
            DataArray& array = own->dataArray();
            const store::Span& span = array.span();
            // Cleared first: what the array gives back is what is borrowed here, and what stays when the read
            // fails.
            array.clear();
            if (span.count == 0) {
                // Nothing to read, of a parameter that has to be there all the same.
                static_cast<void>(site.parameters().get(pid_));
                return;
            }
            const std::shared_ptr<store::Run> run = site.borrowRun();
            site.read(pid_, span, *run);
            array.hold(run);
        });
    });
}

HRESULT Param::SpecialFunction(LONG id, SAFEARRAY** moreArgs, VARIANT* result) noexcept {
    return com::guard(errorSource, __uuidof(DIParam), [&] {
        com::needPointers(moreArgs, result);
        VariantInit(result);
        callSpecialFunction(*session_, pid_, id, *moreArgs).detachTo(result);
    });
}

HRESULT Param::SpecialValue(LONG id, VARIANT* result) noexcept {
    return com::guard(errorSource, __uuidof(DIParam), [&] {
        com::needPointers(result);
        VariantInit(result);
        session_->onSite([&](store::Site& site) { return toVariant(site.specialValue(pid_, id)); })
            .detachTo(result);
    });
}

HRESULT Param::get_Relationship(DIRelationship** result) noexcept {
    return com::guard(errorSource, __uuidof(DIParam), [&] {
        com::needPointers(result);
        *result = nullptr;
        session_->onSite([&](store::Site& site) {
            const store::ParameterRelationship* found = site.relationship(pid_);
            if (!found) return;
            *result =
                com::make<Relationship>(LONG{found->interval_count}, com::fromUtf8(found->interval_unit),
                                        com::fromUtf8(*found->detail_xml))
                    .detach();
        });
    });
}

}  // namespace vtdn::embedded
