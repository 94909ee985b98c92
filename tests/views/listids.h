#pragma once
// Keys a list screen shows, and keys the engine selects, for comparing the two.
#include <QSet>

#include "browse/listsql.h"
#include "browse/tickmodel.h"
#include "store/tarveldatabase.h"
#include "views/lists/formlist.h"

namespace tarvel::testsupport {

// The first column of every row of `sql`; the test stops when it fails.
inline QSet<qint64> idsOf(const QString& sql) {
    tarveldatabase db;
    QSet<qint64> out;
    RecordsetPtr rs = db.GetReadRs(sql);
    if (!rs) qFatal("%s", qPrintable(db.ErrMsg()));
    for (; !rs->Eof(); rs->MoveNext()) out << rs->value(0).toLongLong();
    return out;
}

inline QSet<qint64> engineIds(const lists::ListKind& kind, const QString& condition) {
    return idsOf(QStringLiteral("SELECT ") + kind.key + QStringLiteral(" FROM ") + kind.source +
                 QLatin1Char(' ') + condition);
}

inline QSet<qint64> shownIds(const lists::FormList& form) {
    QSet<qint64> out;
    for (int r = 0; r < form.gridModel()->rowCount(); ++r) out << form.gridModel()->idAt(r);
    return out;
}

}  // namespace tarvel::testsupport
