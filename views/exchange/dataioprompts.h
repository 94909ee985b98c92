#pragma once

#include <QPointer>
#include <QString>
#include <QWidget>
#include <memory>

#include "exchange/csvimport.h"
#include "views/common/filedialogs.h"

namespace tarvel {

// What the data exchange screens ask through dialogs other than message
// boxes: file names (filters in the form "描述(*.ext)|*.ext"; the overwrite
// question is the screen's own) and the confirmation of a CSV import. Each
// window holds its own instance, so a test scripts one window's answers.
class DataIoPrompts : public FileDialogs {
public:
    // Shows how the file's columns map to fields and its first rows; true to go on.
    // Lets the user change what each column fills (the plan takes the choice).
    virtual bool confirmCsvImport(exchange::CsvImportPlan* plan) = 0;
};

// QFileDialog and the CSV preview dialog over the window that owns the instance.
class DialogDataIoPrompts : public DataIoPrompts {
public:
    explicit DialogDataIoPrompts(QWidget* parent) : parent_(parent) {}
    QString getOpenFileName(const QString& caption, const QString& dir,
                            const QString& filter) override;
    QString getSaveFileName(const QString& caption, const QString& proposed,
                            const QString& filter) override;
    bool confirmCsvImport(exchange::CsvImportPlan* plan) override;

private:
    QPointer<QWidget> parent_;
};

// "Tarvel备份文件(*.tbk)|*.tbk" as a file dialog writes it: "Tarvel备份文件(*.tbk)".
QString dialogFilter(const QString& filter);

}  // namespace tarvel
