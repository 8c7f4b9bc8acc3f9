#include "data_interface/write_functions.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "data_interface/value.h"

namespace vtdn::embedded {
namespace {

store::Item contentsOf(DIDataArrayItem& item) {
    com::Variant value;
    LONG code = 0;
    com::check(item.get_Value(value.receive()));
    com::check(item.get_MC(&code));
    return {fromVariant(value.get()), code};
}

bool samePlace(const store::Span& a, const store::Span& b) {
    return a.start == b.start && a.count == b.count && a.interval == b.interval;
}

[[noreturn]] void refuseMask(std::int32_t at, HRESULT result, const wchar_t* what) {
    com::throwError(result, L"Item " + std::to_wstring(at + 1) + L" of the mask array is " + what +
                                L". A mask says 0 for nothing, 1 for the value, 2 for the monitor code, or 3 "
                                L"for both.");
}

store::WriteParts partsIn(const store::Value& value, std::int32_t at) {
    const std::optional<double> number = store::numberOf(value);
    if (!number)
        refuseMask(at, DISP_E_TYPEMISMATCH,
                   store::kindOf(value) == store::ValueKind::text ? L"a text" : L"no value");
    for (const auto parts : {store::WriteParts::nothing, store::WriteParts::value, store::WriteParts::code,
                             store::WriteParts::both})
        if (*number == static_cast<double>(parts)) return parts;
    refuseMask(at, DISP_E_OVERFLOW, L"another number");
}

std::vector<store::WriteParts> maskIn(DataArray& array) {
    const std::int32_t count = array.span().count;
    std::vector<store::WriteParts> mask(static_cast<std::size_t>(count));
    for (std::int32_t at = 0; at < count;) {
        DIDataRun stretch{};
        com::check(array.GetRun(at + 1, &stretch));
        const auto* numbers = stretch.type == VT_I4 ? static_cast<const LONG*>(stretch.values) : nullptr;
        for (LONG i = 0; i < stretch.count; ++i, ++at) {
            const bool plain = numbers && numbers[i] >= 0 && numbers[i] <= 3;
            mask[static_cast<std::size_t>(at)] =
                plain ? static_cast<store::WriteParts>(numbers[i]) : partsIn(array.value(at), at);
        }
    }
    return mask;
}

}  // namespace

com::Variant writeDataItem(Session& session, store::Pid pid, const SpecialArguments& arguments) {
    // All that can leave the engine comes before the site is touched.
    store::Time time = 0;
    store::Item item;
    session.reporting([&] {
        time = arguments.time(0);
        item = contentsOf(*arguments.dataItem(1).get());
    });
    session.onSite([&](store::Site& site) { site.write(pid, time, {item}); });
    return com::Variant::ofBool(true);
}

com::Variant writeDataArray(Session& session, store::Pid pid, const SpecialArguments& arguments) {
    // All that can leave the engine comes before the site is touched.
    com::Ptr<OwnDataArray> data;
    com::Ptr<OwnDataArray> mask;
    session.reporting([&] {
        data = arguments.dataArray(0);
        mask = arguments.dataArray(1);
    });
    session.onSite([&](store::Site& site) {
        const DataArray& items = data->dataArray();
        if (!samePlace(items.span(), mask->dataArray().span()))
            com::throwError(
                invalidCall,
                L"The data array and the mask array of special function 33 are not defined alike. "
                L"Call Define of both with the same start, count, interval type and length.");
        const std::vector<store::WriteParts> parts = maskIn(mask->dataArray());
        site.write(pid, items.span(), *items.run(), parts);
    });
    return com::Variant::ofBool(true);
}

}  // namespace vtdn::embedded
