#pragma once

#include <QPointer>
#include <QWidget>

#include "store/form.h"

namespace tarvel {

// The Form a record object sees, over a screen's real widgets: controls are
// found by objectName among the window's children. Values follow Form's
// rules (text boxes and labels: text, check boxes: -1/0, date pickers: QDate,
// combos: current text, list boxes: their items). A property
// "<control>.Enabled" enables or disables that control; every other property
// is a dynamic property of the window. An unknown control reads as null and
// takes no value.
class WidgetForm : public Form {
public:
    explicit WidgetForm(QWidget* window) : window_(window) {}

    QString Name() const override;
    QVariant controlValue(const QString& control) const override;
    void setControlValue(const QString& control, const QVariant& value) override;
    // Combos and list boxes. Setting the items keeps the text the control showed.
    QStringList controlItems(const QString& control) const override;
    void setControlItems(const QString& control, const QStringList& items) override;
    QVariant property(const QString& name) const override;
    void setProperty(const QString& name, const QVariant& value) override;

private:
    QWidget* control(const QString& name) const;

    QPointer<QWidget> window_;
};

}  // namespace tarvel
