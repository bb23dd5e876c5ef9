#include "product/Activity.h"

#include <gtest/gtest.h>

namespace kestro {
namespace {

TEST(Activity, executable) {
  const struct {
    std::optional<std::string> path, url, name;
  } cases[] = {
      {"/usr/bin/gedit", "file:///usr/bin/gedit", "gedit"},
      {"/A b/c#d?e", "file:///A%20b/c%23d%3Fe", "c#d?e"},
      {"/100%/é;[x]", "file:///100%25/%C3%A9%3B%5Bx%5D", "é;[x]"},
      {"/~a/b+c@d:e&f='(g)',!*$", "file:///~a/b+c@d:e&f='(g)',!*$", "b+c@d:e&f='(g)',!*$"},
      {"/bad/\xFF", "file:///bad/%FF", "\xFF"},
      {"/app/", "file:///app/", "app"},
      {"/", "file:///", std::nullopt},
      {"relative", std::nullopt, "relative"},
      {"", std::nullopt, std::nullopt},
      {std::nullopt, std::nullopt, std::nullopt},
  };
  for (const auto& row : cases) {
    RunningApplication application;
    application.executablePath = row.path;
    const Activity activity(application, {});
    EXPECT_EQ(activity.applicationExecutableURL(), row.url);
    EXPECT_EQ(activity.applicationExecutableName(), row.name);
  }
}

TEST(ActivityDetails, description) {
  ActivityDetails details;
  details.windowTitle = "General";
  details.contextPath = {"Server", "general \"chat\""};
  EXPECT_EQ(details.description(),
            "windowTitle: General\ndocumentTitle: (nil)\ndocumentPath: (nil)\n"
            "contextPath: [\"Server\", \"general \"chat\"\"]\nisPrivateBrowsing: false");
}

}  // namespace
}  // namespace kestro
