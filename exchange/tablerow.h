#pragma once

#include <QList>
#include <QString>
#include <QStringList>

#include "exchange/csv.h"
#include "exchange/importsession.h"

namespace tarvel::exchange {

// Puts a record together from a row of another program's table, given what
// each column fills (a table column or a part; see importlayout.h): the whole
// name from its parts, telephones and e-mails into their three slots (what
// does not fit into the note under its column's header), address parts into
// one readable line and a postcode, a work address for a new account, dates
// in their usual forms. Placeholder dates are empty; a cell that cannot be
// read is named with its row and header and left out.
class TableRowReader {
public:
    TableRowReader(const QString& kind, const QStringList& header, const QStringList& targets);
    // False when the row holds nothing to store. Problems are appended.
    bool read(const CsvRow& row, IncomingRecord* record, QStringList* problems) const;

private:
    QString kind_;
    QStringList header_, targets_;
};

}  // namespace tarvel::exchange
