#include "exchange/tableexport.h"

#include <QLocale>
#include <QSaveFile>
#include <optional>

#include "custom/fsettings.h"
#include "exchange/csv.h"
#include "exchange/tables.h"
#include "exchange/xlsxwrite.h"
#include "schedule/recurrence.h"
#include "store/tarveldatabase.h"

namespace tarvel::exchange {

namespace {

QString cancelled() {
    return Outcome::cancelledText();
}

// Walks the rows in order, telling the progress in percent; false when the
// user stopped it.
bool eachRow(Recordset& rows, const Progress& progress,
             const std::function<bool(const Recordset&)>& write) {
    const int total = qMax(1, rows.RecordCount());
    int done = 0;
    if (rows.RecordCount() > 0) rows.MoveFirst();
    for (; !rows.Eof(); rows.MoveNext()) {
        if (!write(rows)) return true;
        if (progress && !progress(++done * 100 / total)) return false;
    }
    return true;
}

// Writes head, rows and foot into a file that only takes its name when all
// went well.
bool writeRows(const QString& path, const QByteArray& head, const QByteArray& foot, Recordset& rows,
               const std::function<QByteArray(const Recordset&)>& line, const Progress& progress,
               QString* error) {
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly)) {
        *error = QStringLiteral("无法写入文件：") + path;
        return false;
    }
    file.write(head);
    if (!eachRow(rows, progress,
                 [&](const Recordset& row) { return file.write(line(row)) >= 0; })) {
        file.cancelWriting();
        *error = cancelled();
        return false;
    }
    file.write(foot);
    if (!file.commit()) {
        *error = QStringLiteral("无法写入文件：") + path;
        return false;
    }
    return true;
}

QVector<int> columnsIn(const Recordset& rows, const QList<ExportColumn>& columns) {
    QVector<int> at;
    for (const ExportColumn& c : columns) at << rows.fieldIndex(c.name);
    return at;
}

bool writeXlsx(const QString& path, const QList<ExportColumn>& columns, Recordset& rows,
               const QString& headerTail, const RowTail& tail, const Progress& progress,
               QString* error) {
    QStringList captions;
    for (const ExportColumn& c : columns) captions << c.caption;
    if (!headerTail.isEmpty())
        for (const QString& t : headerTail.split(QLatin1Char(','))) captions << t.trimmed();
    XlsxTable table(path, captions);
    const QVector<int> at = columnsIn(rows, columns);
    const bool finished = eachRow(rows, progress, [&](const Recordset& row) {
        QVariantList cells;
        for (const int i : at) cells << (i < 0 ? QVariant() : row.value(i));
        // The sums are numbers, and a workbook keeps them as numbers.
        if (tail)
            for (const QString& sum : tail(row).split(QLatin1Char(',')))
                cells << QVariant(sum.trimmed().toDouble());
        return table.addRow(cells);
    });
    if (!finished) {
        *error = cancelled();
        return false;
    }
    return table.finish(error);
}

QString escapeHtml(const QString& text) {
    return text.toHtmlEscaped().replace(QLatin1Char('\n'), QStringLiteral("<br>"));
}

}  // namespace

QList<ExportColumn> exportColumns(qint16 kindCode, bool visibleOnly) {
    FSettings fields;
    fields.GetMySetting(kindCode);
    QList<ExportColumn> columns;
    for (const FSetting& f : fields)
        if (!visibleOnly || f.Visible()) columns.append({f.FieldName(), f.Description()});
    return columns;
}

QString cellText(const QVariant& value) {
    if (value.isNull()) return QString();
    if (value.typeId() == QMetaType::QDateTime) {
        const QDateTime dt = value.toDateTime();
        if (isOpenEnded(dt)) return openEndedText();
        return dt.time() == QTime(0, 0) ? dt.date().toString(QStringLiteral("yyyy-MM-dd"))
                                        : dt.toString(QStringLiteral("yyyy-MM-dd HH:mm"));
    }
    if (value.typeId() == QMetaType::QDate)
        return value.toDate().toString(QStringLiteral("yyyy-MM-dd"));
    // Amounts read as written, never in exponent form.
    if (value.typeId() == QMetaType::Double)
        return QLocale::c().toString(value.toDouble(), 'f', QLocale::FloatingPointShortest);
    return value.toString();
}

bool writeTable(const QString& path, const QList<ExportColumn>& columns, Recordset& rows,
                const QString& headerTail, const RowTail& tail, const Progress& progress,
                QString* error) {
    if (isXlsxName(path)) return writeXlsx(path, columns, rows, headerTail, tail, progress, error);
    QStringList header;
    for (const ExportColumn& c : columns) header << csvField(c.caption);
    QString head = header.join(QLatin1Char(','));
    if (!headerTail.isEmpty()) head += QLatin1Char(',') + headerTail;
    const QVector<int> at = columnsIn(rows, columns);
    const auto line = [&](const Recordset& row) {
        QString out;
        for (int i = 0; i < at.size(); ++i) {
            if (i > 0) out += QLatin1Char(',');
            out += csvField(at[i] < 0 ? QString() : cellText(row.value(at[i])));
        }
        if (tail) out += QLatin1Char(',') + tail(row);
        return (out + QStringLiteral("\r\n")).toUtf8();
    };
    return writeRows(path, QByteArray("\xEF\xBB\xBF") + (head + QStringLiteral("\r\n")).toUtf8(),
                     QByteArray(), rows, line, progress, error);
}

bool writeHtml(const QString& path, const QString& title, const QList<ExportColumn>& columns,
               Recordset& rows, const Progress& progress, QString* error) {
    const QVector<int> at = columnsIn(rows, columns);
    const QString head =
        QStringLiteral("<!DOCTYPE html>\n<html><head><meta charset=\"utf-8\"><title>") +
        escapeHtml(title) +
        QStringLiteral(
            "</title><style>table{border-collapse:collapse;margin-bottom:1.5em}"
            "th,td{border:1px solid #999;padding:3px 8px;text-align:left;"
            "vertical-align:top}th{background:#eee;width:10em}</style></head><body>\n"
            "<h1>") +
        escapeHtml(title) + QStringLiteral("</h1>\n");
    const auto record = [&](const Recordset& row) {
        QString out = QStringLiteral("<table>\n");
        for (int i = 0; i < at.size(); ++i)
            out += QStringLiteral("<tr><th>") + escapeHtml(columns[i].caption) +
                   QStringLiteral("</th><td>") +
                   escapeHtml(at[i] < 0 ? QString() : cellText(row.value(at[i]))) +
                   QStringLiteral("</td></tr>\n");
        return (out + QStringLiteral("</table>\n")).toUtf8();
    };
    return writeRows(path, head.toUtf8(), QByteArrayLiteral("</body></html>\n"), rows, record,
                     progress, error);
}

Outcome exportTicked(const QString& kind, const QString& path, const Progress& progress) {
    const RecordKind* k = recordKind(kind);
    if (!k) return Outcome::failure(QStringLiteral("未知的记录类别：") + kind);
    tarveldatabase db;
    const auto rs = db.GetReadRs(QStringLiteral("SELECT * FROM %1 WHERE %2= true")
                                     .arg(QLatin1String(k->listSource), QLatin1String(k->tick)));
    if (!rs || rs->State() != adStateOpen)
        return Outcome::failure(QStringLiteral("导出没有完成：") + db.ErrMsg());
    QString error;
    if (!writeTable(path, exportColumns(k->code, false), *rs, QString(), nullptr, progress, &error))
        return Outcome::from(QStringLiteral("导出没有完成："), error);
    return Outcome{true, false, path, {}};
}

}  // namespace tarvel::exchange
