// Both forms of a transcript.
#include <gtest/gtest.h>

#include <limits>
#include <sstream>

#include "foundation/Base64.h"
#include "foundation/Iso8601.h"
#include "transcript/makeTranscriptWriter.h"

namespace kestro {
namespace {

const Date start = *parseIso8601("2026-03-02T08:00:00Z");

TEST(TranscriptWriterTest, JsonLines) {
  std::ostringstream stream;
  const auto writer =
      makeTranscriptWriter(stream, TranscriptFormat::jsonLines, start, TimeZone::utc());
  writer->write(Seconds(3), "a", {{"z", 1}, {"a", true}});
  writer->write(Seconds(0.1 + 0.2), "b",
                {{"real", 2.0}, {"date", start + std::chrono::milliseconds(250)}});
  writer->write(Seconds(1.0004), "c", {{"data", Data{0xFF, 0x00}}, {"list", PropertyListArray{}}});
  writer->write(Seconds(28800.9996), "d",
                {{"bytes", "a\xff\n"}, {"no", std::numeric_limits<double>::infinity()}});
  EXPECT_EQ(stream.str(),
            "{\"t\":3,\"kind\":\"a\",\"z\":1,\"a\":true}\n"
            "{\"t\":0.3,\"kind\":\"b\",\"real\":2.0,\"date\":\"2026-03-02T08:00:00.25Z\"}\n"
            "{\"t\":1,\"kind\":\"c\",\"data\":\"/wA=\",\"list\":[]}\n"
            "{\"t\":28801,\"kind\":\"d\",\"bytes\":\"a\uFFFD\\n\",\"no\":null}\n");
}

TEST(TranscriptWriterTest, ReadableLinesForChangesOnly) {
  std::ostringstream stream;
  const auto writer = makeTranscriptWriter(stream, TranscriptFormat::readable, start,
                                           *TimeZone::named("Europe/Berlin"));
  PropertyListDictionary activity{{"application", "Mail"},
                                  {"isFullscreen", true},
                                  {"windowTitle", "In\nbox\x1b[2J\u202Eevil\xC2\x9B"},
                                  {"documentPath", "file:///a"},
                                  {"requests", 4}};
  writer->write(Seconds(1), "activity", activity);
  activity.set("requests", 9);
  writer->write(Seconds(2), "activity", activity);
  writer->write(Seconds(3.5), "product", {{"operation", "InfoLogger start"}});
  writer->write(Seconds(4), "hint", {{"name", "first"}, {"count", 2}});
  writer->write(Seconds(5), "noActivity", {});
  writer->write(Seconds(6), "noActivity", {});
  writer->write(Seconds(3600), "activity", {{"applicationProcessIdentifier", 7}});
  EXPECT_EQ(stream.str(),
            "09:00:01  Mail                     In box [2J evil   ·  file:///a  [full screen]\n"
            "09:00:04    hint                   name: first, count: 2\n"
            "09:00:05  (nothing to track)\n"
            "10:00:00  process 7\n");
}

TEST(TranscriptWriterTest, ReadableOutputIsWhole) {
  std::ostringstream stream;
  const auto writer = makeTranscriptWriter(stream, TranscriptFormat::readable, start,
                                           *TimeZone::named("Europe/Berlin"));
  const std::string longText(200, 'x');
  writer->write(Seconds(1), "print", {{"text", "|\t(0) " + longText + "\x1b[2J"}});
  writer->write(Seconds(1), "print", {{"text", ""}});
  EXPECT_EQ(stream.str(), "| (0) " + longText + " [2J\n\n");
}

TEST(TranscriptWriterTest, DatesReadBack) {
  const char* dates[] = {"2026-03-02T09:00:00Z", "1970-01-01T00:00:00.000000001Z",
                         "2024-02-29T23:59:59.5Z"};
  for (const char* date : dates) {
    const auto parsed = parseIso8601(date);
    ASSERT_TRUE(parsed) << date;
    EXPECT_EQ(iso8601(*parsed), date);
  }
  EXPECT_EQ(parseIso8601("2026-03-02T10:30:00+01:30"), parseIso8601("2026-03-02T09:00:00Z"));
  for (const char* date :
       {"", "2026-03-02", "2026-03-02T09:00:00", "2026-03-02T24:00:00Z", "2026-03-02T09:00:00.Z",
        "2026-03-02T09:00:00Zx", "9999-01-01T00:00:00Z"}) {
    EXPECT_FALSE(parseIso8601(date)) << date;
  }
}

TEST(TranscriptWriterTest, Base64ReadsBack) {
  for (const char* text : {"", "YQ==", "YWI=", "YWJj", "AP8Q"}) {
    const auto bytes = parseBase64(text);
    ASSERT_TRUE(bytes) << text;
    EXPECT_EQ(base64(*bytes), text);
  }
  for (const char* text : {"Y", "YQ=", "YR==", "Y===", "====", "YQ==YQ==", "Y Q="}) {
    EXPECT_FALSE(parseBase64(text)) << text;
  }
}

}  // namespace
}  // namespace kestro
