#include "data_interface/session.h"

#include <array>
#include <string>

#include "com/computer.h"
#include "com/strings.h"

namespace vtdn::embedded {
namespace {

constexpr std::array<store::DatabaseKind, 5> siteDatabases{
    store::DatabaseKind::alarm, store::DatabaseKind::config, store::DatabaseKind::data,
    store::DatabaseKind::dataShortTerm, store::DatabaseKind::realtime};

}  // namespace

void Session::setUp(store::Dahs dahs) {
    store::Site opened(dahs.connections, dahs.site_id);
    dahs.site_id = opened.siteId();
    binding_ = Binding{std::move(dahs), std::move(opened)};
    std::wstring readOnly;
    for (const store::DatabaseKind kind : siteDatabases) {
        const store::Database& database = binding_->site.database(kind);
        if (database.isReadOnly())
            readOnly += (readOnly.empty() ? L"" : L", ") + com::fromUtf8(database.file());
    }
    if (!readOnly.empty())
        say(MessageType::note,
            L"The site can be read but not written to, because these files are read-only: " + readOnly +
                L". Allow this user to write to them to change that.");
}

const store::Dahs& Session::dahs() const noexcept {
    static const store::Dahs none;
    return binding_ ? binding_->dahs : none;
}

store::EditOrigin Session::editNow() const {
    return {com::standardTimeNow(), client_, com::toUtf8(com::userName())};
}

void Session::say(MessageType type, std::wstring_view sentence) {
    if (listener_) listener_->message(type, sentence);
}

void Session::say(const store::Error& error) {
    say(MessageType::refusal, sentenceOf(error));
}

store::Site& Session::site() {
    if (!binding_)
        com::throwError(com::unsetObject,
                        L"The engine is not set up on a site. Call SetupByDahsID or SetupForced, and see its "
                        L"messages when that was refused.");
    return binding_->site;
}

}  // namespace vtdn::embedded
