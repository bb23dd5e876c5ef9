#include "calls/CallServices.h"

#include "extractors/TitleParts.h"
#include "platform/Process.h"
#include "product/KestroLegacy.h"

namespace kestro {
namespace {

struct Row {
  const char* fragment;
  const char* serviceName;
};

constexpr Row rows[]{
    {"us.zoom.xos", "Zoom"},
    {"com.microsoft.teams", "Teams"},
    {"com.microsoft.teams.helper", "Teams"},
    {"com.tinyspeck.slackmacgap", "Slack"},
    {"Jabber", "Jabber"},
    {"jabber", "Jabber"},
    {"com.webex.meetingmanager", "Webex"},
    {"Cisco-Systems.Spark", "Webex"},
    {"im.riot.app", "Element"},
    {"com.logmein.GoToMeeting", "GoToMeeting"},
    {"com.bluejeansnet.Blue", "BlueJeans"},
    {"com.alibaba.DingTalkMac", "DingTalk"},
    {"com.tencent.meeting", "TencentMeeting"},
    {"ru.keepcoder.Telegram", "Telegram"},
    {"com.tdesktop.Telegram", "Telegram"},
    {"com.hnc.Discord", "Discord"},
    {"WhatsApp", "WhatsApp"},
    {"jp.naver.line.mac", "LINE"},
    {"com.tencent.xinWeChat", "WeChat"},
    {"com.ringcentral.glip", "RingCentral"},
    {"com.ringcentral.ringcentralformac", "RingCentral"},
    {"com.gather.Gather", "Gather"},
    {"com.amazon.Amazon-Chime.helper", "Amazon Chime"},
};

}  // namespace

CallServices::CallServices(Process& process) {
  for (const Row& row : rows)
    nameByFragment_.emplace(row.fragment, row.serviceName);
  const auto extra = process.shared<HelperPreferences>().getStringList(
      "RunningCallDetector_extraAppsForCallTracking");
  if (!extra) return;
  for (const std::string& text : *extra) {
    auto parts = titleParts(text, ":");
    // An empty fragment would be part of every identifier; a service without a name has no title.
    if (parts.size() != 2 || parts[0].empty() || parts[1].empty()) continue;
    nameByFragment_.insert_or_assign(parts[0], parts[1]);
  }
}

std::optional<std::string> CallServices::serviceName(std::string_view bundleIdentifier) const {
  for (const auto& [fragment, name] : nameByFragment_) {
    if (bundleIdentifier.find(fragment) != std::string_view::npos) return name;
  }
  return std::nullopt;
}

}  // namespace kestro
