#include "product/SupportRequests.h"

#include <fmt/chrono.h>
#include <fmt/format.h>

#include <filesystem>

#include "foundation/PrivateFiles.h"
#include "platform/Clock.h"
#include "platform/Process.h"
#include "platform/SystemLog.h"
#include "platform/Transcript.h"

namespace kestro {
namespace {

namespace fs = std::filesystem;

// A new folder, readable by its owner alone.
fs::path makeFolder(const Process& process) {
  const Platform& platform = process.platform();
  const auto time = fmt::gmtime(std::chrono::system_clock::to_time_t(platform.clock.now()));
  const std::string name = fmt::format("{:%Y-%m-%dT%H%M%SZ}", time);
  const fs::path parent = platform.dataDirectory / "Support Requests";
  fs::path folder = parent / name;
  for (int copy = 2; fs::exists(folder); ++copy)
    folder = parent / fmt::format("{}-{}", name, copy);
  makePrivateFolder(folder);
  closeFolder(parent);
  return folder;
}

void record(Process& process, const std::string& body,
            const std::vector<RepliesIOAttachment>& attachments) {
  Transcript& transcript = process.platform().transcript;
  if (!transcript.isActive()) return;
  PropertyListArray list;
  for (const RepliesIOAttachment& attachment : attachments) {
    list.emplace_back(
        PropertyListDictionary{{"name", attachment.fileName}, {"text", attachment.text}});
  }
  transcript.record("support", {{"body", body}, {"attachments", std::move(list)}});
}

}  // namespace

void SupportRequests::createRequest(Process& process, const std::string& body,
                                    const std::vector<RepliesIOAttachment>& extraAttachments) {
  record(process, body, extraAttachments);
  try {
    const fs::path folder = makeFolder(process);
    writePrivateFile(folder / "Request.txt", body);
    for (const RepliesIOAttachment& attachment : extraAttachments) {
      writePrivateFile(folder / fs::path(attachment.fileName).filename(), attachment.text);
    }
    process.platform().log.write(
        fmt::format("A support request was saved as \"{}\".",
                    fs::relative(folder, folder.parent_path().parent_path()).string()));
  } catch (const std::exception&) {
    process.platform().log.write("The support request cannot be saved.");
  }
}

}  // namespace kestro
