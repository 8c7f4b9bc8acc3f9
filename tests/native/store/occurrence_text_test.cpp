// Occurrence texts: whatever the parts hold comes back, and what is no such text is refused.

#include <gtest/gtest.h>

#include <random>

#include "expect_error.h"
#include "store/occurrence.h"

namespace vtdn::store::test {
namespace {

const std::string full =
    R"(<Occurrence><Excursion PID="101000501" Category="c" Reason="r" Action="a" Excludable="1" )"
    R"(Limit="0.5 lb/mmBtu" LimitPID="101000900"/><Downtime PID="101000502" Reason="x" Excludable="0"/></Occurrence>)";

Occurrence fullOccurrence() {
    Occurrence occurrence;
    Excursion& excursion = occurrence.excursion.emplace();
    static_cast<OccurrencePart&>(excursion) = {101000501, true, "c", "r", "a"};
    excursion.limit = "0.5 lb/mmBtu";
    excursion.limit_pid = 101000900;
    occurrence.downtime = OccurrencePart{101000502, false, "", "x", ""};
    return occurrence;
}

Occurrence withReason(std::string reason) {
    Occurrence occurrence;
    occurrence.downtime = OccurrencePart{1, false, {}, std::move(reason), {}};
    return occurrence;
}

TEST(OccurrenceText, IsXmlWithAnElementForEachPart) {
    EXPECT_EQ(occurrenceText(fullOccurrence()), full);
    EXPECT_EQ(parseOccurrence(full), fullOccurrence());
}

TEST(OccurrenceText, OfNoPartIsEmpty) {
    EXPECT_EQ(occurrenceText({}), "");
    EXPECT_TRUE(parseOccurrence("").empty());
    EXPECT_FALSE(fullOccurrence().empty());
}

TEST(OccurrenceText, LeavesOutWhatIsEmpty) {
    Occurrence occurrence;
    occurrence.excursion.emplace();
    EXPECT_EQ(occurrenceText(occurrence), R"(<Occurrence><Excursion PID="0" Excludable="0"/></Occurrence>)");
    EXPECT_EQ(parseOccurrence(occurrenceText(occurrence)), occurrence);
    EXPECT_EQ(occurrenceText(withReason("")),
              R"(<Occurrence><Downtime PID="1" Excludable="0"/></Occurrence>)");
}

TEST(OccurrenceText, WritesWhatXmlCannotHoldWithABackslash) {
    const auto reason = [](const std::string& text) {
        const std::string xml = occurrenceText(withReason(text));
        EXPECT_EQ(parseOccurrence(xml), withReason(text)) << xml;
        const auto begin = xml.find("Reason=\"") + 8;
        return xml.substr(begin, xml.find("\" Excludable") - begin);
    };
    EXPECT_EQ(reason(std::string("a\0b", 3)), R"(a\0000b)");
    EXPECT_EQ(reason("\x01\x1F\x7F"), "\\0001\\001f\x7F");
    EXPECT_EQ(reason(R"(C:\0000\)"), R"(C:\\0000\\)");
    EXPECT_EQ(reason("\xEF\xBF\xBE\xEF\xBF\xBF\xEF\xBF\xBD"), "\\fffe\\ffff\xEF\xBF\xBD");
    EXPECT_EQ(reason("\t\r\n "), "&#09;&#13;&#10; ");
    EXPECT_EQ(reason("<a b=\"c\">&amp;'</a>"), "&lt;a b=&quot;c&quot;>&amp;amp;'&lt;/a>");
    EXPECT_EQ(reason("\xF0\x9F\x8F\xAD\xC3\xA9"), "\xF0\x9F\x8F\xAD\xC3\xA9") << "beyond the basic plane";
    EXPECT_EQ(reason("\xFF\xC3\xED\xA0\x80\xC0\x80"), R"(\dcff\dcc3\dced\dca0\dc80\dcc0\dc80)")
        << "bytes that are no UTF-8";
}

TEST(OccurrenceText, OfAnyBytesIsReadBack) {
    const std::vector<std::string> pieces{std::string("\0", 1),
                                          "\x01",
                                          "\x1F",
                                          "\t",
                                          "\n",
                                          "\r",
                                          "\r\n",
                                          " ",
                                          "<",
                                          ">",
                                          "&",
                                          "\"",
                                          "'",
                                          "\\",
                                          "\\\\",
                                          "\\0000",
                                          "\\dc80",
                                          "&#10;",
                                          "]]>",
                                          "<!--",
                                          "a",
                                          "7",
                                          "\xC3\xA9",
                                          "\xE2\x82\xAC",
                                          "\xF0\x9F\x8F\xAD",
                                          "\xEF\xBF\xBE",
                                          "\xEF\xBF\xBF",
                                          "\xED\xA0\x80",
                                          "\xF4\x90\x80\x80",
                                          "\x80",
                                          "\xC3",
                                          "\xFF",
                                          "PID",
                                          std::string(3000, 'x')};
    std::mt19937 random(31);
    const auto text = [&] {
        std::string all;
        for (auto n = random() % 12; n > 0; --n) all += pieces[random() % pieces.size()];
        return all;
    };
    const auto part = [&] {
        return OccurrencePart{static_cast<Pid>(random()), random() % 2 == 0, text(), text(), text()};
    };
    for (int trial = 0; trial < 3000; ++trial) {
        Occurrence occurrence;
        if (random() % 4 != 0) {
            static_cast<OccurrencePart&>(occurrence.excursion.emplace()) = part();
            occurrence.excursion->limit = text();
            occurrence.excursion->limit_pid = static_cast<Pid>(random());
        }
        if (random() % 4 != 0) occurrence.downtime = part();
        const std::string xml = occurrenceText(occurrence);
        ASSERT_EQ(parseOccurrence(xml), occurrence) << xml;
        for (const char c : xml)
            ASSERT_GE(static_cast<unsigned char>(c), 0x20) << "one line, no control characters";
    }
}

TEST(OccurrenceText, ThatIsNoneIsRefused) {
    const auto changed = [](std::string_view what, std::string_view by) {
        std::string text = full;
        const auto at = text.find(what);
        EXPECT_NE(at, std::string::npos) << what;
        return text.replace(at, what.size(), by);
    };
    const std::string nul(1, '\0');
    for (const std::string& text :
         std::vector<std::string>{"x",
                                  " ",
                                  nul,
                                  "<",
                                  "<Occurrence",
                                  "<Occurrence>",
                                  "<Occurrence/>",
                                  "<Occurrence></Occurrence>",
                                  "<occurrence><Downtime PID=\"1\" Excludable=\"0\"/></occurrence>",
                                  "<Other/>",
                                  "{}",
                                  full + " ",
                                  full + full,
                                  full + nul,
                                  " " + full,
                                  "<?xml version=\"1.0\"?>" + full,
                                  "<!DOCTYPE x>" + full,
                                  "\xEF\xBB\xBF" + full,
                                  full.substr(0, full.size() - 1),
                                  changed("<Excursion ", "<Excursion  "),
                                  changed("<Excursion ", "text<Excursion "),
                                  changed("<Excursion ", "<!-- --><Excursion "),
                                  changed("<Excursion ", "<Excursion Other=\"1\" "),
                                  changed("<Downtime", "<Other/><Downtime"),
                                  changed("<Downtime PID=\"101000502\" ", "<Downtime "),
                                  changed("<Downtime ", "<Downtime PID=\"1\" Excludable=\"0\"/><Downtime "),
                                  changed("<Occurrence>", "<Occurrence Other=\"1\">"),
                                  changed("Category", "Kategory"),
                                  changed("Category=\"c\"", "Category=\"c\" Category=\"c\""),
                                  changed("Category=\"c\"", "Category=\"\""),
                                  changed("Category=\"c\" Reason=\"r\"", "Reason=\"r\" Category=\"c\""),
                                  changed("\"c\"", "'c'"),
                                  changed("\"c\"", "\"&bad;\""),
                                  changed("\"c\"", "\"\n\""),
                                  changed("\"c\"", "\"\\\""),
                                  changed("\"c\"", "\"\\00\""),
                                  changed("\"c\"", "\"\\0041\""),
                                  changed("\"c\"", "\"\\001F\""),
                                  changed("\"c\"", "\"\\dcc3\\dca9\""),
                                  changed("\"c\"", "\"" + nul + "\""),
                                  changed("\"c\"", "\"&#0;\""),
                                  changed("\"c\"", "\"&#65;\""),
                                  changed("\"c\"", "\"\xFF\""),
                                  changed("101000501", ""),
                                  changed("101000501", "x"),
                                  changed("101000501", "0101000501"),
                                  changed("101000501", "+1"),
                                  changed("101000501", "99999999999"),
                                  changed("101000501", "1.5"),
                                  changed("Excludable=\"1\"", "Excludable=\"2\""),
                                  changed("Excludable=\"1\"", "Excludable=\"true\""),
                                  changed("LimitPID=\"101000900\"", "LimitPID=\"0\""),
                                  changed("<Excursion PID=\"101000501\"",
                                          "<Downtime PID=\"1\" Excludable=\"0\"/><Excursion PID=\"1\"")}) {
        const std::string sentence = expectError(ErrorKind::badValue, [&] { (void)parseOccurrence(text); });
        EXPECT_NE(sentence.find("occurrence"), std::string::npos) << sentence;
    }
}

}  // namespace
}  // namespace vtdn::store::test
