// Lifetime: objects in any order, the library's unloading, and nothing left behind.
#include "occurrence_call.h"

// Behind the header that it needs.
#include <psapi.h>

namespace vtdn::embedded::test {
namespace {

class EngineLifetime : public OnSite {};

/// Counts the task memory, strings, arrays and variants that are allocated and not freed.
class AllocationSpy final : public IMallocSpy {
  public:
    AllocationSpy() { com::check(CoRegisterMallocSpy(this)); }
    ~AllocationSpy() { CoRevokeMallocSpy(); }
    [[nodiscard]] long live() const { return live_; }

    STDMETHODIMP QueryInterface(REFIID iid, void** out) noexcept override {
        *out = iid == IID_IUnknown || iid == IID_IMallocSpy ? this : nullptr;
        return *out ? S_OK : E_NOINTERFACE;
    }
    STDMETHODIMP_(ULONG) AddRef() noexcept override { return 2; }
    STDMETHODIMP_(ULONG) Release() noexcept override { return 1; }
    STDMETHODIMP_(SIZE_T) PreAlloc(SIZE_T size) noexcept override { return size; }
    STDMETHODIMP_(void*) PostAlloc(void* block) noexcept override {
        if (block) ++live_;
        return block;
    }
    STDMETHODIMP_(void*) PreFree(void* block, BOOL spied) noexcept override {
        if (block && spied) --live_;
        return block;
    }
    STDMETHODIMP_(void) PostFree(BOOL) noexcept override {}
    STDMETHODIMP_(SIZE_T)
    PreRealloc(void*, SIZE_T size, void**, BOOL) noexcept override { return size; }
    STDMETHODIMP_(void*) PostRealloc(void* block, BOOL) noexcept override { return block; }
    STDMETHODIMP_(void*) PreGetSize(void* block, BOOL) noexcept override { return block; }
    STDMETHODIMP_(SIZE_T) PostGetSize(SIZE_T size, BOOL) noexcept override { return size; }
    STDMETHODIMP_(void*) PreDidAlloc(void* block, BOOL) noexcept override { return block; }
    STDMETHODIMP_(int) PostDidAlloc(void*, BOOL, int actual) noexcept override { return actual; }
    STDMETHODIMP_(void) PreHeapMinimize() noexcept override {}
    STDMETHODIMP_(void) PostHeapMinimize() noexcept override {}

  private:
    long live_ = 0;
};

/// Names, lists and special functions, the refused included.
void facts(const engine::Engine& engine, const engine::Param& param) {
    static_cast<void>(engine.utils().name(&DIUtils::MCName, 0, true));
    static_cast<void>(engine.utils().unitName(5));
    static_cast<void>(param.specialValue(-22));
    EXPECT_TRUE(param.relationship());
    static_cast<void>(param.relationship().text(&DIRelationship::get_DetailXML));
    const auto related = engine.relationshipParams();
    EXPECT_EQ(related.count(), 2);
    static_cast<void>(related.item(1).pid());
    EXPECT_NE(failureOf([&] { static_cast<void>(related.item(3)); }).number, 0);
    com::Ptr<IUnknown> all;
    com::check(related.get()->get__NewEnum(all.receive()));
    VARIANT two[2];
    ULONG fetched = 0;
    com::check(all.as<IEnumVARIANT>()->Next(2, two, &fetched));
    for (VARIANT& element : two) VariantClear(&element);
    static_cast<void>(engine.paramsOfTypes(variantsOf({com::Variant::of(LONG{0})})).item(1));
    engine.alarmWriter().writeAlarm(com::Bstr(L"DEMO"), {hour(1), nullptr, nullptr, 1, nullptr, nullptr});
    EXPECT_NE(failureOf([&] { engine.alarmWriter().writeAlarm(com::Bstr(L"X"), {}); }).number, 0);
    for (const LONG id : {102L, 104L, 106L}) {
        com::SafeArray span = variantsOf(nested(test::span(hour(0), hour(5))));
        static_cast<void>(param.specialFunction(id, span));
    }
    com::SafeArray backwards = variantsOf(test::span(hour(5), hour(0)));
    EXPECT_NE(failureOf([&] { static_cast<void>(param.specialFunction(102, backwards)); }).number, 0);
    engine.params().flushCache();
}

/// Data points, the refused included.
void dataPoints(const engine::Engine& engine) {
    const DataPointManagers managers(engine);
    EXPECT_TRUE(managers.update(Manager::longTerm, {}, hour(1), anyText));
    EXPECT_FALSE(managers.list(Manager::shortTerm, minutes, hour(0), hour(1)));
    EXPECT_NE(
        failureOf([&] { static_cast<void>(managers.update(Manager::shortTerm, {}, hour(1), L"")); }).number,
        0);
    EXPECT_NE(
        failureOf([&] { static_cast<void>(managers.list(Manager::longTerm, {}, hour(1), hour(0))); }).number,
        0);
    const auto points = managers.list(Manager::longTerm, {}, hour(1), hour(1));
    const auto point = points.item(1);
    EXPECT_EQ(extraOf(point), anyText);
    point.put(&DIDataPoint::put_NValue, com::Variant::of(std::wstring_view(anyText)));
    static_cast<void>(valueOf(point));
    EXPECT_NE(failureOf([&] { point.put(&DIDataPoint::put_MC, com::Variant::missing()); }).number, 0);
    engine::DataPoint::create().initialise(hour(1));
}

/// Occurrences, the refused and the damaged included.
void occurrences(const engine::Engine& engine) {
    const auto data = engine.longTermData();
    EXPECT_TRUE(saved(data, {.value = com::Variant::of(std::wstring_view(anyText)),
                             .occurrence = xmlOf(bothOf(true, false)),
                             .user = L"user"}));
    EXPECT_NE(failureOf([&] { static_cast<void>(saved(data, {.occurrence = L"text"})); }).number, 0);
    EXPECT_NE(
        failureOf([&] { static_cast<void>(saved(data, {.at = hour(100), .mayCreate = false})); }).number, 0);
    static_cast<void>(engine.selectedDahs().text(&DISelectedDahs::get_EditUserName));
    const auto pids = com::Variant::of(variantsOf({com::Variant::of(LONG{hourPid})}).get());
    const auto found = listed(data, {.pids = pids});
    EXPECT_EQ(found.count(), 1);
    EXPECT_FALSE(listed(data, {.first = hour(2)}));
    EXPECT_NE(failureOf([&] { static_cast<void>(listed(data, {.filter = 3})); }).number, 0);
    EXPECT_NE(failureOf([&] { static_cast<void>(listed(data, {.pids = com::Variant::of(5.0)})); }).number, 0);
    const auto one = found.item(1);
    EXPECT_EQ(one.textValue().view(), anyText);
    static_cast<void>(one.value(&DIOccurrence::get_NValue));
    const com::Bstr text(anyText);
    one.event().put(&DIOccurrenceEvent::put_Downtime_Reason, text.get());
    EXPECT_EQ(one.event().text(&DIOccurrenceEvent::get_Downtime_Reason).view(), anyText);
    const auto point = foundPoint(data, {}, hour(1), hour(1));
    point.put(&DIDataPoint::put_OccDataXML, text.get());
    EXPECT_NE(failureOf([&] { point.event().call(&DIOccurrenceEvent::AddExcursion); }).number, 0);
}

/// Bytes of memory that this process occupies.
SIZE_T occupied() {
    PROCESS_MEMORY_COUNTERS counters{};
    EXPECT_TRUE(GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof counters));
    return counters.WorkingSetSize;
}

void maskedRun(const engine::Param& param) {
    const auto data = engine::DataArray::create();
    const auto mask = engine::DataArray::create();
    for (const auto& array : {data, mask}) array.define(hour(0), 24, com::Bstr(L"h"), 1);
    data.fill(com::Variant::of(std::wstring_view(L"text")), 3);
    data.setItem(2, com::Variant::of(1.5), 4);
    mask.fill(com::Variant::of(LONG{3}), 0);
    com::SafeArray arguments = variantsOf({com::Variant::of(data.get()), com::Variant::of(mask.get())});
    static_cast<void>(param.specialFunction(33, arguments));
    mask.setItem(5, com::Variant::of(LONG{9}), 0);
    EXPECT_NE(failureOf([&] { static_cast<void>(param.specialFunction(33, arguments)); }).number, 0);
}

/// Everything that a client does in a session, the refused included.
void session(LONG dahsId) {
    const auto engine = engine::Engine::create();
    Heard heard(engine);
    static_cast<void>(engine.setupByDahsId(dahsId + 1));
    static_cast<void>(engine.setupByDahsId(dahsId));
    static_cast<void>(engine.selectedDahs().text(&DISelectedDahs::get_DataConnection));
    const auto param = engine.params().item(hourPid);
    static_cast<void>(param.text(&DIParam::get_Name));
    for (const auto& value :
         {com::Variant::of(std::wstring_view(L"text")), com::Variant::of(1.5F), com::Variant::null()})
        storeItem(param, hour(1), value, 7);
    com::SafeArray none;
    EXPECT_NE(failureOf([&] { static_cast<void>(param.specialFunction(6, none)); }).number, 0);
    facts(engine, param);
    dataPoints(engine);
    occurrences(engine);
    maskedRun(param);
    const auto data = engine::DataArray::create();
    data.define(hour(0), 24, com::Bstr(L"h"), 1);
    param.readDataArray(data);
    com::Variant value;
    for (LONG i = 1; i <= 24; ++i) data.item(i).value(value);
    EXPECT_NE(failureOf([&] { static_cast<void>(data.item(25)); }).number, 0);
    engine.close();
}

}  // namespace

TEST_F(EngineLifetime, ASessionLeavesNoAllocationBehind) {
    {
        store::Site site(connections(), "DEMO");
        store::Load load(site);
        const std::vector<store::Relationship> related{{hourPid, store::test::dayMaximumPid}};
        load.replaceRelationships(related);
        load.commit();
    }
    session(dahsId);  // what is made once and kept
    AllocationSpy spy;
    {
        const com::Bstr seen(L"the spy sees this one");
        EXPECT_EQ(spy.live(), 1);
    }
    session(dahsId);
    SetErrorInfo(0, nullptr);
    EXPECT_EQ(spy.live(), 0);
}

TEST_F(EngineLifetime, EveryObjectKeepsTheLibraryAndTheLastOneLetsItGo) {
    const auto created = [](REFCLSID classId) {
        com::Ptr<IUnknown> object;
        com::check(
            CoCreateInstance(classId, nullptr, CLSCTX_INPROC_SERVER, IID_IUnknown, object.receiveVoid()));
        return object;
    };
    for (int round = 0; round < 3; ++round) {
        EngineLibrary another;
        std::vector<com::Ptr<IUnknown>> objects;
        for (const CLSID* classId : {&CLSID_DIEngineClass, &CLSID_DIDataArrayClass,
                                     &CLSID_DIDataArrayItemClass, &CLSID_DIDataPointClass})
            objects.push_back(created(*classId));
        {
            const auto engine = engine::Engine::create();
            ASSERT_TRUE(engine.setupByDahsId(dahsId));
            objects.emplace_back(engine.params().get());
            objects.emplace_back(engine.utils().get());
            objects.emplace_back(engine.alarmWriter().get());
            objects.emplace_back(engine.relationshipParams().get());
            objects.emplace_back(engine.longTermData().get());
            objects.emplace_back(engine.shortTermData().get());
            const DataPointManagers managers(engine);
            ASSERT_TRUE(managers.update(Manager::longTerm, {}, hour(1), L"x"));
            objects.emplace_back(managers.list(Manager::longTerm, {}, hour(1), hour(1)).get());
            objects.emplace_back(managers.list(Manager::longTerm, {}, hour(1), hour(1)).item(1).get());
            ASSERT_TRUE(saved(engine.longTermData(), {.occurrence = xmlOf(downtimeOf(hourPid))}));
            const auto found = listed(engine.longTermData(), {});
            objects.emplace_back(found.get());
            objects.emplace_back(found.item(1).get());
            objects.emplace_back(found.item(1).event().get());
            objects.emplace_back(foundPoint(engine.longTermData(), {}, hour(1), hour(1)).event().get());
            com::Ptr<IUnknown> enumerator;
            com::check(engine.relationshipParams().get()->get__NewEnum(enumerator.receive()));
            objects.push_back(enumerator);
            objects.emplace_back(engine.selectedDahs().get());
            objects.emplace_back(engine.params().item(hourPid).get());
            objects.emplace_back(engine.params().item(hourPid).dataItem(hour(1)).get());
            engine.close();
        }
        another.stopServing();
        library.stopServing();
        while (!objects.empty()) {
            EXPECT_EQ(another.canUnloadNow(), S_FALSE);
            // From the middle, so that neither end comes first.
            objects.erase(objects.begin() + static_cast<std::ptrdiff_t>(objects.size() / 2));
        }
        EXPECT_EQ(another.canUnloadNow(), S_OK);
        library.serve();
    }
}

TEST_F(EngineLifetime, AHundredThousandDataPointsAreWalkedAndReleased) {
    constexpr LONG count = 100'000;
    constexpr DATE minute = 1.0 / 1440;
    {
        const auto engine = engine::Engine::create();
        ASSERT_TRUE(engine.setupByDahsId(dahsId));
        storeMinutes(engine.params().item(minutePid), 1.5F, 7, count);
        const DataPointManagers managers(engine);
        const auto walk = [&] {
            const auto points = managers.list(Manager::shortTerm, minutes, hour(0), hour(0) + count * minute);
            ASSERT_EQ(points.count(), count);
            std::vector<engine::DataPoint> all;
            all.reserve(count);
            for (LONG i = 1; i <= count; ++i) all.push_back(points.item(i));
            EXPECT_NEAR(timeOf(all.back()), hour(0) + (count - 1) * minute, 1e-6);
            EXPECT_EQ(codeOf(all[count / 2]).get().lVal, 7);
        };
        walk();  // the memory that the program keeps for the next time
        const AllocationSpy spy;
        const SIZE_T before = occupied();
        for (int round = 0; round < 3; ++round) walk();
        EXPECT_LT(occupied(), before + count * 16) << "One object for each point would be several times that";
        EXPECT_EQ(spy.live(), 0);
    }
    library.stopServing();
    EXPECT_EQ(library.canUnloadNow(), S_OK) << "No object is left";
    library.serve();
}

TEST_F(EngineLifetime, AHundredThousandOccurrencesAreWalkedAndReleased) {
    constexpr LONG count = 100'000;
    {
        store::Site site(connections(), "DEMO");
        store::Load load(site);
        const store::Occurrence occurrence = bothOf(true, false);
        for (LONG i = 0; i < count; ++i)
            load.writeOccurrence(minutePid, store::timeOf({2007, 3, 25, 0, 0, 0}) + 60 * store::Time{i},
                                 occurrence, {0, "test", "user"});
        load.commit();
    }
    {
        const auto engine = engine::Engine::create();
        ASSERT_TRUE(engine.setupByDahsId(dahsId));
        const auto data = engine.longTermData();
        const auto walk = [&] {
            const auto found = listed(data, {.last = hour(24 * 100)});
            ASSERT_EQ(found.count(), count);
            std::vector<engine::Occurrence> all;
            all.reserve(count);
            for (LONG i = 1; i <= count; ++i) all.push_back(found.item(i));
            EXPECT_EQ(common::secondsOfDate(all.back().date(&DIOccurrence::get_StartDate)),
                      common::secondsOfDate(hour(0)) + 60 * (std::int64_t{count} - 1));
            EXPECT_TRUE(all[count / 2].event().flag(&DIOccurrenceEvent::get_HasDowntime));
        };
        walk();  // the memory that the program keeps for the next time
        const AllocationSpy spy;
        const SIZE_T before = occupied();
        for (int round = 0; round < 3; ++round) walk();
        EXPECT_LT(occupied(), before + count * 16)
            << "One object for each of them would be several times that";
        EXPECT_EQ(spy.live(), 0);
    }
    library.stopServing();
    EXPECT_EQ(library.canUnloadNow(), S_OK) << "No object is left";
    library.serve();
}

TEST_F(EngineLifetime, WhatAnEngineHandedOutOutlivesIt) {
    engine::Param param;
    engine::SelectedDahs selected;
    {
        const auto engine = engine::Engine::create();
        ASSERT_TRUE(engine.setupByDahsId(dahsId));
        param = engine.params().item(hourPid);
        selected = engine.selectedDahs();
    }
    EXPECT_EQ(param.ioType(), 38);
    EXPECT_EQ(selected.dahsId(), dahsId);
    EXPECT_EQ(failureOf([&] { static_cast<void>(param.dataItem(hour(0.5))); }).number, 5);
}

TEST_F(EngineLifetime, AnEngineReleasedWithoutCloseLetsTheFilesGo) {
    {
        const auto engine = engine::Engine::create();
        ASSERT_TRUE(engine.setupByDahsId(dahsId));
        EXPECT_TRUE(engine.params().exists(hourPid));
    }
    std::error_code error;
    std::filesystem::rename(home.file("data.db"), home.file("moved"), error);
    EXPECT_FALSE(error) << error.message();
}

TEST_F(EngineLifetime, UnknownClassesAndAggregationAreRefused) {
    com::Ptr<IUnknown> object;
    EXPECT_EQ(library.getClassObject(IID_IUnknown, IID_IUnknown, object.receiveVoid()),
              CLASS_E_CLASSNOTAVAILABLE);
    com::Ptr<IClassFactory> factory;
    com::check(library.getClassObject(CLSID_DIEngineClass, IID_IClassFactory, factory.receiveVoid()));
    EXPECT_EQ(factory->CreateInstance(factory.get(), IID_IUnknown, object.receiveVoid()),
              CLASS_E_NOAGGREGATION);
}

TEST_F(EngineLifetime, TheLibraryIsUnloadedAndLoadedAgain) {
    library.stopServing();
    for (int round = 0; round < 5; ++round) {
        EngineLibrary again;
        const auto engine = engine::Engine::create();
        EXPECT_TRUE(engine.setupByDahsId(dahsId));
    }
    library.serve();
}

}  // namespace vtdn::embedded::test
