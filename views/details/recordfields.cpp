#include "views/details/recordfields.h"

#include <QComboBox>
#include <QLineEdit>
#include <QPlainTextEdit>

#include "views/common/fieldlimit.h"

namespace tarvel {

QString controlText(const QWidget* control) {
    if (const auto* e = qobject_cast<const QLineEdit*>(control)) return e->text();
    if (const auto* c = qobject_cast<const QComboBox*>(control)) return c->currentText();
    if (const auto* m = qobject_cast<const QPlainTextEdit*>(control)) return m->toPlainText();
    return QString();
}

void setControlText(QWidget* control, const QString& text) {
    if (auto* e = qobject_cast<QLineEdit*>(control)) {
        e->setText(text);
        e->setCursorPosition(0);
    } else if (auto* c = qobject_cast<QComboBox*>(control)) {
        c->setCurrentText(text);
    } else if (auto* m = qobject_cast<QPlainTextEdit*>(control)) {
        m->setPlainText(text);
    }
}

void limitField(QWidget* control, int width, QLabel* note) {
    FieldLimit::attach(control, width, note);
}

}  // namespace tarvel
