#include "dialogs/WindowLook.h"

#include <QApplication>
#include <QCursor>
#include <QPalette>
#include <QScreen>
#include <QStyleFactory>

namespace kestro {
namespace {

constexpr int longestShownText = 1000;  // characters
constexpr int distanceFromEdge = 24;

QPalette darkPalette() {
  const QColor window(0x2d, 0x2f, 0x31);
  const QColor base(0x3d, 0x40, 0x43);
  const QColor text(0xee, 0xee, 0xec);
  const QColor faint(0x8f, 0x91, 0x93);
  const QColor accent(0x35, 0x84, 0xe4);
  QPalette palette(text, QColor(0x3a, 0x3d, 0x40), QColor(0x55, 0x58, 0x5b),
                   QColor(0x14, 0x15, 0x16), QColor(0x45, 0x48, 0x4b), text, text, base, window);
  palette.setColor(QPalette::Highlight, accent);
  palette.setColor(QPalette::HighlightedText, Qt::white);
  palette.setColor(QPalette::PlaceholderText, faint);
  palette.setColor(QPalette::ToolTipBase, base);
  palette.setColor(QPalette::ToolTipText, text);
  palette.setColor(QPalette::Link, QColor(0x78, 0xae, 0xed));
  for (const auto role : {QPalette::Text, QPalette::WindowText, QPalette::ButtonText})
    palette.setColor(QPalette::Disabled, role, faint);
  return palette;
}

}  // namespace

bool hasDarkColours() {
  const QPalette palette = QApplication::palette();
  return palette.color(QPalette::Window).lightness() <
         palette.color(QPalette::WindowText).lightness();
}

void followDesktopColours(std::optional<bool> isDark) {
  if (!isDark || *isDark == hasDarkColours()) return;
  QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
  QApplication::setPalette(*isDark ? darkPalette() : QApplication::style()->standardPalette());
}

QString showable(const QString& text) {
  if (text.size() <= longestShownText) return text;
  return text.left(longestShownText) + QStringLiteral("…");
}

void placeWindow(QWidget& window, WindowPlace place) {
  const QScreen* screen = QGuiApplication::screenAt(QCursor::pos());
  if (!screen) screen = QGuiApplication::primaryScreen();
  if (!screen) return;
  window.adjustSize();
  const QRect area = screen->availableGeometry();
  const QSize size = window.size();
  if (place == WindowPlace::centre) {
    window.move(area.center() - QPoint(size.width() / 2, size.height() / 2));
  } else {
    window.move(area.right() - size.width() - distanceFromEdge, area.top() + distanceFromEdge);
  }
}

void bringToFront(QWidget& window) {
  window.setWindowState((window.windowState() & ~Qt::WindowMinimized) | Qt::WindowActive);
  window.raise();
  window.activateWindow();
}

}  // namespace kestro
