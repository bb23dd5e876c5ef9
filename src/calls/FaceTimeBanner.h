// The banner that Notification Center shows during a FaceTime call.
#pragma once

#include <string>
#include <vector>

namespace kestro {

class Process;

// The texts of banners that have one of FaceTime's buttons, a list for each window that shows one.
// Without the marks around them; empty texts are left out. A search through each window of
// Notification Center (one request where the platform searches in bulk), then two or three for each
// element of a banner.
std::vector<std::vector<std::string>> faceTimeBanners(Process& process);

}  // namespace kestro
