#pragma once

#include <QHash>
#include <QString>
#include <QStringList>
#include <QVariant>

namespace tarvel {

// What a record object sees of the screen it serves: the form's name, its
// controls' values by control name (text boxes: text, check boxes: -1/0, date
// pickers: QDate, combos: current text, list boxes: their items) and its named
// properties (g_ConID, bCantChgFlag_ConName, iShowTas, ...). Screens implement
// it over their widgets; model tests over a map.
class Form {
public:
    virtual ~Form() = default;
    virtual QString Name() const = 0;
    virtual QVariant controlValue(const QString& control) const = 0;
    virtual void setControlValue(const QString& control, const QVariant& value) = 0;
    virtual QStringList controlItems(const QString& control) const = 0;
    virtual void setControlItems(const QString& control, const QStringList& items) = 0;
    virtual QVariant property(const QString& name) const = 0;
    virtual void setProperty(const QString& name, const QVariant& value) = 0;
};

// A form held in maps: for model code without a screen, and for tests.
class MapForm : public Form {
public:
    explicit MapForm(QString name = QString()) : name_(std::move(name)) {}
    QString Name() const override { return name_; }
    void setName(const QString& name) { name_ = name; }
    QVariant controlValue(const QString& control) const override {
        return controls_.value(control);
    }
    void setControlValue(const QString& control, const QVariant& value) override {
        controls_.insert(control, value);
    }
    QStringList controlItems(const QString& control) const override {
        return items_.value(control);
    }
    void setControlItems(const QString& control, const QStringList& items) override {
        items_.insert(control, items);
    }
    QVariant property(const QString& name) const override { return properties_.value(name); }
    void setProperty(const QString& name, const QVariant& value) override {
        properties_.insert(name, value);
    }

private:
    QString name_;
    QHash<QString, QVariant> controls_;
    QHash<QString, QStringList> items_;
    QHash<QString, QVariant> properties_;
};

}  // namespace tarvel
