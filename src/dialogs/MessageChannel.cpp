#include "dialogs/MessageChannel.h"

#include <unistd.h>

#include <QCoreApplication>
#include <QJsonDocument>
#include <array>
#include <cerrno>

namespace kestro {

MessageChannel::MessageChannel(Line line)
    : line_(std::move(line)), notifier_(STDIN_FILENO, QSocketNotifier::Read) {
  QObject::connect(&notifier_, &QSocketNotifier::activated, [this] { read(); });
}

void MessageChannel::read() {
  std::array<char, 65536> buffer{};
  const ssize_t count = ::read(STDIN_FILENO, buffer.data(), buffer.size());
  if (count < 0 && (errno == EINTR || errno == EAGAIN)) return;
  if (count <= 0) {
    notifier_.setEnabled(false);
    return QCoreApplication::exit(0);
  }
  unread_.append(buffer.data(), count);
  for (qsizetype mark = unread_.indexOf('\n'); mark >= 0; mark = unread_.indexOf('\n')) {
    const QByteArray line = unread_.left(mark);
    unread_.remove(0, mark + 1);
    line_(line);
  }
}

void MessageChannel::send(const QJsonObject& message) {
  QByteArray line = QJsonDocument(message).toJson(QJsonDocument::Compact) + '\n';
  while (!line.isEmpty()) {
    const ssize_t count = write(STDOUT_FILENO, line.constData(), static_cast<size_t>(line.size()));
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) return;
    line.remove(0, count);
  }
}

}  // namespace kestro
