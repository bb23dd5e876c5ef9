// What the notification of an ended call carries for a later answer: enough to act on it in another
// process life.
#pragma once

#include <optional>
#include <string>

#include "calls/CallMetadata.h"
#include "foundation/PropertyList.h"

namespace kestro {

PropertyListDictionary callNotificationUserInfo(const std::string& bundleIdentifier,
                                                const CallProperties& call);
// As far as present and readable.
std::optional<std::string> bundleIdentifierOf(const PropertyListDictionary& userInfo);
std::optional<CallProperties> callPropertiesOf(const PropertyListDictionary& userInfo);

}  // namespace kestro
