// Lists of parameters: by type, and those with a relationship.
#include <oaidl.h>

#include <optional>

#include "special_call.h"

namespace vtdn::embedded::test {
namespace {

class EngineCollections : public OnSpecialFunctions {
  protected:
    EngineCollections() {
        configure([](store::Load& load) {
            auto all = store::test::demoParameters();
            for (auto& parameter : all)
                parameter.parameter_type = parameter.pid == hourPid || parameter.pid == minutePid ? 3
                                           : parameter.pid == limitPid                            ? 45
                                                                                                  : 0;
            load.replaceParameters(all);
            const std::vector<store::Relationship> related{{minutePid, averagePid}};
            load.replaceRelationships(related);
        });
    }
    [[nodiscard]] engine::Collection<engine::Param> ofTypes(Arguments types) const {
        return engine.paramsOfTypes(variantsOf(std::move(types)));
    }
    [[nodiscard]] engine::Collection<engine::Param> calibration() const {
        return ofTypes({com::Variant::of(LONG{3})});
    }
    [[nodiscard]] static com::Ptr<IEnumVARIANT> enumerator(
        const engine::Collection<engine::Param>& collection) {
        com::Ptr<IUnknown> made;
        com::check(collection.get()->get__NewEnum(made.receive()));
        return made.as<IEnumVARIANT>();
    }
    /// PIDs of the next elements of an enumerator, up to `most`.
    static std::vector<LONG> next(IEnumVARIANT& from, ULONG most) {
        std::vector<VARIANT> room(most + 1);
        ULONG fetched = 99;
        const HRESULT result = from.Next(most, room.data(), &fetched);
        EXPECT_EQ(result, fetched == most ? S_OK : S_FALSE);
        std::vector<LONG> pids;
        for (ULONG i = 0; i < fetched; ++i) {
            EXPECT_EQ(room[i].vt, VT_DISPATCH);
            const auto object = com::Ptr<IDispatch>::adopt(room[i].pdispVal);
            LONG pid = 0;
            EXPECT_EQ(object.as<DIParam>()->get_PID(&pid), S_OK);
            pids.push_back(pid);
        }
        return pids;
    }
};

std::vector<LONG> pidsOf(const engine::Collection<engine::Param>& collection) {
    std::vector<LONG> pids;
    for (LONG i = 1; i <= collection.count(); ++i) pids.push_back(collection.item(i).pid());
    return pids;
}

}  // namespace

TEST_F(EngineCollections, ParametersOfATypeComeInTheOrderOfTheirPids) {
    EXPECT_EQ(pidsOf(calibration()), (std::vector<LONG>{minutePid, hourPid}));
    EXPECT_EQ(pidsOf(ofTypes({com::Variant::of(LONG{45})})), std::vector<LONG>{limitPid});
}

TEST_F(EngineCollections, AnElementIsTheParameter) {
    const engine::Param found = calibration().item(2);
    EXPECT_EQ(found.pid(), hourPid);
    EXPECT_EQ(found.text(&DIParam::get_IntervalType).view(), L"1h");
    EXPECT_EQ(found.ioType(), 38);
}

TEST_F(EngineCollections, SeveralTypesAreOneListWithoutRepeats) {
    EXPECT_EQ(
        pidsOf(ofTypes({com::Variant::of(LONG{45}), com::Variant::of(LONG{3}), com::Variant::of(LONG{45})})),
        (std::vector<LONG>{minutePid, hourPid, limitPid}));
}

TEST_F(EngineCollections, AnUnknownTypeAndNoTypeAtAllGiveNothing) {
    EXPECT_EQ(ofTypes({com::Variant::of(LONG{77})}).count(), 0);
    EXPECT_EQ(ofTypes({com::Variant::of(LONG{-3})}).count(), 0);
    EXPECT_EQ(ofTypes({}).count(), 0);
    EXPECT_EQ(heard.take(), std::vector<std::wstring>{});
}

TEST_F(EngineCollections, TypesMayBeWholeNumbersOfAnySizeAndArraysHaveAnyLowerBound) {
    Arguments types(2);
    types[0].inOut()->vt = VT_I2;
    types[0].inOut()->iVal = 3;
    types[1].inOut()->vt = VT_UI1;
    types[1].inOut()->bVal = 45;
    EXPECT_EQ(engine.paramsOfTypes(variantsOf(types, -7)).count(), 3);
}

TEST_F(EngineCollections, OtherTypesAreRefused) {
    const auto refusedTypes = [&](SAFEARRAY* array) {
        DICollection* none = reinterpret_cast<DICollection*>(1);
        const HRESULT result = engine.get()->ParamsOfTypes(array, &none);
        EXPECT_EQ(none, nullptr);
        const com::Error error = com::lastError(result);
        EXPECT_EQ(heard.take(), std::vector{error.description()});
        return error.number();
    };
    EXPECT_EQ(refusedTypes(nullptr), 13);
    EXPECT_EQ(refusedTypes(com::SafeArray::of<LONG>(1).get()), 13);
    SAFEARRAYBOUND bounds[]{{1, 0}, {1, 0}};
    EXPECT_EQ(refusedTypes(com::SafeArray(SafeArrayCreate(VT_VARIANT, 2, bounds)).get()), 13);
    for (const auto& value :
         {com::Variant(), com::Variant::null(), com::Variant::missing(), com::Variant::of(3.5),
          com::Variant::of(std::wstring_view(L"3")), com::Variant::of(engine.get())})
        EXPECT_EQ(refusedTypes(variantsOf({value}).get()), 13) << value.type();
}

TEST_F(EngineCollections, IndexesGoFromOneToTheCount) {
    const auto list = calibration();
    for (const LONG outside : {0L, -1L, 3L, LONG_MAX, LONG_MIN}) {
        const Failure failure = failureOf([&] { static_cast<void>(list.item(outside)); });
        EXPECT_EQ(failure.number, 9) << outside;
        EXPECT_NE(failure.description.find(L"from 1 to 2"), std::wstring::npos) << failure.description;
        EXPECT_EQ(heard.take(), std::vector{failure.description});
    }
    EXPECT_EQ(failureOf([&] { static_cast<void>(ofTypes({}).item(1)); }).number, 9);
}

TEST_F(EngineCollections, AnEnumeratorGoesThroughAllOnce) {
    const auto all = enumerator(calibration());
    EXPECT_EQ(next(*all.get(), 1), std::vector<LONG>{minutePid});
    EXPECT_EQ(next(*all.get(), 1), std::vector<LONG>{hourPid});
    EXPECT_EQ(next(*all.get(), 1), std::vector<LONG>{});
    EXPECT_EQ(all->Reset(), S_OK);
    EXPECT_EQ(next(*all.get(), 5), (std::vector<LONG>{minutePid, hourPid}));
    EXPECT_EQ(next(*all.get(), 0), std::vector<LONG>{});
}

TEST_F(EngineCollections, AnEnumeratorSkipsUpToItsEnd) {
    const auto all = enumerator(calibration());
    EXPECT_EQ(all->Skip(1), S_OK);
    EXPECT_EQ(next(*all.get(), 1), std::vector<LONG>{hourPid});
    EXPECT_EQ(all->Reset(), S_OK);
    EXPECT_EQ(all->Skip(3), S_FALSE);
    EXPECT_EQ(next(*all.get(), 1), std::vector<LONG>{});
    EXPECT_EQ(all->Skip(0), S_OK);
}

TEST_F(EngineCollections, ACloneGoesOnFromTheSamePlaceOnItsOwn) {
    const auto all = enumerator(calibration());
    EXPECT_EQ(all->Skip(1), S_OK);
    com::Ptr<IEnumVARIANT> clone;
    ASSERT_EQ(all->Clone(clone.receive()), S_OK);
    EXPECT_EQ(next(*all.get(), 1), std::vector<LONG>{hourPid});
    EXPECT_EQ(next(*clone.get(), 1), std::vector<LONG>{hourPid});
    EXPECT_EQ(clone->Reset(), S_OK);
    EXPECT_EQ(next(*clone.get(), 1), std::vector<LONG>{minutePid});
    EXPECT_EQ(next(*all.get(), 1), std::vector<LONG>{});
}

TEST_F(EngineCollections, OneElementNeedsNoCount) {
    const auto all = enumerator(calibration());
    com::Variant element;
    EXPECT_EQ(all->Next(1, element.receive(), nullptr), S_OK);
    EXPECT_EQ(element.type(), VT_DISPATCH);
    VARIANT two[2];
    EXPECT_EQ(all->Next(2, two, nullptr), E_POINTER);
    ULONG fetched = 7;
    EXPECT_EQ(all->Next(1, nullptr, &fetched), E_POINTER);
    EXPECT_EQ(fetched, 0U);
    EXPECT_EQ(all->Clone(nullptr), E_POINTER);
}

TEST_F(EngineCollections, ScriptsGoThroughACollectionByItsReservedMembers) {
    com::Ptr<IDispatch> late(calibration().get());
    DISPPARAMS none{};
    com::Variant made;
    ASSERT_EQ(late->Invoke(DISPID_NEWENUM, IID_NULL, LOCALE_USER_DEFAULT,
                           DISPATCH_PROPERTYGET | DISPATCH_METHOD, &none, made.receive(), nullptr, nullptr),
              S_OK);
    ASSERT_EQ(made.type(), VT_UNKNOWN);
    const auto all = com::Ptr<IUnknown>(made.get().punkVal).as<IEnumVARIANT>();
    ASSERT_TRUE(all);
    EXPECT_EQ(next(*all.get(), 3), (std::vector<LONG>{minutePid, hourPid}));
    com::Variant index = com::Variant::of(LONG{2});
    DISPPARAMS one{index.inOut(), nullptr, 1, 0};
    com::Variant element;
    ASSERT_EQ(late->Invoke(DISPID_VALUE, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &one,
                           element.receive(), nullptr, nullptr),
              S_OK);
    EXPECT_EQ(element.type(), VT_DISPATCH);
}

TEST_F(EngineCollections, ACollectionShowsWhatThereWasWhenItWasMade) {
    const auto before = calibration();
    configure([](store::Load& load) { load.replaceParameters(store::test::demoParameters()); });
    EXPECT_EQ(before.count(), 2);
    EXPECT_EQ(calibration().count(), 0);
}

TEST_F(EngineCollections, RelatedParametersAreListedWhateverTheArguments) {
    EXPECT_EQ(pidsOf(engine.relationshipParams()), (std::vector<LONG>{minutePid, averagePid}));
    com::Ptr<DICollection> same;
    ASSERT_EQ(engine.get()->RelationshipParams(5, 17, same.receive()), S_OK);
    LONG count = 0;
    EXPECT_EQ(same->get_Count(&count), S_OK);
    EXPECT_EQ(count, 2);
}

TEST_F(EngineCollections, ASiteWithoutRelationshipsGivesAnEmptyList) {
    configure([](store::Load& load) { load.replaceRelationships({}); });
    EXPECT_EQ(engine.relationshipParams().count(), 0);
}

TEST_F(EngineCollections, ListsNeedASite) {
    engine.close();
    const std::vector<std::function<void()>> lists{
        [&] { static_cast<void>(engine.relationshipParams()); },
        [&] { static_cast<void>(calibration()); },
    };
    for (const auto& list : lists) {
        const Failure failure = failureOf(list);
        EXPECT_EQ(failure.number, 91);
        EXPECT_EQ(heard.take(), std::vector{failure.description});
    }
}

TEST_F(EngineCollections, ACollectionOutlivesItsEngine) {
    std::optional<engine::Collection<engine::Param>> list;
    {
        const auto other = engine::Engine::create();
        ASSERT_TRUE(other.setupByDahsId(dahsId));
        list = other.paramsOfTypes(variantsOf({com::Variant::of(LONG{3})}));
        other.close();
    }
    EXPECT_EQ(pidsOf(*list), (std::vector<LONG>{minutePid, hourPid}));
    EXPECT_EQ(failureOf([&] { static_cast<void>(list->item(1).ioType()); }).number, 91);
    EXPECT_EQ(failureOf([&] { static_cast<void>(list->item(3)); }).number, 9);
}

TEST_F(EngineCollections, NullPointersAreRefused) {
    EXPECT_EQ(engine.get()->RelationshipParams(0, -1, nullptr), E_POINTER);
    EXPECT_EQ(engine.get()->ParamsOfTypes(nullptr, nullptr), E_POINTER);
    const auto list = calibration();
    EXPECT_EQ(list.get()->get_Count(nullptr), E_POINTER);
    EXPECT_EQ(list.get()->Item(1, nullptr), E_POINTER);
    EXPECT_EQ(list.get()->get__NewEnum(nullptr), E_POINTER);
}

}  // namespace vtdn::embedded::test
