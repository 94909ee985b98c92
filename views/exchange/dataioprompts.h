#pragma once

#include <QPointer>
#include <QString>
#include <QWidget>
#include <memory>

#include "exchange/csvimport.h"

namespace tarvel {

// The confirmation of a CSV import, which the data exchange page asks before
// anything is read in. Each window holds its own instance, so a test scripts
// one window's answer.
class DataIoPrompts {
public:
    virtual ~DataIoPrompts() = default;
    // Shows how the file's columns map to fields and its first rows; true to go on.
    // Lets the user change what each column fills (the plan takes the choice).
    virtual bool confirmCsvImport(exchange::CsvImportPlan* plan) = 0;
};

// The CSV preview dialog over the window that owns the instance.
class DialogDataIoPrompts : public DataIoPrompts {
public:
    explicit DialogDataIoPrompts(QWidget* parent) : parent_(parent) {}
    bool confirmCsvImport(exchange::CsvImportPlan* plan) override;

private:
    QPointer<QWidget> parent_;
};

}  // namespace tarvel
