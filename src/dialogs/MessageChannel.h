// The lines of JSON between the helper and this program: standard input and standard output. When
// the helper closes its end, the program ends.
#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QSocketNotifier>
#include <functional>

namespace kestro {

class MessageChannel {
 public:
  using Line = std::function<void(const QByteArray& line)>;

  explicit MessageChannel(Line line);

  static void send(const QJsonObject& message);

 private:
  void read();

  Line line_;
  QByteArray unread_;
  QSocketNotifier notifier_;
};

}  // namespace kestro
