// The occurrence of one interval: shown, made, changed.
#include <algorithm>

#include "client/output/json.h"
#include "client/text/numbers.h"
#include "client/text/times.h"
#include "client/verbs/context.h"
#include "store/pid_text.h"

namespace vtdn::client {

namespace {

std::string timeText(store::Time time) {
    return timestampText(time, time % 60 != 0);
}

/// What was typed: an occurrence parameter or a tag, and the beginning of an interval.
struct Place {
    std::int32_t pid;
    store::Time time;

    explicit Place(const Arguments& arguments)
        : pid(pidArgument(arguments.operands()[0])), time(timeArgument("TIME", arguments.operands()[1])) {}
    /// The interval that begins so many intervals behind this one.
    [[nodiscard]] Place behind(const store::Interval& interval, std::int32_t count) const {
        Place place = *this;
        place.time = interval.step(time, count);
        return place;
    }
    [[nodiscard]] std::string text() const { return store::pidText(pid) + " at " + timeText(time); }
};

std::vector<OccurrenceObject> occurrencesAt(Binding& binding, const Place& place) {
    OccurrenceQuery query;
    query.first = place.time;
    query.last = place.time;
    query.byTag = true;
    query.unitsOrTags = {place.pid};
    return binding->occurrences(query);
}

/// The one occurrence that is meant. Ends the verb when there is none, or more than one.
OccurrenceObject occurrenceAt(Binding& binding, const Place& place) {
    binding.needParameter(place.pid);
    auto found = occurrencesAt(binding, place);
    if (found.empty())
        binding.refuse("There is no occurrence of " + place.text() + ".",
                       "`vtdn occurrences list " + store::pidText(place.pid) +
                           " --day DATE` shows those of a day, `vtdn occurrences create` makes one.");
    if (found.size() == 1) return std::move(found[0]);
    std::string tags;
    for (const OccurrenceObject& object : found)
        tags += (tags.empty() ? "" : ", ") + store::pidText(readingOf(*object.get()).tag);
    throw Failure(ExitCode::usage, place.text() + " has occurrences of several tags: " + tags + ".",
                  "Give the PID of one of these tags.");
}

std::string named(Binding& binding, std::int32_t pid) {
    return store::pidText(pid) + (binding->exists(pid) ? "  " + binding->name(pid) : "");
}

void showPart(Context& context, Binding& binding, OccurrenceKind kind, const store::OccurrencePart& part,
              const store::Excursion* limit) {
    std::string text = "  " + std::string(nameOf(kind)) + "  " + named(binding, part.pid) + "\n";
    const auto add = [&](const char* name, const std::string& said) {
        if (!said.empty()) text += "    " + std::string(name) + said + "\n";
    };
    add("category    ", part.category);
    add("reason      ", part.reason);
    add("action      ", part.action);
    add("excludable  ", part.excludable ? "yes" : "no");
    if (limit) {
        add("limit       ", limit->limit);
        if (limit->limit_pid != 0) add("limit PID   ", named(binding, limit->limit_pid));
    }
    context.console.out(text);
}

void show(Context& context, Binding& binding, const OccurrenceReading& reading) {
    std::string value = reading.text.empty() ? "no value" : reading.text + " " + binding->units(reading.tag);
    if (reading.code) value += " (mc " + shortestText(*reading.code) + ")";
    context.console.out(named(binding, reading.tag) + ", " + timeText(reading.time) + "\n  value  " + value +
                        "\n");
    if (const auto& excursion = reading.parts.excursion)
        showPart(context, binding, OccurrenceKind::excursion, *excursion, &*excursion);
    if (const auto& downtime = reading.parts.downtime)
        showPart(context, binding, OccurrenceKind::downtime, *downtime, nullptr);
}

void addPart(Json& json, OccurrenceKind kind, const store::OccurrencePart* part,
             const store::Excursion* limit) {
    json.key(nameOf(kind));
    if (!part) {
        json.value(std::monostate());
        return;
    }
    json.beginObject();
    json.member("pid", store::pidText(part->pid));
    json.member("excludable", part->excludable);
    json.member("category", part->category);
    json.member("reason", part->reason);
    json.member("action", part->action);
    if (limit) {
        json.member("limit", limit->limit);
        json.key("limit_pid");
        if (limit->limit_pid != 0)
            json.value(store::pidText(limit->limit_pid));
        else
            json.value(std::monostate());
    }
    json.endObject();
}

/// Members of an object that is open.
void addReading(Json& json, const OccurrenceReading& reading) {
    json.member("tag", store::pidText(reading.tag));
    json.member("time", timeText(reading.time));
    if (reading.value)
        json.member("value", *reading.value);
    else if (reading.text.empty())
        json.member("value", std::monostate());
    else
        json.member("value", reading.text);
    json.key("mc");
    if (reading.code)
        json.value(*reading.code);
    else
        json.value(std::monostate());
    const auto& [excursion, downtime] = reading.parts;
    const store::Excursion* const first = excursion ? &*excursion : nullptr;
    addPart(json, OccurrenceKind::excursion, first, first);
    addPart(json, OccurrenceKind::downtime, downtime ? &*downtime : nullptr, nullptr);
}

/// An occurrence as it is stored now.
struct Stored {
    OccurrenceReading reading;
    std::optional<bool> created = std::nullopt;  ///< whether it was made just now, where that is the question
};

void addObject(Json& json, const Stored& stored) {
    json.beginObject();
    if (stored.created) json.member("created", *stored.created);
    addReading(json, stored.reading);
    json.endObject();
}

/// Says what was done, and shows the first occurrence; programs get all of them, as an array where --count
/// asks for several.
void report(Context& context, Binding& binding, const std::string& sentence, const std::vector<Stored>& all) {
    if (context.arguments.has("--json")) {
        Json json;
        const bool several = context.arguments.has("--count");
        if (several) json.beginArray();
        for (const Stored& stored : all) addObject(json, stored);
        if (several) json.endArray();
        context.console.out(json.text() + "\n");
    } else {
        if (!sentence.empty()) context.console.out(sentence + "\n");
        show(context, binding, all.front().reading);
    }
    binding.report(false);
}

constexpr std::int32_t highestCount = 100'000;

/// How many intervals in a row are meant.
std::int32_t countOf(const Arguments& arguments) {
    const auto count = arguments.value("--count");
    return count ? integerArgument("--count", *count, 1, highestCount) : 1;
}

/// " and 3 intervals behind it".
std::string andBehind(std::size_t count) {
    return count > 1 ? " and " + counted(count - 1, "interval") + " behind it" : "";
}

/// Saves what was changed; the occurrence as it is stored afterwards.
OccurrenceReading save(Binding& binding, const OccurrenceObject& occurrence, const Place& place) {
    if (!binding->saveOccurrence(occurrence))
        binding.refuse("The component did not save the occurrence of " + place.text() + ".",
                       "`vtdn doctor` says whether the site is in order.");
    return readingOf(*occurrenceAt(binding, place).get());
}

/// Which part of an occurrence belongs to an occurrence parameter.
std::optional<OccurrenceKind> kindOf(const store::Occurrence& occurrence, std::int32_t pid) {
    if (occurrence.downtime && occurrence.downtime->pid == pid) return OccurrenceKind::downtime;
    if (occurrence.excursion && occurrence.excursion->pid == pid) return OccurrenceKind::excursion;
    return std::nullopt;
}

bool has(const store::Occurrence& occurrence, OccurrenceKind kind) {
    return kind == OccurrenceKind::excursion ? occurrence.excursion.has_value()
                                             : occurrence.downtime.has_value();
}

bool isRecorded(Binding& binding, const Place& place) {
    if (!binding->exists(place.pid)) return false;  // the component says so in its own words
    for (const OccurrenceObject& object : occurrencesAt(binding, place))
        if (kindOf(readingOf(*object.get()).parts, place.pid)) return true;
    return false;
}

/// Records the occurrence of one interval and says what is given about it.
Stored create(Binding& binding, const Place& place, const PartChanges& changes) {
    const bool was = isRecorded(binding, place);
    const OccurrenceObject occurrence = binding->createOccurrence(place.pid, place.time);
    if (!occurrence)
        binding.refuse(
            "The component did not make an occurrence of " + place.text() + ".",
            "The problem above says why. An occurrence parameter has the I/O type 31 and says in its "
            "special values which tag it is about; `vtdn params special PID -21` shows that.");
    OccurrenceReading reading = readingOf(*occurrence.get());
    const auto kind = kindOf(reading.parts, place.pid);
    if (!kind)
        binding.refuse("The occurrence of " + place.text() + " is neither a downtime nor an excursion.",
                       "`vtdn params special " + store::pidText(place.pid) +
                           " -3` has to be 3 for an excursion or 4 for a downtime.");
    if (!changes.empty()) {
        change(*occurrence.get(), *kind, changes);
        reading = save(binding, occurrence, place);
    }
    return {std::move(reading), !was};
}

/// An occurrence that is to be changed.
struct Meant {
    Place place;
    OccurrenceObject occurrence;
};

/// The occurrences of intervals in a row, all of which have to have the part. Nothing is changed here.
std::vector<Meant> meant(Binding& binding, const Place& first, OccurrenceObject occurrence,
                         OccurrenceKind kind, std::int32_t count) {
    std::vector<Meant> all;
    const std::int32_t tag = readingOf(*occurrence.get()).tag;
    all.push_back({first, std::move(occurrence)});
    if (count == 1) return all;
    const store::Interval interval = binding.pointInterval(tag);
    for (std::int32_t i = 1; i < count; ++i) {
        const Place place = first.behind(interval, i);
        OccurrenceObject next = occurrenceAt(binding, place);
        if (!has(readingOf(*next.get()).parts, kind))
            binding.refuse(
                "There is no " + std::string(nameOf(kind)) + " of " + place.text() + ". Nothing was changed.",
                "Give a smaller --count.");
        all.push_back({place, std::move(next)});
    }
    return all;
}

}  // namespace

ExitCode runOccurrencesShow(Context& context) {
    const Place place(context.arguments);
    Binding binding(context);
    report(context, binding, {}, {{readingOf(*occurrenceAt(binding, place).get())}});
    return ExitCode::done;
}

ExitCode runOccurrencesCreate(Context& context) {
    const Place first(context.arguments);
    const PartChanges changes = partChanges(context.arguments);
    const std::int32_t count = countOf(context.arguments);
    Binding binding(context);
    std::vector<Stored> all;
    all.push_back(create(binding, first, changes));
    const std::int32_t tag = all.front().reading.tag;
    for (std::int32_t i = 1; i < count; ++i)
        all.push_back(create(binding, first.behind(binding.pointInterval(tag), i), changes));
    const auto old = static_cast<std::size_t>(
        std::count_if(all.begin(), all.end(), [](const Stored& stored) { return !*stored.created; }));
    const std::string what = std::string(nameOf(*kindOf(all.front().reading.parts, first.pid))) + " of " +
                             first.text() + andBehind(all.size());
    std::string sentence =
        old == all.size() ? "There was a " + what + " already." : "Recorded the " + what + ".";
    if (old > 0 && old < all.size())
        sentence += " " + std::to_string(old) + " of these intervals had it already.";
    report(context, binding, sentence, all);
    return ExitCode::done;
}

ExitCode runOccurrencesEdit(Context& context) {
    const Place first(context.arguments);
    const PartChanges changes = partChanges(context.arguments);
    if (changes.empty())
        throw Failure(ExitCode::usage, "What is to be changed?",
                      "Say --category, --reason, --action or --excludable.");
    const std::int32_t count = countOf(context.arguments);
    Binding binding(context);
    OccurrenceObject occurrence = occurrenceAt(binding, first);
    const OccurrenceKind kind = partMeant(context.arguments, readingOf(*occurrence.get()).parts, first.pid);
    std::vector<Stored> all;
    for (const Meant& one : meant(binding, first, std::move(occurrence), kind, count)) {
        change(*one.occurrence.get(), kind, changes);
        all.push_back({save(binding, one.occurrence, one.place)});
    }
    report(context, binding,
           "Changed the " + std::string(nameOf(kind)) + " of " + first.text() + andBehind(all.size()) + ".",
           all);
    return ExitCode::done;
}

}  // namespace vtdn::client
