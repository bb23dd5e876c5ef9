#include "linux/storage/PropertyListFile.h"

#include <plist/plist.h>

#include <algorithm>
#include <cstdlib>
#include <limits>
#include <memory>

#include "linux/storage/PropertyListBounds.h"

namespace kestro {
namespace {

constexpr std::size_t largestText = 16 << 20;
// Property lists count their dates from the first day of 2001.
constexpr std::chrono::sys_days epoch = std::chrono::year(2001) / 1 / 1;

struct PlistDeleter {
  void operator()(void* node) const { plist_free(node); }
};
using PlistPointer = std::unique_ptr<void, PlistDeleter>;

struct CDeleter {
  void operator()(void* memory) const { std::free(memory); }
};

std::optional<PropertyList> listFromNode(plist_t node, int depth);

std::string textFromNode(plist_t node) {
  char* text = nullptr;
  plist_get_string_val(node, &text);
  const std::unique_ptr<char, CDeleter> owner(text);
  return text ? text : "";
}

Data dataFromNode(plist_t node) {
  char* bytes = nullptr;
  std::uint64_t length = 0;
  plist_get_data_val(node, &bytes, &length);
  const std::unique_ptr<char, CDeleter> owner(bytes);
  return bytes ? Data(bytes, bytes + length) : Data();
}

Date dateFromNode(plist_t node) {
  std::int32_t seconds = 0;
  std::int32_t microseconds = 0;
  plist_get_date_val(node, &seconds, &microseconds);
  return Date(epoch) + std::chrono::seconds(seconds) + std::chrono::microseconds(microseconds);
}

PropertyListArray arrayFromNode(plist_t node, int depth) {
  PropertyListArray members;
  void* position = nullptr;
  plist_array_new_iter(node, &position);
  const std::unique_ptr<void, CDeleter> positionOwner(position);
  while (true) {
    plist_t item = nullptr;
    plist_array_next_item(node, position, &item);
    if (!item) return members;
    if (auto member = listFromNode(item, depth + 1)) members.push_back(std::move(*member));
  }
}

PropertyListDictionary dictionaryFromNode(plist_t node, int depth) {
  PropertyListDictionary dictionary;
  void* position = nullptr;
  plist_dict_new_iter(node, &position);
  const std::unique_ptr<void, CDeleter> positionOwner(position);
  while (true) {
    char* key = nullptr;
    plist_t member = nullptr;
    plist_dict_next_item(node, position, &key, &member);
    const std::unique_ptr<char, CDeleter> keyOwner(key);
    if (!key || !member) return dictionary;
    if (auto value = listFromNode(member, depth + 1)) dictionary.set(key, std::move(*value));
  }
}

template <class Value, class Getter>
Value scalarFromNode(plist_t node, Getter getter) {
  Value value{};
  getter(node, &value);
  return value;
}

std::optional<PropertyList> listFromNode(plist_t node, int depth) {
  if (depth > deepestPropertyList) return std::nullopt;
  switch (plist_get_node_type(node)) {
    case PLIST_BOOLEAN:
      return PropertyList(scalarFromNode<std::uint8_t>(node, plist_get_bool_val) != 0);
    case PLIST_UINT:
      return PropertyList(
          static_cast<std::int64_t>(scalarFromNode<std::uint64_t>(node, plist_get_uint_val)));
    case PLIST_REAL:
      return PropertyList(scalarFromNode<double>(node, plist_get_real_val));
    case PLIST_STRING:
      return PropertyList(textFromNode(node));
    case PLIST_DATE:
      return PropertyList(dateFromNode(node));
    case PLIST_DATA:
      return PropertyList(dataFromNode(node));
    case PLIST_ARRAY:
      return PropertyList(arrayFromNode(node, depth));
    case PLIST_DICT:
      return PropertyList(dictionaryFromNode(node, depth));
    default:
      return std::nullopt;
  }
}

plist_t nodeFromDictionary(const PropertyListDictionary& dictionary);
plist_t nodeFromList(const PropertyList& list);

plist_t nodeFromDate(Date date) {
  using std::chrono::seconds;
  const auto sinceEpoch = std::chrono::floor<seconds>(date - Date(epoch)).count();
  using Limits = std::numeric_limits<std::int32_t>;
  return plist_new_date(
      static_cast<std::int32_t>(std::clamp<std::int64_t>(sinceEpoch, Limits::min(), Limits::max())),
      0);
}

plist_t nodeFromArray(const PropertyListArray& members) {
  plist_t node = plist_new_array();
  for (const PropertyList& member : members)
    plist_array_append_item(node, nodeFromList(member));
  return node;
}

struct NodeMaker {
  plist_t operator()(bool value) const { return plist_new_bool(value ? 1 : 0); }
  plist_t operator()(std::int64_t value) const {
    return plist_new_uint(static_cast<std::uint64_t>(value));
  }
  plist_t operator()(double value) const { return plist_new_real(value); }
  plist_t operator()(const std::string& value) const { return plist_new_string(value.c_str()); }
  plist_t operator()(Date value) const { return nodeFromDate(value); }
  plist_t operator()(const Data& value) const {
    const std::string bytes(value.begin(), value.end());
    return plist_new_data(bytes.data(), bytes.size());
  }
  plist_t operator()(const PropertyListArray& value) const { return nodeFromArray(value); }
  plist_t operator()(const PropertyListDictionary& value) const {
    return nodeFromDictionary(value);
  }
};

plist_t nodeFromList(const PropertyList& list) {
  return std::visit(NodeMaker{}, list.variant());
}

plist_t nodeFromDictionary(const PropertyListDictionary& dictionary) {
  plist_t node = plist_new_dict();
  for (const auto& [key, value] : dictionary) {
    plist_dict_set_item(node, key.c_str(), nodeFromList(value));
  }
  return node;
}

}  // namespace

std::optional<PropertyListDictionary> propertyListFromText(std::string_view text) {
  if (text.empty() || text.size() > largestText) return std::nullopt;
  const auto length = static_cast<std::uint32_t>(text.size());
  plist_t node = nullptr;
  if (plist_is_binary(text.data(), length)) {
    if (!isBinaryPropertyListWithinBounds(text)) return std::nullopt;
    plist_from_bin(text.data(), length, &node);
  } else {
    if (!isXmlPropertyListWithinBounds(text)) return std::nullopt;
    plist_from_xml(text.data(), length, &node);
  }
  const PlistPointer owner(node);
  if (!node || plist_get_node_type(node) != PLIST_DICT) return std::nullopt;
  return dictionaryFromNode(node, 0);
}

std::string propertyListAsXml(const PropertyListDictionary& dictionary) {
  const PlistPointer node(nodeFromDictionary(dictionary));
  char* text = nullptr;
  std::uint32_t length = 0;
  plist_to_xml(node.get(), &text, &length);
  const std::unique_ptr<char, CDeleter> owner(text);
  return text ? std::string(text, length) : std::string();
}

}  // namespace kestro
