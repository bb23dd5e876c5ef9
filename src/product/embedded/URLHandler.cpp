// Addresses of the scheme kestro.
#include <SQLiteCpp/SQLiteCpp.h>

#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "foundation/Iso8601.h"
#include "platform/LocalizedStrings.h"
#include "platform/Process.h"
#include "platform/SystemLog.h"
#include "product/DatabaseWrapper.h"
#include "product/HelperHelper.h"
#include "product/TimeEntries.h"
#include "product/embedded/ProductOperations.h"

namespace kestro {
namespace {

int hexadecimalDigit(char character) {
  if (character >= '0' && character <= '9') return character - '0';
  if (character >= 'a' && character <= 'f') return character - 'a' + 10;
  if (character >= 'A' && character <= 'F') return character - 'A' + 10;
  return -1;
}

// A "%" without two digits stays as it is, and so does "+": it stands in the times' offsets.
std::string percentDecoded(std::string_view text) {
  std::string decoded;
  for (std::size_t position = 0; position < text.size(); ++position) {
    const bool isEscape = text[position] == '%' && position + 2 < text.size();
    const int high = isEscape ? hexadecimalDigit(text[position + 1]) : -1;
    const int low = isEscape ? hexadecimalDigit(text[position + 2]) : -1;
    if (high < 0 || low < 0) {
      decoded += text[position];
      continue;
    }
    decoded += static_cast<char>(high * 16 + low);
    position += 2;
  }
  return decoded;
}

struct Address {
  std::string_view action;  // "record" of kestro://record?start=…
  std::map<std::string, std::string> parameters;
};

std::optional<Address> parseAddress(std::string_view text) {
  constexpr std::string_view scheme = "kestro://";
  if (!text.starts_with(scheme)) return std::nullopt;
  text.remove_prefix(scheme.size());
  const std::size_t mark = text.find('?');
  Address address{text.substr(0, mark), {}};
  std::string_view query = mark == std::string_view::npos ? "" : text.substr(mark + 1);
  while (!query.empty()) {
    const std::string_view pair = query.substr(0, query.find('&'));
    const std::size_t equals = pair.find('=');
    if (equals != std::string_view::npos) {
      address.parameters.insert_or_assign(percentDecoded(pair.substr(0, equals)),
                                          percentDecoded(pair.substr(equals + 1)));
    }
    query.remove_prefix(std::min(query.size(), pair.size() + 1));
  }
  return address;
}

std::optional<Date> dateParameter(const Address& address, const std::string& name) {
  const auto found = address.parameters.find(name);
  return found == address.parameters.end() ? std::nullopt : parseIso8601(found->second);
}

// The editor with the times that the address names.
bool record(Process& process, const Address& address) {
  const auto start = dateParameter(address, "start");
  const auto end = dateParameter(address, "end");
  if (!start || !end) return false;
  AddOrEditTaskActivityController editor(TaskActivityDescriptor{*start, *end});
  editor.setHeaderLabel(localizedString(process, "Record Time"));
  editor.setSaveHandler([&process](const TaskActivityDescriptor& saved) {
    DatabaseWrapper* database = DatabaseWrapper::sharedInstance(process);
    if (!database) return;
    database->mutateAsynchronouslyOrPresentError([&process, saved](SQLite::Database& mutator) {
      saved.createTaskActivity(process, mutator, true);
    });
  });
  editor.presentEditorInPopoverSubstituteWindow(process, /*obtainFocus=*/true, /*center=*/true);
  return true;
}

}  // namespace

void URLHandler::handleGetURL(Process& process, std::string_view address) {
  recordOperation(process, "URLHandler handleGetURLWithEvent", {address});
  const auto parsed = parseAddress(address);
  if (parsed && parsed->action == "record" && record(process, *parsed)) return;
  // It may name what the user did: the log does not show it.
  process.platform().log.write("An address that was opened means nothing to this version.");
}

}  // namespace kestro
