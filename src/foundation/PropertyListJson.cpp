#include "foundation/PropertyListJson.h"

#include <type_traits>

#include "foundation/Base64.h"
#include "foundation/Iso8601.h"

namespace kestro {

using Json = nlohmann::ordered_json;

namespace {

struct JsonOfValue {
  Json operator()(const Date& date) const { return iso8601(date); }
  Json operator()(const Data& bytes) const { return base64(bytes); }
  Json operator()(const PropertyListDictionary& members) const { return propertyListJson(members); }
  Json operator()(const PropertyListArray& members) const {
    Json list = Json::array();
    for (const PropertyList& member : members) {
      list.push_back(propertyListJson(member));
    }
    return list;
  }
  template <class Scalar>
  Json operator()(const Scalar& scalar) const {
    return scalar;
  }
};

}  // namespace

Json propertyListJson(const PropertyList& value) {
  return std::visit(JsonOfValue{}, value.variant());
}

Json propertyListJson(const PropertyListDictionary& dictionary) {
  Json object = Json::object();
  for (const PropertyListMember& member : dictionary) {
    object[member.key] = propertyListJson(member.value);
  }
  return object;
}

std::string compactJson(const Json& json) {
  return json.dump(-1, ' ', /*ensure_ascii=*/false, Json::error_handler_t::replace);
}

}  // namespace kestro
