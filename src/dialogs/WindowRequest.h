// What the helper asks to be shown: its first line, as plain values.
#pragma once

#include <QString>
#include <QStringList>
#include <optional>
#include <variant>

#include "foundation/Date.h"

namespace kestro {

struct WindowSettings {
  QString language;
  std::optional<bool> isDark;  // absent: the desktop does not say
};

struct AlertRequest {
  QString message;
  QString informativeText;
  QStringList buttons;  // at least one
  bool showsSuppression = false;
  bool suppressionIsChecked = false;
};

struct EditorRequest {
  QString header;
  QString title;
  Date start;
  Date end;
  QString project;
  QStringList projects;
  QStringList titles;
  bool hasEnd = true;
  bool center = false;
};

struct WindowRequest {
  WindowSettings settings;
  std::variant<AlertRequest, EditorRequest> window;
};

// Absent: the line is none that this program understands.
std::optional<WindowRequest> parseWindowRequest(const QByteArray& line);

}  // namespace kestro
