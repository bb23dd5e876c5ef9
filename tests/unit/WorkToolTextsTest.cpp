// How the extractors of work tools read the texts they find: the pure halves, a table each.
#include <gtest/gtest.h>

#include "extractors/ChatGPTInfoExtractor.h"
#include "extractors/ClaudeInfoExtractor.h"
#include "extractors/CodexInfoExtractor.h"
#include "extractors/GitHubDesktopInfoExtractor.h"
#include "extractors/StaticTexts.h"
#include "extractors/TitleParts.h"

namespace kestro {
namespace {

using Texts = std::vector<std::string>;

TEST(StaticTexts, lineOf) {
  struct Case {
    Texts pieces;
    const char* expected;
  };
  const Case cases[] = {
      {{"Tide tables"}, "Tide tables"}, {{"Fix ", "tide", " tables"}, "Fix tide tables"},
      {{"Fix", "tide"}, "Fix tide"},    {{" ", "Fix", " "}, "Fix"},
      {{" ", " "}, "absent"},           {{}, "absent"},
  };
  for (const auto& [pieces, expected] : cases) {
    EXPECT_EQ(lineOf(pieces).value_or("absent"), expected) << testing::PrintToString(pieces);
  }
}

TEST(GitHubDesktopTexts, name) {
  struct Case {
    Texts buttonTexts;
    const char* expected;
  };
  const Case cases[] = {
      {{"Current repository", "harbour-site"}, "harbour-site"},
      {{"Current Branch", "push-notices", "#42"}, "push-notices"},
      {{"Detached HEAD", "On 1a2b3c4"}, "On 1a2b3c4"},
      {{"Publisher"}, "Publisher"},
      {{"Current Repository"}, "absent"},
      {{"Current Branch"}, "absent"},
      {{"CURRENT BRANCH\u200E"}, "absent"},
      {{"Force Push origin", "Last fetched just now"}, "absent"},
      {{"Fetch origin"}, "absent"},
      {{"Pushing origin"}, "absent"},
      {{"Current branch"}, "absent"},
      {{"Current repository"}, "absent"},
      {{"Fetch origin", "Last fetched 3 minutes ago"}, "absent"},
      {{"Fetching origin", "Hang on…"}, "absent"},
      {{"Force push origin", "Last fetched just now", "2"}, "absent"},
      {{"Publish branch", "Publish this branch"}, "absent"},
      {{}, "absent"},
  };
  for (const auto& [texts, expected] : cases) {
    EXPECT_EQ(gitHubDesktopName(texts).value_or("absent"), expected)
        << testing::PrintToString(texts);
  }
}

TEST(ChatGPTTexts, contextPath) {
  struct Case {
    Texts toolbarTexts;
    std::optional<std::string> chat;
    const char* expected;
  };
  const Case cases[] = {
      {{"ChatGPT 4o"}, "Tide tables", "Tide tables"},
      {{"Harbour guide", "ChatGPT", "By Mara"},
       "Tide tables",
       "Harbour guide, By Mara > Tide tables"},
      {{"Tide tables"}, "Tide tables", "Tide tables"},
      {{"Tide tables", "New Chat"}, std::nullopt, "Tide tables"},
      {{}, "ChatGPT prices", "ChatGPT prices"},
      {{"Cafe\u0301", "\u200ENew Chat", "\u200EChatGPT 4o"},
       "\u2068Café\u2069",
       "\u2068Café\u2069"},
      {{"Harbour guide"}, "New Chat", "Harbour guide"},
      {{"ChatGPT 4o"}, "ChatGPT", ""},
      {{}, std::nullopt, ""},
  };
  for (const auto& [texts, chat, expected] : cases) {
    EXPECT_EQ(joined(chatGPTContextPath(texts, chat), " > "), expected)
        << testing::PrintToString(texts);
  }
}

TEST(ClaudeTexts, pageOfTheService) {
  struct Case {
    const char *address, *serviceAddress;
    bool isPage;
  };
  const Case cases[] = {
      {"https://claude.ai", "https://claude.ai", true},
      {"https://claude.ai/chat/1", "https://claude.ai", true},
      {"https://claude.ai?tab=1", "https://claude.ai", true},
      {"https://claude.ai.example/", "https://claude.ai", false},
      {"https://claude.ai@example.com/", "https://claude.ai", false},
      {"http://claude.ai/", "https://claude.ai", false},
      {"file:///https://claude.ai/", "https://claude.ai", false},
      {"https://work.example/chat/1", "https://work.example/", true},
      {"", "https://claude.ai", false},
  };
  for (const auto& row : cases) {
    EXPECT_EQ(isClaudePage(row.address, row.serviceAddress), row.isPage) << row.address;
  }
}

TEST(ClaudeTexts, chatTitle) {
  const char* const cases[][2] = {
      {"Tide tables - Claude", "Tide tables"},
      {"Tide tables", "Tide tables"},
      {"Claude - Claude", "Claude"},
      {"\u2068Tides\u2069 - \u200EClaude", "\u2068Tides\u2069"},
      {"Claude", "absent"},
      {"\u200EClaude", "absent"},
      {" - Claude", "absent"},
  };
  for (const auto& [title, expected] : cases) {
    EXPECT_EQ(claudeChatTitle(title).value_or("absent"), expected) << title;
  }
}

TEST(CodexTexts, contextPath) {
  EXPECT_EQ(codexContextPath("harbour-site", "Fix"), (Texts{"harbour-site", "Fix"}));
  EXPECT_EQ(codexContextPath("harbour-site", "New Chat"), (Texts{"harbour-site"}));
  EXPECT_EQ(codexContextPath("New Chat", "New Chats"), (Texts{"New Chat", "New Chats"}));
  EXPECT_EQ(codexContextPath(std::nullopt, "New Chat"), Texts{});
}

}  // namespace
}  // namespace kestro
