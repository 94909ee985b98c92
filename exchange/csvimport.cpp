#include "exchange/csvimport.h"

#include <QHash>

#include "custom/fsettings.h"
#include "exchange/recordwriter.h"
#include "exchange/tables.h"
#include "exchange/textdecode.h"
#include "exchange/textfile.h"
#include "store/jetdate.h"
#include "store/tarveldatabase.h"
#include "store/transaction.h"

namespace tarvel::exchange {

namespace {

// The list's columns of a kind: name -> caption, in list order.
QList<std::pair<QString, QString>> listColumns(int code) {
    FSettings fields;
    fields.GetMySetting(qint16(code));
    QList<std::pair<QString, QString>> columns;
    for (const FSetting& f : fields) columns << std::pair(f.FieldName(), f.Description());
    return columns;
}

QString cellText(const QVariant& value) {
    if (value.typeId() == QMetaType::QDateTime) {
        const QDateTime t = value.toDateTime();
        return t.time() == QTime(0, 0) ? t.date().toString(QStringLiteral("yyyy-MM-dd"))
                                       : t.toString(QStringLiteral("yyyy-MM-dd HH:mm:ss"));
    }
    return value.toString();
}

}  // namespace

bool planCsvImport(const QString& path, const QString& kind, CsvImportPlan* plan, QString* error) {
    const RecordKind* k = recordKind(kind);
    if (!k || (k->word != QStringLiteral("contacts") && k->word != QStringLiteral("accounts"))) {
        *error = QStringLiteral("只能从CSV文件导入联系人或单位");
        return false;
    }
    DecodedText text;
    if (!readTextFile(path, &text, error)) return false;
    QList<CsvRow> rows = parseCsv(text.text);
    if (rows.isEmpty()) {
        *error = QStringLiteral("%1 中没有数据").arg(path);
        return false;
    }
    // Header cells match a caption of the list or a column name.
    QHash<QString, std::pair<QString, QString>> known;
    const QStringList writable = RecordWriter(k->table).columns();
    for (const QString& c : writable) known.insert(c.toLower(), {c, c});
    for (const auto& [name, caption] : listColumns(k->code)) {
        const bool usable =
            writable.contains(name, Qt::CaseInsensitive) ||
            (k->word == QStringLiteral("contacts") && name == CsvImportPlan::accountColumn());
        if (!usable) continue;
        known.insert(name.toLower(), {name, caption});
        known.insert(caption.trimmed().toLower(), {name, caption});
    }
    plan->kind = k->word;
    plan->header = rows.takeFirst().fields;
    plan->targets.clear();
    plan->captions.clear();
    QStringList taken;
    for (const QString& cell : std::as_const(plan->header)) {
        const auto match = known.value(cell.trimmed().toLower());
        const bool fresh = !match.first.isEmpty() && !taken.contains(match.first);
        plan->targets << (fresh ? match.first : QString());
        plan->captions << (fresh ? match.second : QString());
        if (fresh) taken << match.first;
    }
    if (taken.isEmpty()) {
        *error = QStringLiteral("%1 的第一行没有可以识别的列名").arg(path);
        return false;
    }
    plan->rows = rows;
    return true;
}

Outcome importCsv(const CsvImportPlan& plan, int* added, int* accountsAdded,
                  const Progress& progress) {
    const RecordKind* k = recordKind(plan.kind);
    if (!k) return Outcome::failure(QStringLiteral("未知的记录类别"));
    Transaction transaction;
    RecordWriter writer(k->table);
    std::optional<AccountLinker> linker;
    if (k->word == QStringLiteral("contacts")) linker.emplace();
    if (!transaction.isActive() || !writer.isOpen())
        return Outcome::failure(importFailed() + transaction.error() + writer.ErrMsg());
    QStringList bad;
    int stored = 0;
    for (qsizetype r = 0; r < plan.rows.size(); ++r) {
        const CsvRow& row = plan.rows[r];
        QHash<QString, QVariant> values;
        QString account;
        for (qsizetype c = 0; c < plan.targets.size() && c < row.fields.size(); ++c) {
            if (plan.targets[c].isEmpty()) continue;
            if (linker && plan.targets[c] == CsvImportPlan::accountColumn())
                account = row.fields[c];
            else
                values.insert(plan.targets[c], row.fields[c].trimmed());
        }
        QString error;
        const qint64 id = writer.add(values, &error);
        if (!id || (linker && !linker->link(id, account, &error)))
            bad << QStringLiteral("第%1行：%2").arg(row.line).arg(error);
        else
            ++stored;
        if (progress && (r % 100 == 0 || r + 1 == plan.rows.size()) &&
            !progress(int((r + 1) * 100 / plan.rows.size())))
            return Outcome::cancel();
    }
    if (!bad.isEmpty())
        return Outcome::failure(
            QStringLiteral("以下行无法导入，没有导入任何记录：\n") +
            bad.mid(0, 20).join(QLatin1Char('\n')) +
            (bad.size() > 20 ? QStringLiteral("\n……共%1行").arg(bad.size()) : QString()));
    if (!transaction.commit()) return Outcome::failure(importFailed() + transaction.error());
    if (added) *added = stored;
    if (accountsAdded) *accountsAdded = linker ? linker->accountsAdded() : 0;
    return Outcome{true, false, {}, {}};
}

Outcome exportCsv(const QString& kind, const QString& path, const Progress& progress) {
    const RecordKind* k = recordKind(kind);
    if (!k) return Outcome::failure(QStringLiteral("未知的记录类别：") + kind);
    const auto columns = listColumns(k->code);
    QStringList names, captions;
    for (const auto& [name, caption] : columns) names << name, captions << caption;
    tarveldatabase db;
    const auto rs = db.GetReadRs(QStringLiteral("SELECT %1 FROM %2 WHERE %3= true")
                                     .arg(names.join(QLatin1Char(',')), k->listSource, k->check));
    if (!rs || rs->State() != adStateOpen)
        return Outcome::failure(QStringLiteral("导出没有完成：") + db.ErrMsg());
    QString text = csvLine(captions);
    const int total = qMax(1, rs->RecordCount());
    int done = 0;
    for (bool more = !rs->Eof(); more; more = rs->MoveNext() && !rs->Eof()) {
        QStringList values;
        for (int i = 0; i < rs->FieldCount(); ++i) values << cellText(rs->value(i));
        text += csvLine(values);
        if (progress && !progress(++done * 100 / total)) return Outcome::cancel();
    }
    QString error;
    if (!writeTextFile(path, text, true, &error))
        return Outcome::failure(QStringLiteral("导出没有完成：") + error);
    return Outcome{true, false, path, {}};
}

}  // namespace tarvel::exchange
