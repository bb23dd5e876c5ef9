// Requests to the product's support: part of its user-interface library. Main thread only.
#pragma once

#include <string>
#include <vector>

namespace kestro {

class Process;

// A text attachment.
struct RepliesIOAttachment {
  std::string text;
  std::string fileName;
};

class SupportRequests {
 public:
  // Opens a request with this body for the user to complete and send. Here, where there is no
  // service to send it to, it becomes a folder below "Support Requests" in the data directory.
  static void createRequest(Process& process, const std::string& body,
                            const std::vector<RepliesIOAttachment>& extraAttachments);
};

}  // namespace kestro
