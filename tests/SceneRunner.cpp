// Plays one scene and compares its transcript with the expectation beside it.
//
//   scene_runner SCENE.json [--rebaseline]
//
// The expectation of SCENE.json is SCENE.expected.jsonl; it holds the kinds that the scene is
// about. With --rebaseline it is rewritten instead. Exit status: 0 as expected, 1 not, 2 unreadable
// scene or wrong use.
#include <fmt/format.h>

#include <algorithm>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "app/runHelper.h"
#include "scene/SceneDesktop.h"
#include "transcript/JsonLinesWriter.h"

namespace kestro {
namespace {

using Lines = std::vector<std::string>;

constexpr int failureStatus = 1;
constexpr int usageStatus = 2;

int report(std::string_view message, int status) {
  std::cerr << message << '\n';
  return status;
}

// Keeps the lines of the kinds that a scene is about.
class SelectingWriter final : public TranscriptWriter {
 public:
  SelectingWriter(Scene scene, std::ostream& stream) : scene_(std::move(scene)), writer_(stream) {}

  void write(Seconds time, std::string_view kind, const PropertyListDictionary& fields) override {
    if (scene_.isAbout(kind)) writer_.write(time, kind, fields);
  }

 private:
  Scene scene_;
  JsonLinesWriter writer_;
};

Lines splitLines(const std::string& text) {
  Lines lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) {
    lines.push_back(line);
  }
  return lines;
}

std::string play(Scene scene) {
  std::ostringstream transcript;
  DesktopOptions options;
  options.transcriptWriter = std::make_unique<SelectingWriter>(scene, transcript);
  const auto desktop = makeSceneDesktop(std::move(scene), std::move(options));
  runHelper(*desktop);
  return transcript.str();
}

// lengths[i][j]: the longest common subsequence of what follows line i and line j.
std::vector<std::vector<std::size_t>> commonLengths(const Lines& expected, const Lines& actual) {
  std::vector<std::vector<std::size_t>> lengths(expected.size() + 1,
                                                std::vector<std::size_t>(actual.size() + 1));
  for (std::size_t row = expected.size(); row-- > 0;) {
    for (std::size_t column = actual.size(); column-- > 0;) {
      lengths[row][column] = expected[row] == actual[column]
                                 ? lengths[row + 1][column + 1] + 1
                                 : std::max(lengths[row + 1][column], lengths[row][column + 1]);
    }
  }
  return lengths;
}

// Lines that are only expected begin with -, lines that are only there with +. Common lines at both
// ends are left out, so that long transcripts stay readable.
std::string difference(Lines expected, Lines actual) {
  const auto firstDifference = std::ranges::mismatch(expected, actual);
  expected.erase(expected.begin(), firstDifference.in1);
  actual.erase(actual.begin(), firstDifference.in2);
  while (!expected.empty() && !actual.empty() && expected.back() == actual.back()) {
    expected.pop_back();
    actual.pop_back();
  }
  const auto lengths = commonLengths(expected, actual);
  std::string text;
  std::size_t row = 0;
  std::size_t column = 0;
  while (row < expected.size() || column < actual.size()) {
    if (row < expected.size() && column < actual.size() && expected[row] == actual[column]) {
      text += fmt::format("  {}\n", expected[row++]);
      ++column;
    } else if (column == actual.size() ||
               (row < expected.size() && lengths[row + 1][column] >= lengths[row][column + 1])) {
      text += fmt::format("- {}\n", expected[row++]);
    } else {
      text += fmt::format("+ {}\n", actual[column++]);
    }
  }
  return text;
}

std::filesystem::path expectationOf(std::filesystem::path scene) {
  return scene.replace_extension(".expected.jsonl");
}

int compare(const std::filesystem::path& expectation, const std::string& transcript) {
  std::ifstream file(expectation, std::ios::binary);
  if (!file) {
    std::cerr << transcript;
    return report(fmt::format("{} is missing; above is what the helper did", expectation.string()),
                  failureStatus);
  }
  std::ostringstream expected;
  // An empty file would put the stream into a failed state.
  if (file.peek() != std::ifstream::traits_type::eof()) expected << file.rdbuf();
  if (expected.str() == transcript) return 0;
  std::cerr << difference(splitLines(expected.str()), splitLines(transcript));
  return report(fmt::format("differs from {}", expectation.string()), failureStatus);
}

int rewrite(const std::filesystem::path& expectation, const std::string& transcript) {
  std::ofstream file(expectation, std::ios::binary | std::ios::trunc);
  file << transcript;
  file.close();
  if (!file) return report(fmt::format("cannot write {}", expectation.string()), failureStatus);
  return 0;
}

int runScene(const std::filesystem::path& path, bool isRebaseline) {
  auto loaded = loadScene(path);
  if (const auto* error = std::get_if<SceneError>(&loaded)) {
    return report(error->message, usageStatus);
  }
  const std::string transcript = play(std::get<Scene>(std::move(loaded)));
  return isRebaseline ? rewrite(expectationOf(path), transcript)
                      : compare(expectationOf(path), transcript);
}

}  // namespace
}  // namespace kestro

int main(int argumentCount, char** argumentValues) {
  const std::vector<std::string> arguments(argumentValues + 1, argumentValues + argumentCount);
  const bool isRebaseline = arguments.size() == 2 && arguments[1] == "--rebaseline";
  if (arguments.size() != 1 && !isRebaseline) {
    return kestro::report("usage: scene_runner SCENE.json [--rebaseline]", kestro::usageStatus);
  }
  try {
    return kestro::runScene(arguments[0], isRebaseline);
  } catch (const std::exception& failure) {
    return kestro::report(failure.what(), kestro::failureStatus);
  }
}
