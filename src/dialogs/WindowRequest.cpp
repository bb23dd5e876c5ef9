#include "dialogs/WindowRequest.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include "foundation/Iso8601.h"

namespace kestro {
namespace {

// Absent members count as empty lists; others than texts are left out.
QStringList textsIn(const QJsonObject& object, const char* key) {
  QStringList texts;
  const QJsonArray values = object[QLatin1String(key)].toArray();
  for (const auto& value : values) {
    if (value.isString()) texts.append(value.toString());
  }
  return texts;
}

QString textIn(const QJsonObject& object, const char* key) {
  return object[QLatin1String(key)].toString();
}

std::optional<Date> dateIn(const QJsonObject& object, const char* key) {
  return parseIso8601(textIn(object, key).toStdString());
}

std::optional<AlertRequest> parseAlert(const QJsonObject& object) {
  AlertRequest alert{textIn(object, "message"), textIn(object, "informativeText"),
                     textsIn(object, "buttons")};
  if (alert.buttons.isEmpty()) return std::nullopt;
  const QJsonValue suppression = object[QLatin1String("suppression")];
  alert.showsSuppression = suppression.isObject();
  alert.suppressionIsChecked = suppression.toObject()[QLatin1String("checked")].toBool();
  return alert;
}

std::optional<EditorRequest> parseEditor(const QJsonObject& object) {
  const auto start = dateIn(object, "start");
  const auto end = dateIn(object, "end");
  if (!start || !end) return std::nullopt;
  return EditorRequest{textIn(object, "header"),
                       textIn(object, "title"),
                       *start,
                       *end,
                       textIn(object, "project"),
                       textsIn(object, "projects"),
                       textsIn(object, "titles"),
                       object[QLatin1String("hasEnd")].toBool(true),
                       object[QLatin1String("center")].toBool()};
}

}  // namespace

std::optional<WindowRequest> parseWindowRequest(const QByteArray& line) {
  const QJsonObject object = QJsonDocument::fromJson(line).object();
  WindowSettings settings{textIn(object, "language"), std::nullopt};
  const QJsonValue dark = object[QLatin1String("dark")];
  if (dark.isBool()) settings.isDark = dark.toBool();
  const QString kind = textIn(object, "kind");
  if (kind == QLatin1String("alert")) {
    if (auto alert = parseAlert(object)) return WindowRequest{settings, std::move(*alert)};
  }
  if (kind == QLatin1String("editor")) {
    if (auto editor = parseEditor(object)) return WindowRequest{settings, std::move(*editor)};
  }
  return std::nullopt;
}

}  // namespace kestro
