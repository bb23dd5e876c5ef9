#include "linux/storage/PropertyListBounds.h"

#include <algorithm>
#include <cstdint>
#include <optional>
#include <vector>

namespace kestro {
namespace {

// Behind the next `mark` from `position` on; the end of the text without one.
std::size_t behind(std::string_view text, std::string_view mark, std::size_t position) {
  const std::size_t found = text.find(mark, position);
  return found == std::string_view::npos ? text.size() : found + mark.size();
}

// What stands between "<" and ">" without being an element: comments, quoted text, declarations.
// Absent when the text at `position` is an element.
std::optional<std::size_t> behindOther(std::string_view text, std::size_t position) {
  const std::string_view rest = text.substr(position);
  if (rest.starts_with("<!--")) return behind(text, "-->", position + 4);
  if (rest.starts_with("<![CDATA[")) return behind(text, "]]>", position);
  if (rest.starts_with("<?")) return behind(text, "?>", position);
  if (rest.starts_with("<!")) return behind(text, ">", position);
  return std::nullopt;
}

std::uint64_t bigEndian(std::string_view bytes) {
  std::uint64_t number = 0;
  for (const char byte : bytes)
    number = (number << 8U) | static_cast<unsigned char>(byte);
  return number;
}

// The objects of a binary property list: a table of their places, and in lists and dictionaries the
// numbers of others (the format is described in the sources of CFBinaryPList.c). A number may occur
// more than once; the parser then makes the object more than once.
class BinaryObjects {
 public:
  static constexpr std::size_t trailerSize = 32;

  static std::optional<BinaryObjects> in(std::string_view bytes) {
    if (bytes.size() < trailerSize + 8) return std::nullopt;
    const std::string_view trailer = bytes.substr(bytes.size() - trailerSize);
    BinaryObjects objects(bytes);
    objects.placeSize_ = static_cast<unsigned char>(trailer[6]);
    objects.numberSize_ = static_cast<unsigned char>(trailer[7]);
    objects.count_ = bigEndian(trailer.substr(8, 8));
    objects.top_ = bigEndian(trailer.substr(16, 8));
    objects.table_ = bigEndian(trailer.substr(24, 8));
    return objects.isConsistent() ? std::optional(objects) : std::nullopt;
  }

  std::uint64_t count() const { return count_; }
  std::uint64_t top() const { return top_; }

  // The objects in a list, a set or a dictionary; none in others. Absent when it reaches beyond the
  // bytes.
  std::optional<std::vector<std::uint64_t>> contents(std::uint64_t object) const {
    const std::uint64_t place = bigEndian(bytes_.substr(table_ + object * placeSize_, placeSize_));
    if (place >= bytes_.size()) return std::nullopt;
    const auto mark = static_cast<unsigned char>(bytes_[place]);
    const unsigned kind = mark >> 4U;
    constexpr unsigned list = 0xa;
    constexpr unsigned set = 0xc;
    constexpr unsigned dictionary = 0xd;
    if (kind != list && kind != set && kind != dictionary) return std::vector<std::uint64_t>();
    std::uint64_t count = mark & 0xfU;
    std::uint64_t first = place + 1;
    if (count == 0xf) {  // the count follows as a number of its own
      if (first >= bytes_.size()) return std::nullopt;
      const std::uint64_t length = std::uint64_t{1}
                                   << (static_cast<unsigned>(bytes_[first]) & 0x3U);
      if (first + 1 + length > bytes_.size()) return std::nullopt;
      count = bigEndian(bytes_.substr(first + 1, length));
      first += 1 + length;
    }
    if (count > bytes_.size()) return std::nullopt;
    const std::uint64_t numbers = kind == dictionary ? 2 * count : count;
    if (first + numbers * numberSize_ > bytes_.size()) return std::nullopt;
    std::vector<std::uint64_t> objects;
    for (std::uint64_t index = 0; index < numbers; ++index) {
      objects.push_back(bigEndian(bytes_.substr(first + index * numberSize_, numberSize_)));
      if (objects.back() >= count_) return std::nullopt;
    }
    return objects;
  }

 private:
  explicit BinaryObjects(std::string_view bytes) : bytes_(bytes) {}

  bool isConsistent() const {
    const auto isSize = [](unsigned size) { return size >= 1 && size <= 8; };
    return isSize(placeSize_) && isSize(numberSize_) && count_ <= bytes_.size() && top_ < count_ &&
           table_ < bytes_.size() && table_ + count_ * placeSize_ <= bytes_.size();
  }

  std::string_view bytes_;
  unsigned placeSize_ = 0;
  unsigned numberSize_ = 0;
  std::uint64_t count_ = 0;
  std::uint64_t top_ = 0;
  std::uint64_t table_ = 0;
};

// What the parser would make of an object.
struct Extent {
  int depth = 0;           // 0: not known yet
  std::size_t values = 1;  // itself and all in it
  bool isUnderWay = false;
};

}  // namespace

bool isXmlPropertyListWithinBounds(std::string_view text) {
  int depth = 0;
  std::size_t elements = 0;
  for (std::size_t position = text.find('<'); position != std::string_view::npos;
       position = text.find('<', position)) {
    if (const auto next = behindOther(text, position)) {
      position = *next;
      continue;
    }
    const std::size_t end = behind(text, ">", position);
    const bool isClosing = text.substr(position).starts_with("</");
    const bool isEmpty = end >= 2 && text.substr(end - 2, 2) == "/>";
    if (isClosing) {
      --depth;
    } else if (!isEmpty) {
      ++depth;
    }
    // The outermost element and a value's own stand around what is nested.
    if (depth > deepestPropertyList + 2 || ++elements > 4 * largestPropertyList) return false;
    position = end;
  }
  return true;
}

// Without recursion of its own, each object once.
bool isBinaryPropertyListWithinBounds(std::string_view bytes) {
  const auto objects = BinaryObjects::in(bytes);
  if (!objects) return false;
  std::vector<Extent> extents(objects->count());
  std::vector<std::uint64_t> open{objects->top()};
  while (!open.empty()) {
    Extent& extent = extents[open.back()];
    if (extent.depth > 0) {  // reached in another way meanwhile
      open.pop_back();
      continue;
    }
    const auto contents = objects->contents(open.back());
    if (!contents) return false;
    const bool isFirstVisit = !extent.isUnderWay;
    extent.isUnderWay = true;
    if (isFirstVisit) {
      for (const std::uint64_t inner : *contents) {
        if (extents[inner].isUnderWay && extents[inner].depth == 0) return false;  // in itself
        if (extents[inner].depth == 0) open.push_back(inner);
      }
      if (open.size() > 2 * largestPropertyList) return false;
      if (&extent != &extents[open.back()]) continue;
    }
    int depth = 0;
    std::size_t values = 1;
    for (const std::uint64_t inner : *contents) {
      depth = std::max(depth, extents[inner].depth);
      values += extents[inner].values;
    }
    extent.depth = depth + 1;
    extent.values = values;
    if (extent.depth > deepestPropertyList + 1 || values > largestPropertyList) return false;
    open.pop_back();
  }
  return true;
}

}  // namespace kestro
