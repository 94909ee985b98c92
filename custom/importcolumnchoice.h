#pragma once

#include <QString>
#include <QStringList>

namespace tarvel {

// What the user chose each column of an imported table to fill, remembered
// per kind of record and header row, so that the next file with the same
// header row is offered the same choice.
class ImportColumnChoice {
public:
    ImportColumnChoice(const QString& kind, const QStringList& header);
    // The remembered targets (one per header cell), or empty when none are.
    QStringList recall() const;
    bool remember(const QStringList& targets);
    QString ErrMsg() const { return errMsg_; }

private:
    QString key_;
    int columns_;
    QString errMsg_;
};

}  // namespace tarvel
