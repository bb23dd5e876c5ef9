#include "scene/PropertyListLoader.h"

#include <array>
#include <charconv>

#include "foundation/Base64.h"
#include "foundation/Iso8601.h"

namespace kestro {
namespace {

constexpr double longestTime = 1e8;

bool isBox(const JsonNode& node, std::string_view key) {
  return node.size() == 1 && node.has(key);
}

void expectBoolean(const JsonNode& node) {
  node.boolean();
}
void expectTexts(const JsonNode& node) {
  node.texts();
}

void expectInterval(const JsonNode& node) {
  constexpr double shortestInterval = 0.01;  // as the tracking loop takes it
  node.number({shortestInterval, longestTime});
}

void expectShutdownFlush(const JsonNode& node) {
  if (node.isNumber()) {
    node.number({0, longestTime});
  } else if (!node.isText() || node.text() != "never") {
    node.failExpecting("seconds, \"never\" or null");
  }
}

void expectIntegrationAnswer(const JsonNode& node) {
  node.expectKeys({"success", "error"});
  if (node.size() != 1) node.fail("expected either 'success' or 'error'");
  if (const auto success = node.find("success")) success->boolean();
  if (const auto error = node.find("error")) error->text();
}

void expectShortcut(const JsonNode& node) {
  node.expectKeys({"key", "modifiers"});
}

struct ProductCondition {
  std::string_view key;
  void (*check)(const JsonNode&);
};

constexpr std::array<ProductCondition, 10> productConditions{{
    {"launchAtLogin", expectBoolean},
    {"database", expectBoolean},
    {"activityWriter", expectBoolean},
    {"notificationsAllowed", expectBoolean},
    {"shutdownFlush", expectShutdownFlush},
    {"integrations", expectIntegrationAnswer},
    {"samplingInterval", expectInterval},
    {"webBrowsing", expectTexts},
    {"chromeBasedBrowsers", expectTexts},
    {"startTaskShortcut", expectShortcut},
}};

SceneFile loadFile(const JsonNode& node) {
  node.expectKeys({"text", "plist", "base64", "directory"});
  if (node.size() != 1) node.fail("expected one of 'text', 'plist', 'base64' and 'directory'");
  if (const auto text = node.find("text")) return SceneText{text->text()};
  if (const auto contents = node.find("plist")) {
    return ScenePropertyListFile{loadDictionary(*contents)};
  }
  if (const auto bytes = node.find("base64")) return loadBase64(*bytes);
  if (!node.member("directory").boolean()) node.member("directory").fail("expected true");
  return SceneDirectory{};
}

std::vector<PropertyListDictionary> loadAssertionsOfProcess(const JsonNode& node) {
  std::vector<PropertyListDictionary> assertions;
  node.forEachItem(
      [&](const JsonNode& assertion) { assertions.emplace_back(loadDictionary(assertion)); });
  return assertions;
}

ProcessIdentifier parseProcessIdentifier(const std::string& text, const JsonNode& node) {
  ProcessIdentifier process = 0;
  const char* end = text.data() + text.size();
  const auto [parsed, error] = std::from_chars(text.data(), end, process);
  if (error != std::errc{} || parsed != end) {
    node.fail("expected a process identifier as the key");
  }
  return process;
}

}  // namespace

Date loadDate(const JsonNode& node) {
  const auto date = parseIso8601(node.text());
  if (!date) node.fail("expected a date such as \"2026-03-02T09:00:00Z\"");
  return *date;
}

Data loadBase64(const JsonNode& node) {
  auto bytes = parseBase64(node.text());
  if (!bytes) node.fail("expected base64");
  return *std::move(bytes);
}

PropertyList loadPropertyList(const JsonNode& node) {
  if (node.isNull()) node.failExpecting("a value");
  if (node.isText()) return node.text();
  if (node.isBoolean()) return node.boolean();
  if (node.isInteger()) return node.integer();
  if (node.isNumber()) return node.number();
  if (isBox(node, "date")) return loadDate(node.member("date"));
  if (isBox(node, "data")) return loadBase64(node.member("data"));
  if (node.isObject()) return loadDictionary(node);
  PropertyListArray members;
  node.forEachItem([&](const JsonNode& member) { members.push_back(loadPropertyList(member)); });
  return members;
}

PropertyListDictionary loadDictionary(const JsonNode& node) {
  PropertyListDictionary dictionary;
  node.forEachMember([&](const std::string& key, const JsonNode& value) {
    if (!value.isNull()) dictionary.set(key, loadPropertyList(value));
  });
  return dictionary;
}

PropertyListChanges loadChanges(const JsonNode& node) {
  PropertyListChanges changes;
  node.forEachMember([&](const std::string& key, const JsonNode& value) {
    changes.emplace_back(key,
                         value.isNull() ? std::nullopt : std::optional(loadPropertyList(value)));
  });
  return changes;
}

PropertyListChanges loadProductChanges(const JsonNode& node) {
  node.expectObject();
  for (const ProductCondition& condition : productConditions) {
    const auto value = node.find(condition.key);
    if (value && !value->isNull()) condition.check(*value);
  }
  return loadChanges(node);
}

std::map<std::string, SceneFile, std::less<>> loadFiles(const JsonNode& node) {
  std::map<std::string, SceneFile, std::less<>> files;
  node.forEachMember([&](const std::string& path, const JsonNode& file) {
    files.insert_or_assign(path, loadFile(file));
  });
  return files;
}

SceneAssertions loadAssertions(const JsonNode& node) {
  if (isBox(node, "error")) return node.member("error").integer();
  std::map<ProcessIdentifier, std::vector<PropertyListDictionary>> assertions;
  node.forEachMember([&](const std::string& process, const JsonNode& value) {
    assertions.insert_or_assign(parseProcessIdentifier(process, value),
                                loadAssertionsOfProcess(value));
  });
  return assertions;
}

}  // namespace kestro
