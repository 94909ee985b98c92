#include "views/details/recordfields.h"

#include <QComboBox>
#include <QLineEdit>
#include <QPlainTextEdit>

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

int columnWidth(const QWidget* control, int describedCut) {
    if (describedCut > 0) return describedCut;
    if (qobject_cast<const QPlainTextEdit*>(control)) return 0;
    return qobject_cast<const QComboBox*>(control) ? 50 : 255;
}

}  // namespace tarvel
