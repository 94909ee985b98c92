#include "views/common/widgetform.h"

#include <QAbstractButton>
#include <QCheckBox>
#include <QComboBox>
#include <QDateEdit>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QTextEdit>

namespace tarvel {

namespace {
const QLatin1String kEnabled(".Enabled");
}  // namespace

QString WidgetForm::Name() const {
    return window_ ? window_->objectName() : QString();
}

QWidget* WidgetForm::control(const QString& name) const {
    if (!window_ || name.isEmpty()) return nullptr;
    return window_->findChild<QWidget*>(name);
}

QVariant WidgetForm::controlValue(const QString& name) const {
    QWidget* w = control(name);
    if (auto* e = qobject_cast<QLineEdit*>(w)) return e->text();
    if (auto* e = qobject_cast<QPlainTextEdit*>(w)) return e->toPlainText();
    if (auto* e = qobject_cast<QTextEdit*>(w)) return e->toPlainText();
    if (auto* c = qobject_cast<QCheckBox*>(w)) return c->isChecked() ? -1 : 0;
    if (auto* d = qobject_cast<QDateEdit*>(w)) return d->date();
    if (auto* c = qobject_cast<QComboBox*>(w)) return c->currentText();
    if (auto* l = qobject_cast<QLabel*>(w)) return l->text();
    if (auto* b = qobject_cast<QAbstractButton*>(w)) return b->text();
    if (qobject_cast<QListWidget*>(w)) return controlItems(name);
    return QVariant();
}

void WidgetForm::setControlValue(const QString& name, const QVariant& value) {
    QWidget* w = control(name);
    if (auto* e = qobject_cast<QLineEdit*>(w)) {
        e->setText(value.toString());
        e->setCursorPosition(0);  // a long text shows its beginning
    } else if (auto* e = qobject_cast<QPlainTextEdit*>(w)) {
        e->setPlainText(value.toString());
    } else if (auto* e = qobject_cast<QTextEdit*>(w)) {
        e->setPlainText(value.toString());
    } else if (auto* c = qobject_cast<QCheckBox*>(w)) {
        c->setChecked(value.toInt() != 0);
    } else if (auto* d = qobject_cast<QDateEdit*>(w)) {
        d->setDate(value.toDate());
    } else if (auto* c = qobject_cast<QComboBox*>(w)) {
        const int at = c->findText(value.toString());
        if (at >= 0)
            c->setCurrentIndex(at);
        else if (c->isEditable())
            c->setEditText(value.toString());
    } else if (auto* l = qobject_cast<QLabel*>(w)) {
        l->setText(value.toString());
    } else if (auto* b = qobject_cast<QAbstractButton*>(w)) {
        b->setText(value.toString());
    } else if (qobject_cast<QListWidget*>(w)) {
        setControlItems(name, value.toStringList());
    }
}

QStringList WidgetForm::controlItems(const QString& name) const {
    QStringList items;
    QWidget* w = control(name);
    if (auto* c = qobject_cast<QComboBox*>(w))
        for (int i = 0; i < c->count(); ++i) items << c->itemText(i);
    if (auto* l = qobject_cast<QListWidget*>(w))
        for (int i = 0; i < l->count(); ++i) items << l->item(i)->text();
    return items;
}

void WidgetForm::setControlItems(const QString& name, const QStringList& items) {
    QWidget* w = control(name);
    if (auto* c = qobject_cast<QComboBox*>(w)) {
        const QString shown = c->currentText();
        c->clear();
        c->addItems(items);
        if (c->isEditable())
            c->setEditText(shown);
        else
            c->setCurrentIndex(c->findText(shown));
    } else if (auto* l = qobject_cast<QListWidget*>(w)) {
        l->clear();
        l->addItems(items);
    }
}

QVariant WidgetForm::property(const QString& name) const {
    if (name.endsWith(kEnabled)) {
        QWidget* w = control(name.chopped(kEnabled.size()));
        return w ? QVariant(w->isEnabled()) : QVariant();
    }
    return window_ ? window_->property(name.toUtf8().constData()) : QVariant();
}

void WidgetForm::setProperty(const QString& name, const QVariant& value) {
    if (name.endsWith(kEnabled)) {
        if (QWidget* w = control(name.chopped(kEnabled.size()))) w->setEnabled(value.toBool());
        return;
    }
    if (window_) window_->setProperty(name.toUtf8().constData(), value);
}

}  // namespace tarvel
