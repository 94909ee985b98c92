#pragma once

#include <QFormLayout>
#include <QHash>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>
#include <QWidget>

#include "views/common/dialogs.h"

namespace tarvel {

// The module captions as stored, with the built-in name where none is.
class ModuleCaptions {
public:
    static ModuleCaptions load();
    QString caption(const QString& moduleKey) const;
    // The module of a record-kind word ("acc" -> "account", "sch" -> "schedule").
    static QString moduleOf(const QString& word);
    // The five record modules in the order their captions are shown.
    static const QStringList& recordModules();

private:
    QHash<QString, QString> stored_;
};

// One page of the settings window: it loads from storage, saves what it shows
// (inside the window's transaction), and shows the module captions it names.
class SettingsPage : public QWidget {
    Q_OBJECT
public:
    using QWidget::QWidget;
    virtual void load() = 0;
    // Writes the page; false when a write failed (the window rolls back).
    virtual bool save() = 0;
    // Checks what was typed before anything is written; false after telling why.
    virtual bool ready(Messages&) { return true; }
    // After a save was committed.
    virtual void saved() {}
    // Whether the open screens show what this page sets.
    virtual bool changesScreens() const { return true; }
    // The tab caption; the module captions may be part of it.
    virtual QString title(const ModuleCaptions& captions) const = 0;
    virtual void showCaptions(const ModuleCaptions&) {}
};

// What the pages are built of.
namespace settingsui {
QLineEdit* lineEdit(QWidget* parent, const QString& name);
// Label and box rows whose boxes keep a readable width on a wide page.
QFormLayout* formRows();
QLabel* hint(const QString& text, QWidget* parent);
// Up and down beside a list, stacked at its top.
QVBoxLayout* moveButtons(QPushButton* up, QPushButton* down);
// No moving past either end, nor with nothing chosen.
void enableMoves(QPushButton* up, QPushButton* down, int row, int count);
// The page's margins with a hint above its content.
QVBoxLayout* pageLayout(QWidget* page, const QString& hintText);
// A page of label and box rows under its hint.
void formPage(QWidget* page, const QString& hintText, QFormLayout* form);
}  // namespace settingsui

}  // namespace tarvel
