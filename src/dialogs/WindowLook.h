// How all windows look and where they stand.
#pragma once

#include <QString>
#include <QWidget>
#include <optional>

namespace kestro {

// Dark or light as the desktop prefers, where the toolkit does not find that out by itself.
void followDesktopColours(std::optional<bool> isDark);
bool hasDarkColours();

// What can be shown of a text that comes from anywhere: cut when it is too long for any window.
QString showable(const QString& text);

enum class WindowPlace { centre, topRight };
// On the screen with the pointer. Where the desktop places windows itself, nothing.
void placeWindow(QWidget& window, WindowPlace place);
void bringToFront(QWidget& window);

}  // namespace kestro
