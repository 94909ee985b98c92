#include "views/common/fieldlimit.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QRegularExpression>

#include "records/account.h"
#include "records/columnlimit.h"
#include "records/contact.h"
#include "records/document.h"
#include "records/opportunity.h"
#include "schedule/task.h"

namespace tarvel {

namespace {

constexpr const char* kLimitProperty = "tarvelFieldLimit";

QLineEdit* textBoxOf(QWidget* control) {
    if (auto* e = qobject_cast<QLineEdit*>(control)) return e;
    if (auto* c = qobject_cast<QComboBox*>(control))
        return c->isEditable() ? c->lineEdit() : nullptr;
    return nullptr;
}

template <typename Record>
int describedWidth(const QString& name) {
    const auto* c = Record::description().byControl(name);
    if (!c || !std::holds_alternative<QString Record::*>(c->member)) return -1;
    return c->widthLimit();
}

}  // namespace

int widthOfControl(const char* name) {
    const QString n = QLatin1String(name);
    // The contact panel's account boxes are the account's own columns.
    if (n == QLatin1String("txt_con_account"))
        return columnlimit::width(QStringLiteral("acc_name"));
    if (n == QLatin1String("txt_con_accaddr"))
        return columnlimit::width(QStringLiteral("acc_address"));
    for (const int w :
         {describedWidth<Contact>(n), describedWidth<Account>(n), describedWidth<Opportunity>(n),
          describedWidth<document>(n), describedWidth<Task>(n)})
        if (w >= 0) return w;
    return 0;
}

void limitNamedFields(const QList<QWidget*>& controls, QLabel* note) {
    for (QWidget* c : controls)
        FieldLimit::attach(c, widthOfControl(c->objectName().toLatin1().constData()), note);
}

QString fieldCaption(const QWidget* control) {
    if (!control->accessibleName().isEmpty()) return control->accessibleName();
    for (QWidget* w = control->parentWidget(); w; w = w->parentWidget())
        for (const QLabel* label : w->findChildren<QLabel*>())
            if (label->buddy() == control) {
                QString text = label->text();
                // "主题(&S)：" is read "主题".
                text.remove(QRegularExpression(QStringLiteral("\\(&.\\)")));
                text.remove(QLatin1Char('&'));
                for (const QString& colon : {QStringLiteral("："), QStringLiteral(":")})
                    if (text.endsWith(colon)) text.chop(colon.size());
                return text.trimmed();
            }
    return QString();
}

FieldLimit* FieldLimit::attach(QWidget* control, int limit, QLabel* note) {
    QLineEdit* box = control ? textBoxOf(control) : nullptr;
    if (!box || limit <= 0) return nullptr;
    auto* v = new FieldLimit(box, control, limit, note);
    box->setValidator(v);
    return v;
}

int FieldLimit::limitOf(const QWidget* control) {
    return control ? control->property(kLimitProperty).toInt() : 0;
}

FieldLimit::FieldLimit(QLineEdit* box, QWidget* control, int limit, QLabel* note)
    : QValidator(box),
      box_(box),
      control_(control),
      limit_(limit),
      note_(note),
      last_(box->text()) {
    control->setProperty(kLimitProperty, limit);
    const QString said = columnlimit::limitNote(limit);
    control->setToolTip(said);
    control->setAccessibleDescription(said);
}

QValidator::State FieldLimit::validate(QString& input, int& pos) const {
    // Only the user's edits are held to the limit: a text the program sets
    // (the box is then unmodified) is shown whole.
    if (box_->isModified() && columnlimit::exceeds(input, limit_)) {
        input = fitted(last_, input, &pos);
        showNote(true);
    } else if (box_->isModified()) {
        showNote(columnlimit::length(input) == limit_);
    }
    last_ = input;
    return Acceptable;
}

QString FieldLimit::fitted(const QString& before, const QString& after, int* cursor) const {
    // The unchanged beginning and end; what lies between is what the user
    // inserted (typed, pasted or composed), and only that is cut.
    qsizetype head = 0;
    while (head < before.size() && head < after.size() && before[head] == after[head]) ++head;
    qsizetype tail = 0;
    while (tail < before.size() - head && tail < after.size() - head &&
           before[before.size() - 1 - tail] == after[after.size() - 1 - tail])
        ++tail;
    if (head > 0 && after[head - 1].isHighSurrogate()) --head;
    if (tail > 0 && after[after.size() - tail].isLowSurrogate()) --tail;
    const QString prefix = after.left(head), suffix = after.right(tail);
    const qsizetype room = limit_ - columnlimit::length(prefix) - columnlimit::length(suffix);
    const QString inserted =
        room > 0 ? columnlimit::cut(after.mid(head, after.size() - head - tail), int(room))
                 : QString();
    // A text that was too long already (an older record) takes nothing more
    // but may still be shortened.
    *cursor = int(prefix.size() + inserted.size());
    return prefix + inserted + suffix;
}

void FieldLimit::showNote(bool full) const {
    if (!note_) return;
    const QString caption = fieldCaption(control_);
    const QString said = columnlimit::limitNote(limit_);
    const QString text = caption.isEmpty() ? said : caption + QStringLiteral("：") + said;
    if (full) {
        note_->setText(text);
        note_->show();
    } else if (note_->text() == text) {
        note_->hide();
        note_->clear();
    }
}

}  // namespace tarvel
