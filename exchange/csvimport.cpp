#include "exchange/csvimport.h"

#include <QDateTime>
#include <QFile>
#include <QHash>

#include "custom/fsettings.h"
#include "custom/importcolumnchoice.h"
#include "exchange/importlayout.h"
#include "exchange/recordwriter.h"
#include "exchange/tableexport.h"
#include "exchange/tablerow.h"
#include "exchange/tables.h"
#include "exchange/textdecode.h"
#include "exchange/textfile.h"
#include "exchange/xlsxread.h"
#include "exchange/xlsxwrite.h"
#include "store/tarveldatabase.h"

namespace tarvel::exchange {

namespace {

constexpr int kListedProblems = 20;

// The list's columns of a kind: name -> caption, in list order.
QString listed(const QStringList& lines) {
    QString text = lines.mid(0, kListedProblems).join(QLatin1Char('\n'));
    if (lines.size() > kListedProblems) text += QStringLiteral("\n……共%1处").arg(lines.size());
    return text;
}

// Fields a column may fill: the table's writable columns under the list's
// captions (the account's name for contacts too), then the parts.
QList<ImportTarget> choicesFor(const RecordKind& k) {
    QList<ImportTarget> choices;
    const QStringList writable = RecordWriter(QLatin1String(k.table)).columns();
    const bool contacts = k.code == kind::Contact;
    QStringList seen;
    for (const auto& [name, caption] : exportColumns(k.code, false)) {
        const bool usable = writable.contains(name, Qt::CaseInsensitive) ||
                            (contacts && name == CsvImportPlan::accountColumn());
        if (!usable || seen.contains(name) || name.endsWith(QLatin1String("create_date")) ||
            name.endsWith(QLatin1String("recent_contact_date")))
            continue;
        seen << name;
        choices << ImportTarget{name, caption.trimmed()};
    }
    for (const auto& p : layout::choosableParts(QLatin1String(k.table)))
        choices << ImportTarget{p.key, p.caption};
    return choices;
}

QString captionOf(const CsvImportPlan& plan, const QString& target) {
    if (target.isEmpty()) return QString();
    for (const ImportTarget& t : plan.choices)
        if (t.key == target) return t.caption;
    const QString part = layout::partCaption(target);
    return part.isEmpty() ? target : part;
}

// Header cells to targets: the list's captions and column names first (what
// this program writes), then the layouts of other programs.
QStringList mappedTargets(const CsvImportPlan& plan) {
    QHash<QString, QString> byCaption;
    for (const ImportTarget& t : plan.choices) {
        if (t.key.startsWith(QLatin1Char(':'))) continue;
        byCaption.insert(t.key.toLower(), t.key);
        byCaption.insert(t.caption.toLower(), t.key);
    }
    QStringList targets;
    for (const QString& cell : plan.header) {
        const QString h = cell.trimmed().toLower();
        QString target = byCaption.value(h);
        if (target.isEmpty()) target = layout::targetOf(cell, plan.kind);
        targets << target;
    }
    // Beside year and month columns (Thunderbird), a "date of birth" is the day.
    if (targets.contains(QStringLiteral(":birth.month")))
        for (QString& t : targets)
            if (t == QLatin1String("con_birthday")) t = QStringLiteral(":birth.day");
    return targets;
}

bool readRows(const QString& path, const QString& sheet, CsvImportPlan* plan, QString* error) {
    if (isXlsxName(path)) return readXlsx(path, sheet, &plan->rows, error);
    DecodedText text;
    if (!readTextFile(path, &text, error)) return false;
    plan->encodingProblem = text.problem();
    plan->rows = parseCsv(text.text, detectSeparator(text.text));
    return true;
}

}  // namespace

bool planCsvImport(const QString& path, const QString& kind, CsvImportPlan* plan, QString* error,
                   const QString& sheet) {
    const RecordKind* k = recordKind(kind);
    if (!k || (k->code != kind::Contact && k->code != kind::Account)) {
        *error = QStringLiteral("只能从CSV文件导入联系人或单位");
        return false;
    }
    *plan = CsvImportPlan{};
    plan->kind = QLatin1String(k->table);
    plan->path = path;
    if (!readRows(path, sheet, plan, error)) return false;
    if (plan->rows.isEmpty()) {
        *error = QStringLiteral("%1 中没有数据").arg(path);
        return false;
    }
    plan->header = plan->rows.takeFirst().fields;
    plan->choices = choicesFor(*k);
    QStringList targets = ImportColumnChoice(plan->kind, plan->header).recall();
    plan->remembered = !targets.isEmpty();
    if (!plan->remembered) targets = mappedTargets(*plan);
    if (std::all_of(targets.cbegin(), targets.cend(),
                    [](const QString& t) { return t.isEmpty(); })) {
        *error = QStringLiteral("%1 的第一行没有可以识别的列名").arg(path);
        return false;
    }
    retarget(plan, targets);
    return true;
}

void retarget(CsvImportPlan* plan, const QStringList& targets) {
    plan->targets = targets;
    while (plan->targets.size() < plan->header.size()) plan->targets << QString();
    plan->captions.clear();
    for (const QString& t : std::as_const(plan->targets)) plan->captions << captionOf(*plan, t);
    plan->problems.clear();
    const TableRowReader reader(plan->kind, plan->header, plan->targets);
    IncomingRecord record;
    for (const CsvRow& row : std::as_const(plan->rows)) reader.read(row, &record, &plan->problems);
}

bool rememberTargets(const CsvImportPlan& plan, QString* error) {
    ImportColumnChoice choice(plan.kind, plan.header);
    if (choice.remember(plan.targets)) return true;
    *error = QStringLiteral("没有记住列的选择：") + choice.ErrMsg();
    return false;
}

QString CsvImportResult::summary() const {
    QString text = tally.summary();
    if (!tally.cuts.isEmpty()) text += QLatin1Char('\n') + tally.cutLines();
    if (!problems.isEmpty()) text += QStringLiteral("\n以下内容没有导入：\n") + listed(problems);
    return text;
}

Outcome importCsv(const CsvImportPlan& plan, bool importRest, CsvImportResult* result,
                  const Progress& progress) {
    const RecordKind* k = recordKind(plan.kind);
    if (!k) return Outcome::failure(QStringLiteral("未知的记录类别"));
    if (!plan.problems.isEmpty() && !importRest)
        return Outcome::failure(QStringLiteral("文件中有无法导入的内容，没有导入任何记录：\n") +
                                listed(plan.problems));
    ImportSession session(QLatin1String(k->table), QStringLiteral("csv"), plan.path);
    if (!session.isOpen()) return Outcome::failure(importFailed() + session.ErrMsg());
    const TableRowReader reader(plan.kind, plan.header, plan.targets);
    QStringList problems;
    IncomingRecord record;
    for (qsizetype r = 0; r < plan.rows.size(); ++r) {
        const CsvRow& row = plan.rows[r];
        if (reader.read(row, &record, &problems)) {
            record.origin = QStringLiteral("第%1行").arg(row.line);
            QString error;
            if (!session.put(record, &error))
                return Outcome::failure(importFailed() +
                                        QStringLiteral("第%1行：%2").arg(row.line).arg(error));
        }
        if (progress && (r % 100 == 0 || r + 1 == plan.rows.size()) &&
            !progress(int((r + 1) * 100 / plan.rows.size())))
            return Outcome::cancel();
    }
    QString error;
    if (!session.commit(&error)) return Outcome::failure(importFailed() + error);
    if (result) *result = CsvImportResult{session.tally(), problems};
    return Outcome{true, false, plan.path, {}};
}

}  // namespace tarvel::exchange
