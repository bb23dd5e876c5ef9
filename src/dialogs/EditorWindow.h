// The editor of a time entry. What is saved is sent to the helper, which may refuse it; then the
// window says why and stays as it is.
#pragma once

#include <QComboBox>
#include <QDateTimeEdit>
#include <QDialog>
#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>

#include "dialogs/DialogTexts.h"
#include "dialogs/WindowRequest.h"

namespace kestro {

class EditorWindow final : public QDialog {
 public:
  EditorWindow(const EditorRequest& request, const DialogTexts& texts, const QLocale& locale);

  // The helper has refused what was to be saved.
  void refuse(const QString& reason);

 private:
  // A date of the request, and the field that shows it. What nobody edits is saved as it came,
  // to fractions of a second.
  struct TimeField {
    Date given;
    QDateTime shown;
    QDateTimeEdit* edit = nullptr;
  };

  void makeFields(const EditorRequest& request);
  QLineEdit* makeTitle(const EditorRequest& request);
  QComboBox* makeProject(const EditorRequest& request);
  TimeField makeTime(Date date, const QString& name, const QLocale& locale);
  static Date dateOf(const TimeField& field);
  void updateDuration();
  void showError(const QString& text);
  void save();
  void cancel();

  const DialogTexts& texts_;
  bool hasEnd_;
  QString givenTitle_;
  QLineEdit* title_ = nullptr;
  QComboBox* project_ = nullptr;
  TimeField start_;
  TimeField end_;
  QLabel* duration_ = nullptr;
  QLabel* error_ = nullptr;
  QDialogButtonBox* buttons_ = nullptr;
};

}  // namespace kestro
