// KestroDialogs: one window of the helper's, which has no toolkit of its own. The helper starts it
// when a window is needed and speaks to it in lines of JSON (docs/shell.md, "Windows").
#include <QApplication>
#include <QIcon>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLocale>
#include <cstdio>
#include <cstdlib>
#include <memory>

#include "dialogs/AlertWindow.h"
#include "dialogs/DialogTexts.h"
#include "dialogs/EditorWindow.h"
#include "dialogs/MessageChannel.h"
#include "dialogs/WindowLook.h"
#include "dialogs/WindowRequest.h"

namespace kestro {
namespace {

constexpr int malformedRequestStatus = 2;
constexpr int noDisplayStatus = 3;

bool isGiven(const char* variable) {
  const char* value = std::getenv(variable);
  return value && *value;
}

int refuse(const char* reason, int status) {
  std::fprintf(stderr, "KestroDialogs: %s\n", reason);
  return status;
}

class Dialogs {
 public:
  Dialogs() : channel_([this](const QByteArray& line) { take(line); }) {}

 private:
  void take(const QByteArray& line) {
    if (window_) return takeMessage(QJsonDocument::fromJson(line).object());
    const auto request = parseWindowRequest(line);
    if (!request) {
      return QCoreApplication::exit(
          refuse("the first line is no request for a window", malformedRequestStatus));
    }
    show(*request);
  }

  void show(const WindowRequest& request) {
    followDesktopColours(request.settings.isDark);
    texts_ = std::make_unique<DialogTexts>(request.settings.language);
    auto place = WindowPlace::centre;
    if (const auto* alert = std::get_if<AlertRequest>(&request.window)) {
      window_ = std::make_unique<AlertWindow>(*alert, *texts_);
    } else if (const auto* editing = std::get_if<EditorRequest>(&request.window)) {
      auto editor = std::make_unique<EditorWindow>(*editing, *texts_, locale(request.settings));
      editor_ = editor.get();
      window_ = std::move(editor);
      if (!editing->center) place = WindowPlace::topRight;
    }
    placeWindow(*window_, place);
    window_->show();
    bringToFront(*window_);
  }

  // The user's own, with the language that the helper speaks.
  static QLocale locale(const WindowSettings& settings) {
    const QLocale system = QLocale::system();
    const QLocale spoken(settings.language);
    return system.language() == spoken.language() ? system : spoken;
  }

  void takeMessage(const QJsonObject& message) {
    if (message.contains(QLatin1String("raise"))) bringToFront(*window_);
    if (message.contains(QLatin1String("accepted"))) QCoreApplication::exit(0);
    const QJsonValue refusal = message[QLatin1String("refuse")];
    if (editor_ && refusal.isString()) editor_->refuse(refusal.toString());
  }

  MessageChannel channel_;
  std::unique_ptr<DialogTexts> texts_;
  std::unique_ptr<QDialog> window_;
  EditorWindow* editor_ = nullptr;  // the window, when it is one
};

}  // namespace
}  // namespace kestro

int main(int argumentCount, char** arguments) {
  using namespace kestro;
  if (!isGiven("DISPLAY") && !isGiven("WAYLAND_DISPLAY") && !isGiven("QT_QPA_PLATFORM")) {
    return refuse("there is no display to show a window on", noDisplayStatus);
  }
  QApplication application(argumentCount, arguments);
  QApplication::setDesktopFileName(QStringLiteral("com.kestro.KestroHelper"));
  QApplication::setWindowIcon(QIcon::fromTheme(QStringLiteral("com.kestro.KestroHelper")));
  QApplication::setQuitOnLastWindowClosed(false);
  Dialogs dialogs;
  return QApplication::exec();
}
