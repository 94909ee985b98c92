#include "browse/listexport.h"

#include <QSaveFile>

#include "browse/tickmodel.h"
#include "custom/fsettings.h"
#include "exchange/csv.h"
#include "exchange/xlsxwrite.h"

namespace tarvel::lists {

namespace {

// Walks the rows into a file that only takes its name when all went well.
bool writeRows(const QString& path, const QByteArray& head, const QByteArray& foot, Recordset& rows,
               const std::function<QByteArray(const Recordset&)>& line,
               const ExportProgress& progress, QString* error) {
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly)) {
        *error = QStringLiteral("无法写入文件：") + path;
        return false;
    }
    file.write(head);
    const int total = rows.RecordCount();
    int done = 0;
    if (total > 0) rows.MoveFirst();
    for (; !rows.Eof(); rows.MoveNext()) {
        file.write(line(rows));
        if (progress && !progress(++done, total)) {
            file.cancelWriting();
            *error = QStringLiteral("导出已取消。");
            return false;
        }
    }
    file.write(foot);
    if (!file.commit()) {
        *error = QStringLiteral("无法写入文件：") + path;
        return false;
    }
    return true;
}

QString escapeHtml(const QString& text) {
    return text.toHtmlEscaped().replace(QLatin1Char('\n'), QStringLiteral("<br>"));
}

}  // namespace

QList<ExportColumn> exportColumns(const ListKind& kind, bool visibleOnly) {
    QList<ExportColumn> columns;
    if (const FSettings* fields = programFieldSettings(kind.fieldType))
        for (const FSetting& f : *fields)
            if (!visibleOnly || f.Visible()) columns.append({f.FieldName(), f.Description()});
    return columns;
}

bool writeXlsx(const QString& path, const QList<ExportColumn>& columns, Recordset& rows,
               const QString& headerTail, const RowTail& tail, const ExportProgress& progress,
               QString* error) {
    QStringList captions;
    for (const ExportColumn& c : columns) captions << c.caption;
    if (!headerTail.isEmpty())
        for (const QString& t : headerTail.split(QLatin1Char(','))) captions << t.trimmed();
    exchange::XlsxTable table(path, captions);
    QVector<int> at;
    for (const ExportColumn& c : columns) at << rows.fieldIndex(c.name);
    const int total = rows.RecordCount();
    int done = 0;
    if (total > 0) rows.MoveFirst();
    for (; !rows.Eof(); rows.MoveNext()) {
        QVariantList cells;
        for (const int i : at) cells << (i < 0 ? QVariant() : rows.value(i));
        // The sums are numbers, and a workbook keeps them as numbers.
        if (tail)
            for (const QString& sum : tail(rows).split(QLatin1Char(',')))
                cells << QVariant(sum.trimmed().toDouble());
        if (!table.addRow(cells)) break;
        if (progress && !progress(++done, total)) {
            *error = QStringLiteral("导出已取消。");
            return false;
        }
    }
    return table.finish(error);
}

bool writeCsv(const QString& path, const QList<ExportColumn>& columns, Recordset& rows,
              const QString& headerTail, const RowTail& tail, const ExportProgress& progress,
              QString* error) {
    if (exchange::isXlsxName(path))
        return writeXlsx(path, columns, rows, headerTail, tail, progress, error);
    QStringList header;
    for (const ExportColumn& c : columns) header << exchange::csvField(c.caption);
    QString head = header.join(QLatin1Char(','));
    if (!headerTail.isEmpty()) head += QLatin1Char(',') + headerTail;
    QVector<int> at;
    for (const ExportColumn& c : columns) at << rows.fieldIndex(c.name);
    const auto line = [&](const Recordset& row) {
        QString out;
        for (int i = 0; i < at.size(); ++i) {
            if (i > 0) out += QLatin1Char(',');
            out += exchange::csvField(at[i] < 0 ? QString() : cellText(row.value(at[i])));
        }
        if (tail) out += QLatin1Char(',') + tail(row);
        return (out + QStringLiteral("\r\n")).toUtf8();
    };
    return writeRows(path, QByteArray("\xEF\xBB\xBF") + (head + QStringLiteral("\r\n")).toUtf8(),
                     QByteArray(), rows, line, progress, error);
}

bool writeHtml(const QString& path, const QString& title, const QList<ExportColumn>& columns,
               Recordset& rows, const ExportProgress& progress, QString* error) {
    QVector<int> at;
    for (const ExportColumn& c : columns) at << rows.fieldIndex(c.name);
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

}  // namespace tarvel::lists
