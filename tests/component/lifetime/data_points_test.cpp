// How long data points live: the objects, the engine's data points behind them, the library.
#include <VTWrapperDN.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <vector>

#include "com/error.h"
#include "com/strings.h"
#include "fake_engine/lenient.h"
#include "lifetime/elements.h"
#include "support/client.h"

namespace vtdn::test {
namespace {

using com::Bstr;
using com::Ptr;
using DataPoint = Ptr<_DataPointBasicWrapper>;

constexpr LONG tag = 530001;
constexpr DATE start = 39448;
constexpr double hour = 1.0 / 24;

const Bstr hourly(L"1h");

class DataPointLifetime : public testing::Test {
  protected:
    /// A site with `count` hours of data.
    void furnish(int count) {
        auto& points = site.longTerm[tag];
        for (int i = 0; i < count; ++i)
            points.push_back({start + i * hour, com::Variant::of(static_cast<LONG>(i)),
                              com::Variant::of(LONG{1}), L"", L""});
        site.shortTerm[tag] = {{start, com::Variant::of(1.5), com::Variant::null(), L"", L"<x/>"}};
    }
    [[nodiscard]] static com::SafeArray list(_DIWrapper& wrapper) {
        SAFEARRAY* array = nullptr;
        EXPECT_EQ(wrapper.GetLongTermDataPoints(tag, hourly.get(), start, start + 10'000, &array), S_OK);
        return com::SafeArray(array);
    }
    static LONG valueOf(const DataPoint& point) {
        com::Variant value;
        EXPECT_EQ(point->get_NValue(value.receive()), S_OK);
        EXPECT_EQ(value.type(), VT_I4);
        return value.get().lVal;
    }

    fake::Site site;
    const fake::LenientServer server{site};
    const Component library{componentPath()};
};

TEST_F(DataPointLifetime, WrapperArrayAndObjectsCanBeReleasedInAnyOrder) {
    furnish(2);
    std::vector<int> order = {0, 1, 2, 3, 4};
    do {
        Ptr<_DIWrapper> wrapper = library.create<_DIWrapper>(CLSID_DIWrapper);
        EXPECT_TRUE(Client(wrapper).setup());
        com::SafeArray array = list(*wrapper.get());
        DataPoint first = at<_DataPointBasicWrapper>(array, 0);
        DataPoint second = at<_DataPointBasicWrapper>(array, 1);
        DataPoint blank;
        EXPECT_EQ(wrapper->MakeBlankDataPointWrapper(start, blank.receive()), S_OK);
        EXPECT_EQ(site.objects, 4);
        const std::function<void()> releases[] = {[&] { wrapper.reset(); }, [&] { array = {}; },
                                                  [&] { first.reset(); }, [&] { second.reset(); },
                                                  [&] { blank.reset(); }};
        for (const int one : order) {
            EXPECT_EQ(library.canUnloadNow(), S_FALSE);
            releases[one]();
            // What is left still answers.
            if (first) {
                EXPECT_EQ(valueOf(first), 0);
            }
            if (second) {
                EXPECT_EQ(valueOf(second), 1);
            }
            if (blank) {
                EXPECT_EQ(blank->SetMCToNull(), S_OK);
            }
        }
        EXPECT_EQ(site.objects, 0);
        EXPECT_EQ(library.canUnloadNow(), S_OK);
    } while (std::next_permutation(order.begin(), order.end()));
}

TEST_F(DataPointLifetime, AnObjectKeepsTheLibraryLoadedByItself) {
    DataPoint blank;
    EXPECT_EQ(library.create<_DIWrapper>(CLSID_DIWrapper)->MakeBlankDataPointWrapper(start, blank.receive()),
              S_OK);
    EXPECT_EQ(library.canUnloadNow(), S_FALSE);
    EXPECT_EQ(site.objects, 1);
    blank.reset();
    EXPECT_EQ(site.objects, 0);
    EXPECT_EQ(library.canUnloadNow(), S_OK);
}

TEST_F(DataPointLifetime, ItsInterfacesAreOneObjectAndItCannotBeCreated) {
    DataPoint blank;
    EXPECT_EQ(library.create<_DIWrapper>(CLSID_DIWrapper)->MakeBlankDataPointWrapper(start, blank.receive()),
              S_OK);
    const auto identity = blank.as<IUnknown>();
    for (const IID& iid :
         {__uuidof(_DataPointBasicWrapper), IID_IDispatch, IID_ISupportErrorInfo, IID_IProvideClassInfo}) {
        Ptr<IUnknown> found;
        ASSERT_EQ(blank->QueryInterface(iid, found.receiveVoid()), S_OK);
        EXPECT_EQ(found.as<IUnknown>().get(), identity.get());
    }
    for (const IID& iid : {__uuidof(_DIWrapper), IID_IClassFactory}) {
        void* out = &out;
        EXPECT_EQ(blank->QueryInterface(iid, &out), E_NOINTERFACE);
        EXPECT_EQ(out, nullptr);
    }
    const auto errors = blank.as<ISupportErrorInfo>();
    const auto provider = blank.as<IProvideClassInfo>();
    ASSERT_TRUE(errors && provider);
    EXPECT_EQ(errors->InterfaceSupportsErrorInfo(__uuidof(_DataPointBasicWrapper)), S_OK);
    Ptr<ITypeInfo> type;
    ASSERT_EQ(provider->GetClassInfo(type.receive()), S_OK);
    TYPEATTR* attributes = nullptr;
    ASSERT_EQ(type->GetTypeAttr(&attributes), S_OK);
    EXPECT_TRUE(IsEqualGUID(attributes->guid, CLSID_DataPointBasicWrapper));
    EXPECT_EQ(attributes->wTypeFlags & TYPEFLAG_FCANCREATE, 0);
    type->ReleaseTypeAttr(attributes);
    void* factory = &factory;
    EXPECT_EQ(library.getClassObject(CLSID_DataPointBasicWrapper, IID_IClassFactory, &factory),
              CLASS_E_CLASSNOTAVAILABLE);
    EXPECT_EQ(factory, nullptr);
}

TEST_F(DataPointLifetime, AHundredThousandAreListedWalkedAndReleased) {
    constexpr int count = 100'000;
    furnish(count);
    Client client(library.create<_DIWrapper>(CLSID_DIWrapper));
    EXPECT_TRUE(client.setup());
    com::SafeArray array = list(*client.get());
    EXPECT_EQ(com::bounds(array.get()), (com::Bounds{0, count - 1}));
    EXPECT_EQ(site.objects, count + 1);
    {
        LONG expected = 0;
        LONG wrong = 0;
        for (IDispatch* const element : com::ArrayView<IDispatch*>(array.get())) {
            DataPoint point;
            com::check(element->QueryInterface(__uuidof(_DataPointBasicWrapper), point.receiveVoid()));
            DATE stamp = 0;
            EXPECT_EQ(point->get_TStamp(&stamp), S_OK);
            if (valueOf(point) != expected || stamp != start + expected * hour) ++wrong;
            ++expected;
        }
        EXPECT_EQ(wrong, 0);
    }
    array = {};
    EXPECT_EQ(site.objects, 1);
    client.release();
    EXPECT_EQ(site.objects, 0);
    EXPECT_EQ(library.canUnloadNow(), S_OK);
}

TEST_F(DataPointLifetime, AFailureInTheMiddleOfALongListLeavesNothingBehind) {
    class Failing : public fake::Tap {
      public:
        HRESULT onCall(const char* call) override {
            return std::string_view(call) == "DICollection.Item" && ++items == 5'000 ? E_FAIL : S_OK;
        }
        int items = 0;
    } failing;
    furnish(10'000);
    const Client client(library.create<_DIWrapper>(CLSID_DIWrapper));
    EXPECT_TRUE(client.setup());
    site.tap = &failing;
    EXPECT_EQ(
        client.failure(&_DIWrapper::GetLongTermDataPoints, tag, hourly.get(), start, start + 10'000).result,
        E_FAIL);
    EXPECT_EQ(failing.items, 5'000);
    EXPECT_EQ(site.objects, 1);
    EXPECT_EQ(client.problems(), L"");
}

TEST_F(DataPointLifetime, AnUpdateReachesTheStoredDataPointAndNoOther) {
    furnish(3);
    const Client client(library.create<_DIWrapper>(CLSID_DIWrapper));
    EXPECT_TRUE(client.setup());
    const com::SafeArray array = list(*client.get());
    const DataPoint second = at<_DataPointBasicWrapper>(array, 1);
    const Bstr extra(L"<x>\xD83D\xDE00</x>");
    EXPECT_EQ(second->put_XValueXML(extra.get()), S_OK);
    EXPECT_EQ(second->put_NValue(com::Variant::of(LONG{77}).get()), S_OK);
    EXPECT_TRUE(client.yes(&_DIWrapper::UpdateLongTermDataPointXValue, second.get(), tag, hourly.get()));
    EXPECT_EQ(site.longTerm[tag][1].extra, extra.view());
    EXPECT_EQ(site.longTerm[tag][1].value.get().lVal, 1);
    EXPECT_EQ(site.longTerm[tag][0].extra, L"");
    EXPECT_EQ(site.longTerm[tag][2].extra, L"");
    EXPECT_EQ(site.shortTerm[tag][0].extra, L"<x/>");
    // The engine's own False: no data point there.
    EXPECT_FALSE(client.yes(&_DIWrapper::UpdateLongTermDataPointXValue, second.get(), tag + 1, hourly.get()));
    EXPECT_FALSE(client.yes(&_DIWrapper::UpdateShortTermDataPointXValue, second.get(), tag, hourly.get()));
    EXPECT_EQ(client.problems(), L"");
}

}  // namespace
}  // namespace vtdn::test
