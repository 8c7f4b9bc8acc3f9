// Events: the sink of a client and the connection point of a source.
#include <gtest/gtest.h>
#include <olectl.h>

#include <functional>
#include <string>
#include <vector>

#include "com/event_sink.h"
#include "probe.h"

namespace vtdn::test {
namespace {

using com::Ptr;

class Listener final : public com::EventListener {
  public:
    void event(DISPID id, const com::EventArguments& arguments) override {
        com::Bstr text;
        if (arguments.size() == 2) com::check(com::toText(arguments[1], text));
        LONG kind = 0;
        if (arguments.size() == 2) com::check(com::toInt32(arguments[0], kind));
        heard.push_back(std::to_wstring(id) + L":" + std::to_wstring(kind) + L":" +
                        std::wstring(text.view()));
        if (meanwhile) meanwhile();
    }
    std::vector<std::wstring> heard;
    std::function<void()> meanwhile;
};

using Heard = std::vector<std::wstring>;

class Events : public testing::Test {
  protected:
    Ptr<Probe> source = com::make<Probe>();
    Listener listener;
    com::EventSink sink;

    void connect(com::EventSink& to, Listener& with) {
        to.connect(source->unknown(), DIID_IProbeEvents, with);
    }
    void raise(const wchar_t* text) { EXPECT_EQ(source->Raise(3, com::Bstr(text).get()), S_OK); }
    Ptr<IConnectionPoint> point() {
        Ptr<IConnectionPoint> found;
        EXPECT_EQ(source->FindConnectionPoint(DIID_IProbeEvents, found.receive()), S_OK);
        return found;
    }
    std::size_t connections() {
        Ptr<IEnumConnections> list;
        EXPECT_EQ(point()->EnumConnections(list.receive()), S_OK);
        std::size_t count = 0;
        CONNECTDATA data;
        while (list->Next(1, &data, nullptr) == S_OK) {
            data.pUnk->Release();
            ++count;
        }
        return count;
    }
};

TEST_F(Events, ReachTheListenerWithTheirArgumentsInOrder) {
    connect(sink, listener);
    EXPECT_TRUE(sink.isConnected());
    raise(L"one");
    raise(L"two");
    EXPECT_EQ(listener.heard, (Heard{L"1:3:one", L"1:3:two"}));
}

TEST_F(Events, EndWithTheConnection) {
    connect(sink, listener);
    EXPECT_EQ(connections(), 1U);
    sink.disconnect();
    EXPECT_FALSE(sink.isConnected());
    EXPECT_EQ(connections(), 0U);
    raise(L"late");
    EXPECT_TRUE(listener.heard.empty());
    sink.disconnect();
}

TEST_F(Events, OfASourceThatHoldsOnToTheSinkReachNobody) {
    // A source that never lets go: it calls after the listener is gone.
    Ptr<IDispatch> kept;
    {
        Listener brief;
        com::EventSink own;
        connect(own, brief);
        Ptr<IEnumConnections> list;
        ASSERT_EQ(point()->EnumConnections(list.receive()), S_OK);
        CONNECTDATA data;
        ASSERT_EQ(list->Next(1, &data, nullptr), S_OK);
        kept = Ptr<IUnknown>::adopt(data.pUnk).as<IDispatch>();
    }
    DISPPARAMS none{};
    EXPECT_EQ(kept->Invoke(1, IID_NULL, 0, DISPATCH_METHOD, &none, nullptr, nullptr, nullptr), S_OK);
    EXPECT_EQ(kept->Invoke(1, IID_NULL, 0, DISPATCH_METHOD, nullptr, nullptr, nullptr, nullptr),
              E_INVALIDARG);
}

TEST_F(Events, KeepNeitherSideAlive) {
    const LONG before = Probe::count();
    connect(sink, listener);
    source.reset();
    EXPECT_EQ(Probe::count(), before - 1);
    // Unadvising a source that is gone is safe.
    sink.disconnect();
}

TEST_F(Events, AreForgottenByAPointWhoseSourceIsGone) {
    const Ptr<IConnectionPoint> kept = point();
    connect(sink, listener);
    source.reset();
    Ptr<IConnectionPointContainer> container;
    EXPECT_EQ(kept->GetConnectionPointContainer(container.receive()), E_UNEXPECTED);
    DWORD cookie = 0;
    EXPECT_EQ(kept->Advise(kept.get(), &cookie), CONNECT_E_CANNOTCONNECT);
    EXPECT_EQ(kept->Unadvise(1), CONNECT_E_NOCONNECTION);
}

TEST_F(Events, MayEndTheirOwnConnection) {
    Listener second;
    com::EventSink other;
    connect(sink, listener);
    connect(other, second);
    listener.meanwhile = [&] { sink.disconnect(); };
    raise(L"one");
    raise(L"two");
    EXPECT_EQ(listener.heard, (Heard{L"1:3:one"}));
    EXPECT_EQ(second.heard, (Heard{L"1:3:one", L"1:3:two"}));
}

TEST_F(Events, DoNotReachASinkThatAnotherHasDisconnected) {
    Listener second;
    com::EventSink other;
    connect(sink, listener);
    connect(other, second);
    listener.meanwhile = [&] { other.disconnect(); };
    raise(L"one");
    EXPECT_TRUE(second.heard.empty());
}

TEST_F(Events, MayConnectOthers) {
    Listener second;
    com::EventSink other;
    connect(sink, listener);
    listener.meanwhile = [&] {
        if (!other.isConnected()) connect(other, second);
    };
    raise(L"one");
    EXPECT_TRUE(second.heard.empty());
    raise(L"two");
    EXPECT_EQ(second.heard, (Heard{L"1:3:two"}));
}

TEST_F(Events, SurviveAListenerThatThrows) {
    Listener second;
    com::EventSink other;
    connect(sink, listener);
    connect(other, second);
    listener.meanwhile = [] { throw std::runtime_error("no"); };
    raise(L"one");
    EXPECT_EQ(second.heard, (Heard{L"1:3:one"}));
}

TEST_F(Events, MayEndTheListenersOtherConnectionAndMakeItAnew) {
    connect(sink, listener);
    listener.meanwhile = [&] { connect(sink, listener); };
    raise(L"one");
    EXPECT_EQ(connections(), 1U);
    EXPECT_EQ(listener.heard.size(), 1U);
}

TEST_F(Events, OfASourceWithoutThemCannotBeConnected) {
    EXPECT_THROW(sink.connect(source->unknown(), IID_IDispatch, listener), com::Error);
    EXPECT_THROW(sink.connect(nullptr, DIID_IProbeEvents, listener), com::Error);
    EXPECT_THROW(sink.connect(point().get(), DIID_IProbeEvents, listener), com::Error);
    EXPECT_FALSE(sink.isConnected());
}

TEST_F(Events, ThePointKnowsItsPlace) {
    const Ptr<IConnectionPoint> found = point();
    IID iid;
    EXPECT_EQ(found->GetConnectionInterface(&iid), S_OK);
    EXPECT_TRUE(iid == DIID_IProbeEvents);
    Ptr<IConnectionPointContainer> container;
    EXPECT_EQ(found->GetConnectionPointContainer(container.receive()), S_OK);
    EXPECT_TRUE(container);
    Ptr<IConnectionPoint> other;
    EXPECT_EQ(source->FindConnectionPoint(IID_IDispatch, other.receive()), CONNECT_E_NOCONNECTION);
    EXPECT_EQ(source->FindConnectionPoint(IID_IDispatch, nullptr), E_POINTER);
    EXPECT_EQ(source->EnumConnectionPoints(nullptr), E_POINTER);
    EXPECT_EQ(found->GetConnectionInterface(nullptr), E_POINTER);
    EXPECT_EQ(found->GetConnectionPointContainer(nullptr), E_POINTER);
    EXPECT_EQ(found->EnumConnections(nullptr), E_POINTER);
    DWORD cookie = 0;
    EXPECT_EQ(found->Advise(nullptr, &cookie), E_POINTER);
    EXPECT_EQ(found->Advise(found.get(), &cookie), CONNECT_E_CANNOTCONNECT);
    EXPECT_EQ(found->Unadvise(1234), CONNECT_E_NOCONNECTION);
}

TEST_F(Events, PointsAreEnumerated) {
    Ptr<IEnumConnectionPoints> list;
    ASSERT_EQ(source->EnumConnectionPoints(list.receive()), S_OK);
    IConnectionPoint* points[2] = {};
    ULONG fetched = 9;
    EXPECT_EQ(list->Next(2, points, &fetched), S_FALSE);
    EXPECT_EQ(fetched, 1U);
    EXPECT_EQ(Ptr<IConnectionPoint>::adopt(points[0]).get(), point().get());
    EXPECT_EQ(list->Next(2, points, nullptr), E_POINTER);
    EXPECT_EQ(list->Skip(1), S_FALSE);
    EXPECT_EQ(list->Reset(), S_OK);
    Ptr<IEnumConnectionPoints> clone;
    EXPECT_EQ(list->Clone(clone.receive()), S_OK);
    EXPECT_EQ(clone->Skip(1), S_OK);
    EXPECT_EQ(clone->Next(1, points, nullptr), S_FALSE);
}

}  // namespace
}  // namespace vtdn::test
