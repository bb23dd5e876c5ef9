#include "dialogs/EditorWindow.h"

#include <QAccessible>
#include <QCompleter>
#include <QCoreApplication>
#include <QFormLayout>
#include <QJsonObject>
#include <QLocale>
#include <QPushButton>
#include <QVBoxLayout>

#include "dialogs/MessageChannel.h"
#include "dialogs/WindowLook.h"
#include "foundation/Iso8601.h"
#include "platform/LocalizedStrings.h"

namespace kestro {
namespace {

constexpr int narrowestWindow = 440;
constexpr double headerSize = 1.25;  // of the usual text's

QDateTime localTime(Date date) {
  const auto milliseconds = std::chrono::floor<std::chrono::milliseconds>(date.time_since_epoch());
  return QDateTime::fromMSecsSinceEpoch(milliseconds.count());
}

// With four digits of the year, and the day's hours as the language writes them.
QString timeFormat(const QLocale& locale) {
  QString date = locale.dateFormat(QLocale::ShortFormat);
  if (!date.contains(QLatin1String("yyyy"))) {
    date.replace(QLatin1String("yy"), QLatin1String("yyyy"));
  }
  return date + QLatin1String("  ") + locale.timeFormat(QLocale::ShortFormat);
}

// The name that a label's text gives its field: without the key's mark and the colon.
QString nameOf(QString label) {
  return label.remove(QLatin1Char('&')).remove(QLatin1Char(':'));
}

}  // namespace

EditorWindow::EditorWindow(const EditorRequest& request, const DialogTexts& texts,
                           const QLocale& locale)
    : texts_(texts), hasEnd_(request.hasEnd), givenTitle_(request.title) {
  setWindowTitle(showable(request.header));
  setMinimumWidth(narrowestWindow);
  auto* layout = new QVBoxLayout(this);
  layout->setSpacing(12);
  layout->setContentsMargins(18, 18, 18, 18);
  auto* header = new QLabel(showable(request.header));
  header->setTextFormat(Qt::PlainText);
  QFont font = header->font();
  font.setBold(true);
  font.setPointSizeF(font.pointSizeF() * headerSize);
  header->setFont(font);
  layout->addWidget(header);

  start_ = makeTime(request.start, texts_(localizable("&Start:")), locale);
  end_ = makeTime(request.end, texts_(localizable("&End:")), locale);
  auto* form = new QFormLayout;
  form->setSpacing(10);
  form->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
  form->addRow(texts_(localizable("&Title:")), makeTitle(request));
  form->addRow(texts_(localizable("&Project:")), makeProject(request));
  form->addRow(texts_(localizable("&Start:")), start_.edit);
  if (hasEnd_) {
    form->addRow(texts_(localizable("&End:")), end_.edit);
    duration_ = new QLabel;
    duration_->setTextFormat(Qt::PlainText);
    form->addRow(texts_(localizable("Duration:")), duration_);
  } else {
    end_.edit->setParent(this);
    end_.edit->hide();
  }
  layout->addLayout(form);

  error_ = new QLabel;
  error_->setTextFormat(Qt::PlainText);
  error_->setWordWrap(true);
  error_->setAccessibleName(texts_(localizable("Error")));
  QPalette colours = error_->palette();
  colours.setColor(QPalette::WindowText,
                   hasDarkColours() ? QColor(0xff, 0x8a, 0x75) : QColor(0xb0, 0x1c, 0x28));
  error_->setPalette(colours);
  error_->hide();
  layout->addWidget(error_);

  buttons_ = new QDialogButtonBox;
  auto* saving = buttons_->addButton(texts_(localizable("Sa&ve")), QDialogButtonBox::AcceptRole);
  saving->setDefault(true);
  buttons_->addButton(texts_(localizable("&Cancel")), QDialogButtonBox::RejectRole)
      ->setAutoDefault(false);
  layout->addStretch();
  layout->addWidget(buttons_);
  connect(buttons_, &QDialogButtonBox::accepted, [this] { save(); });
  connect(buttons_, &QDialogButtonBox::rejected, [this] { reject(); });
  connect(this, &QDialog::rejected, [this] { cancel(); });
  updateDuration();
  title_->setFocus();
  title_->selectAll();
}

QLineEdit* EditorWindow::makeTitle(const EditorRequest& request) {
  title_ = new QLineEdit(request.title);
  title_->setAccessibleName(nameOf(texts_(localizable("&Title:"))));
  auto* completer = new QCompleter(request.titles, title_);
  completer->setCaseSensitivity(Qt::CaseInsensitive);
  completer->setFilterMode(Qt::MatchContains);
  title_->setCompleter(completer);
  return title_;
}

QComboBox* EditorWindow::makeProject(const EditorRequest& request) {
  project_ = new QComboBox;
  project_->setEditable(true);
  project_->setInsertPolicy(QComboBox::NoInsert);
  project_->addItem(QString());
  project_->addItems(request.projects);
  project_->setCurrentText(request.project);
  project_->lineEdit()->setPlaceholderText(
      texts_(localizable("None, one of the list, or a new one")));
  project_->setAccessibleName(nameOf(texts_(localizable("&Project:"))));
  return project_;
}

EditorWindow::TimeField EditorWindow::makeTime(Date date, const QString& name,
                                               const QLocale& locale) {
  TimeField field{date, localTime(date), new QDateTimeEdit};
  field.edit->setLocale(locale);
  field.edit->setDisplayFormat(timeFormat(locale));
  field.edit->setDateTime(field.shown);
  field.edit->setCalendarPopup(true);
  field.edit->setAccessibleName(nameOf(name));
  field.shown = field.edit->dateTime();
  connect(field.edit, &QDateTimeEdit::dateTimeChanged, [this] { updateDuration(); });
  return field;
}

Date EditorWindow::dateOf(const TimeField& field) {
  const QDateTime shown = field.edit->dateTime();
  if (shown == field.shown) return field.given;
  return Date(std::chrono::milliseconds(shown.toMSecsSinceEpoch()));
}

void EditorWindow::updateDuration() {
  if (!duration_ || !end_.edit || !start_.edit) return;
  const auto seconds =
      std::chrono::floor<std::chrono::seconds>(dateOf(end_) - dateOf(start_)).count();
  duration_->setText(seconds < 0 ? QStringLiteral("–")
                                 : QStringLiteral("%1:%2")
                                       .arg(seconds / 3600)
                                       .arg(seconds / 60 % 60, 2, 10, QLatin1Char('0')));
  duration_->setAccessibleName(nameOf(texts_(localizable("Duration:"))) + QLatin1Char(' ') +
                               duration_->text());
  if (seconds >= 0 && error_) error_->hide();
}

void EditorWindow::showError(const QString& text) {
  error_->setText(showable(text));
  error_->setAccessibleDescription(error_->text());
  error_->show();
  QAccessibleEvent event(error_, QAccessible::Alert);
  QAccessible::updateAccessibility(&event);
}

void EditorWindow::refuse(const QString& reason) {
  buttons_->setEnabled(true);
  showError(reason);
}

void EditorWindow::save() {
  const Date start = dateOf(start_);
  const Date end = dateOf(end_);
  if (hasEnd_ && end < start) {
    showError(texts_(localizable("The end must not be before the start.")));
    end_.edit->setFocus();
    return;
  }
  error_->hide();
  buttons_->setEnabled(false);
  // A title with line breaks is shown without; unless it was edited, it stays as it came.
  QJsonObject fields{{QStringLiteral("title"), title_->isModified() ? title_->text() : givenTitle_},
                     {QStringLiteral("start"), QString::fromStdString(iso8601(start))},
                     {QStringLiteral("end"), QString::fromStdString(iso8601(end))}};
  const QString project = project_->currentText().trimmed();
  if (!project.isEmpty()) fields[QStringLiteral("project")] = project;
  MessageChannel::send({{QStringLiteral("save"), fields}});
}

void EditorWindow::cancel() {
  MessageChannel::send({{QStringLiteral("cancel"), true}});
  QCoreApplication::exit(0);
}

}  // namespace kestro
