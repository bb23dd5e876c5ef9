#include "dialogs/AlertWindow.h"

#include <QCheckBox>
#include <QCoreApplication>
#include <QJsonObject>
#include <QPushButton>
#include <QStyle>

#include "dialogs/MessageChannel.h"
#include "dialogs/WindowLook.h"
#include "platform/LocalizedStrings.h"

namespace kestro {
namespace {

// A "&" of the text is none of a shortcut's.
QString plainButtonText(const QString& text) {
  return showable(text).replace(QLatin1Char('&'), QLatin1String("&&"));
}

}  // namespace

AlertWindow::AlertWindow(const AlertRequest& request, const DialogTexts& texts) {
  setWindowTitle(QStringLiteral("Kestro Tracker"));
  setTextFormat(Qt::PlainText);
  setIcon(QMessageBox::Warning);
  setText(showable(request.message));
  setInformativeText(showable(request.informativeText));
  setAccessibleName(text());
  setAccessibleDescription(informativeText());
  for (const QString& title : request.buttons) {
    const bool isLast = choices_.size() + 1 == request.buttons.size();
    const auto role = choices_.isEmpty() ? QMessageBox::AcceptRole
                      : isLast           ? QMessageBox::RejectRole
                                         : QMessageBox::ActionRole;
    choices_.append(addButton(plainButtonText(title), role));
  }
  setDefaultButton(qobject_cast<QPushButton*>(choices_.first()));
  setEscapeButton(choices_.last());
  if (request.showsSuppression) {
    // Owned by the window.
    auto* box = new QCheckBox(texts(localizable("Do not ask again")));
    box->setChecked(request.suppressionIsChecked);
    setCheckBox(box);
  }
  connect(this, &QDialog::finished, [this] {
    const auto place = choices_.indexOf(clickedButton());
    answer(static_cast<int>(place >= 0 ? place : choices_.size() - 1));
  });
}

void AlertWindow::answer(int button) {
  MessageChannel::send({{QStringLiteral("button"), button},
                        {QStringLiteral("suppress"), checkBox() && checkBox()->isChecked()}});
  QCoreApplication::exit(0);
}

}  // namespace kestro
