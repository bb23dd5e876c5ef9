// A question with buttons and, perhaps, a box. It is answered once, and the program ends.
#pragma once

#include <QMessageBox>

#include "dialogs/DialogTexts.h"
#include "dialogs/WindowRequest.h"

namespace kestro {

class AlertWindow final : public QMessageBox {
 public:
  AlertWindow(const AlertRequest& request, const DialogTexts& texts);

 private:
  void answer(int button);

  QList<QAbstractButton*> choices_;
};

}  // namespace kestro
