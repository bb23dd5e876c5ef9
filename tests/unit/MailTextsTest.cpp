// How the mail and messaging extractors read single texts.
#include <gtest/gtest.h>

#include "FakePlatform.h"
#include "extractors/MimestreamInfoExtractor.h"
#include "extractors/NewOutlookInfoExtractor.h"
#include "extractors/SignalInfoExtractor.h"
#include "extractors/SparkInfoExtractor.h"
#include "platform/Process.h"

namespace kestro {
namespace {

struct MailTextCase {
  std::string text, expected;
};

constexpr const char* absent = "(absent)";

TEST(SignalTexts, headerText) {
  const MailTextCase cases[] = {
      {"\u2068Mara Lind\u2069", "Mara Lind"},
      {"\u2068\u2069", ""},
      {"7 Seas", "7 Seas"},
      {"…", "…"},
      {"99+", absent},
      {"\u20683\u2069", absent},
      {"12:30", absent},
      {"", absent},
      {"+49 170 1234567", "+49 170 1234567"},
      {"112", "112"},
      {"9:05", absent},
  };
  for (const auto& [text, expected] : cases) {
    EXPECT_EQ(signalHeaderText(text).value_or(absent), expected) << text;
  }
}

TEST(MimestreamTexts, namesMessage) {
  EXPECT_TRUE(namesMimestreamMessage("New Messages"));
  EXPECT_FALSE(namesMimestreamMessage("New Message"));
  EXPECT_FALSE(namesMimestreamMessage("\u2068New Message\u2069"));
  EXPECT_FALSE(namesMimestreamMessage(""));
}

std::string outlookSummary(const std::string& language, std::string_view description) {
  fakes::FakePlatform fake;
  fake.platform.preferredLanguages = {language};
  Process process(fake.platform);
  const auto summary = NewOutlookInfoExtractor(process).summary(description);
  return summary.sender.value_or(absent) + " > " + summary.subject.value_or(absent);
}

TEST(NewOutlookTexts, summary) {
  const struct {
    std::string language, description, expected;
  } cases[] = {
      {"en", "Unread, Subject: Tides, lights, Sender: Mara Lind, Today",
       "Mara Lind > Tides, lights"},
      {"en", "Subject: Sender: x, Sender: Jo, Today", "Jo > Sender: x"},
      {"en", "Subject: Tides, Sender: Jo", "(absent) > (absent)"},
      {"en", "Subject: , Sender: Jo,", "(absent) > (absent)"},
      {"en", "subject: Tides, sender: Jo, Today", "(absent) > (absent)"},
      {"en", "Betreff: Gezeiten, Absender: Jo, heute", "(absent) > (absent)"},
      {"de", "Betreff: Gezeiten, Absender: Jo, heute", "Jo > Gezeiten"},
      {"de", "Subject: Tides, Sender: Jo, Today", "(absent) > (absent)"},
  };
  for (const auto& [language, description, expected] : cases) {
    EXPECT_EQ(outlookSummary(language, description), expected) << description;
  }
}

TEST(SparkTexts, outgoingFolders) {
  fakes::FakePlatform fake;
  Process process(fake.platform);
  const SparkInfoExtractor extractor(process);
  for (const char* name :
       {"sent",       "gesendet",     "envoyés",   "enviados", "inviate",  "送信",
        "已发送",     "отправленные", "надіслані", "drafts",   "entwürfe", "brouillons",
        "borradores", "rascunhos",    "bozze",     "下書き",   "草稿",     "черновики",
        "чернетки",   "Sent",         "ENVOYÉS",   "Надіслані"}) {
    EXPECT_TRUE(extractor.isOutgoingFolder(name)) << name;
  }
  EXPECT_TRUE(extractor.isOutgoingFolder("\u200EEnvoye\u0301s"));
  for (const char* name : {"Inbox", "sent items", "unsent", "envoyes", "", "\u200E"}) {
    EXPECT_FALSE(extractor.isOutgoingFolder(name)) << name;
  }
}

TEST(SparkTexts, subject) {
  const MailTextCase cases[] = {
      {"Harbour lights", "Harbour lights"},
      {" Harbour lights\n", "Harbour lights"},
      {"Dear Mara,\nthe lights", absent},
      {" \n", absent},
      {"", absent},
  };
  for (const auto& [text, expected] : cases) {
    EXPECT_EQ(sparkSubject(text).value_or(absent), expected) << text;
  }
}

}  // namespace
}  // namespace kestro
