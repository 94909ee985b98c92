#include "tools/exchangetool.h"

#include <QDir>
#include <QFileInfo>
#include <functional>
#include <map>

#include "exchange/autobackup.h"
#include "exchange/backup.h"
#include "exchange/csvimport.h"
#include "exchange/filetools.h"
#include "exchange/icalexport.h"
#include "exchange/icalimport.h"
#include "exchange/importsession.h"
#include "exchange/reportexport.h"
#include "exchange/reportimport.h"
#include "exchange/tableexport.h"
#include "exchange/tables.h"
#include "exchange/template.h"
#include "exchange/vcard.h"
#include "exchange/xlsxwrite.h"
#include "schedule/agenda.h"
#include "store/clock.h"
#include "store/connectionstring.h"
#include "store/faulttext.h"
#include "store/schema.h"
#include "store/sqlitehandle.h"

namespace tarvel {

namespace {

using namespace tarvel::exchange;

const char* kUsage =
    "用法: tarvel-io [--db 数据文件] 命令 参数\n"
    "  backup 文件              备份数据文件\n"
    "  restore 文件             用备份文件恢复数据文件\n"
    "  backups                  列出自动备份（文件、日期、大小、各类记录数）\n"
    "  auto-backup              立即做一次自动备份（检验并轮换旧的备份）\n"
    "  export-report 类别 文件  把选定的记录导出到Tarvel报表\n"
    "  import-report 文件       导入Tarvel报表，或合并另一个数据文件(.tvg)或备份(.tbk)\n"
    "  export-template 文件     把字段、界面布局和选项列表保存为模板(.tvm3)\n"
    "  import-template 文件     载入模板，替换字段、界面布局和选项列表\n"
    "  export-csv 类别 文件     把选定的记录导出到CSV文件(文件名以.xlsx结尾时为Excel文件)\n"
    "  import-csv 类别 文件 [--sheet 工作表]\n"
    "                           从CSV或Excel文件导入联系人或单位\n"
    "  export-vcard 文件 [--v3] 把选定的联系人导出到vCard文件（--v3：3.0版，给旧手机）\n"
    "  import-vcard 文件        从vCard文件导入联系人\n"
    "  export-ics 文件          把全部日程导出到iCalendar日历文件\n"
    "  import-ics 文件          从iCalendar日历文件导入日程\n"
    "  agenda 起始日 截止日     列出两天之间（含）的每次日程，日期写作yyyy-MM-dd\n"
    "  undo-import              撤销上次导入\n"
    "类别: contacts, accounts, opportunities, tasks, documents\n";

// One command: its number of arguments and what it does with them; the
// result is the line printed on success.
struct Command {
    int arguments;
    std::function<Outcome(const QStringList&, QString*)> run;
    int optional = 0;  // arguments that may follow
};

const RecordKind* kindOf(const QString& word, Outcome* failure) {
    const RecordKind* k = recordKind(word);
    if (!k) *failure = Outcome::failure(QStringLiteral("未知的记录类别：%1").arg(word));
    return k;
}

const std::map<QString, Command>& commands() {
    static const std::map<QString, Command> table = {
        {QStringLiteral("backup"),
         {1,
          [](const QStringList& a, QString* said) {
              const Outcome o = backupTo(a[0]);
              *said = QStringLiteral("备份成功! 备份文件：%1").arg(o.path);
              return o;
          }}},
        {QStringLiteral("restore"),
         {1,
          [](const QStringList& a, QString* said) {
              const Outcome o = restoreFrom(a[0]);
              *said = QStringLiteral("恢复成功! 恢复之前的文件已经备份到") + o.path;
              return o;
          }}},
        {QStringLiteral("backups"),
         {0,
          [](const QStringList&, QString* said) {
              const QList<AutoBackupEntry> entries =
                  listAutoBackups(autoBackupPlace(liveDataFile()).folder);
              QStringList lines;
              for (const AutoBackupEntry& e : entries)
                  lines << QStringLiteral("%1\t%2\t%3\t%4")
                               .arg(QDir::toNativeSeparators(e.path),
                                    e.made.toString(QStringLiteral("yyyy-MM-dd HH:mm:ss")))
                               .arg(e.bytes)
                               .arg(e.recordsText());
              *said = lines.join(QLatin1Char('\n'));
              return Outcome{true, false, {}, {}};
          }}},
        {QStringLiteral("auto-backup"),
         {0,
          [](const QStringList&, QString* said) {
              const QString live = liveDataFile();
              // What a killed run left is removed first.
              cleanScratchFolder(live);
              const AutoBackupResult r =
                  runAutoBackup({live, autoBackupPlace(live), Clock::now(), {}});
              if (!r.ok) return Outcome::failure(r.message);
              *said = QStringLiteral("自动备份成功! 备份文件：%1").arg(r.path);
              for (const QString& old : r.removed)
                  *said += QStringLiteral("\n已删除旧的自动备份：%1").arg(old);
              return Outcome{true, false, r.path, {}};
          }}},
        {QStringLiteral("export-report"),
         {2,
          [](const QStringList& a, QString* said) {
              Outcome o;
              const RecordKind* k = kindOf(a[0], &o);
              if (!k) return o;
              if (k->code < 1 || k->code > 4)
                  return Outcome::failure(QStringLiteral("文档只能随相关记录导出到报表"));
              o = exportReport(k->code, a[1]);
              *said = QStringLiteral("已导出Tarvel报表：%1").arg(o.path);
              return o;
          }}},
        {QStringLiteral("import-report"),
         {1,
          [](const QStringList& a, QString* said) {
              ImportSummary summary;
              ImportTally tally;
              const Outcome o = importReport(a[0], &summary, {}, &tally);
              *said = QStringLiteral("已导入Tarvel报表 %1：%2（新增的记录：%3）")
                          .arg(o.path, tally.summary(), describe(summary));
              return o;
          }}},
        {QStringLiteral("export-template"),
         {1,
          [](const QStringList& a, QString* said) {
              const Outcome o = saveTemplate(a[0]);
              *said = QStringLiteral("已保存模板：%1").arg(o.path);
              return o;
          }}},
        {QStringLiteral("import-template"),
         {1,
          [](const QStringList& a, QString* said) {
              QStringList changes;
              Outcome o = describeTemplate(a[0], &changes);
              if (!o.ok) return o;
              o = loadTemplate(a[0]);
              *said =
                  QStringLiteral("已载入模板 %1：\n").arg(o.path) + changes.join(QLatin1Char('\n'));
              return o;
          }}},
        {QStringLiteral("export-csv"),
         {2,
          [](const QStringList& a, QString* said) {
              const Outcome o = exportTicked(a[0], a[1]);
              *said = (isXlsxName(a[1]) ? QStringLiteral("已导出到Excel文件：%1")
                                        : QStringLiteral("已导出到CSV文件：%1"))
                          .arg(o.path);
              return o;
          }}},
        {QStringLiteral("import-csv"),
         {2,
          [](const QStringList& a, QString* said) {
              // The sheet of a workbook: --sheet NAME, else the first.
              if (a.size() > 2 && (a.size() != 4 || a[2] != QStringLiteral("--sheet")))
                  return Outcome::failure(QStringLiteral("未知的选项：%1").arg(a.mid(2).join(' ')));
              CsvImportPlan plan;
              QString error;
              if (!planCsvImport(a[1], a[0], &plan, &error, a.value(3)))
                  return Outcome::failure(error);
              // The rest of the file comes in; what could not is printed.
              CsvImportResult result;
              const Outcome o = importCsv(plan, true, &result);
              QStringList used;
              for (qsizetype i = 0; i < plan.header.size(); ++i)
                  used << plan.header[i] + QStringLiteral("→") +
                              (plan.targets[i].isEmpty() ? QStringLiteral("(不导入)")
                                                         : plan.captions[i]);
              *said = QStringLiteral("列：%1\n").arg(used.join(QStringLiteral("，")));
              if (!plan.encodingProblem.isEmpty())
                  *said += plan.encodingProblem + QLatin1Char('\n');
              *said += result.summary();
              return o;
          },
          2}},
        {QStringLiteral("export-vcard"),
         {1,
          [](const QStringList& a, QString* said) {
              if (a.size() > 1 && a[1] != QStringLiteral("--v3"))
                  return Outcome::failure(QStringLiteral("未知的选项：%1").arg(a[1]));
              int written = 0;
              const Outcome o = exportVCards(
                  a[0], a.size() > 1 ? VCardVersion::Three : VCardVersion::Four, &written);
              *said = QStringLiteral("已导出 %1 个联系人到 %2").arg(written).arg(o.path);
              return o;
          },
          1}},
        {QStringLiteral("import-vcard"),
         {1,
          [](const QStringList& a, QString* said) {
              VCardImport done;
              const Outcome o = importVCards(a[0], &done);
              *said = done.summary();
              return o;
          }}},
        {QStringLiteral("export-ics"),
         {1,
          [](const QStringList& a, QString* said) {
              // Every task, as the calendar page exports them.
              const ICalendarExport e = exportTasksToICalendar(a[0], false);
              if (!e.ok) return Outcome::failure(e.ErrMsg);
              *said = QStringLiteral("已导出%1项日程到 %2").arg(e.exported).arg(a[0]);
              if (!e.skipped.isEmpty())
                  *said += QStringLiteral("\n不会在任何一天发生、没有导出：") +
                           e.skipped.join(QStringLiteral("，"));
              return Outcome{true, false, a[0], {}};
          }}},
        {QStringLiteral("import-ics"),
         {1,
          [](const QStringList& a, QString* said) {
              const ICalendarImport i = importICalendarFile(a[0]);
              if (!i.ok) return Outcome::failure(i.ErrMsg);
              *said = i.summary();
              return Outcome{true, false, a[0], {}};
          }}},
        {QStringLiteral("agenda"),
         {2,
          [](const QStringList& a, QString* said) {
              const QDate from = QDate::fromString(a[0], QStringLiteral("yyyy-MM-dd"));
              const QDate to = QDate::fromString(a[1], QStringLiteral("yyyy-MM-dd"));
              if (!from.isValid() || !to.isValid() || to < from)
                  return Outcome::failure(
                      QStringLiteral("日期应写作yyyy-MM-dd，且截止日不早于起始日：%1 %2")
                          .arg(a[0], a[1]));
              QStringList lines;
              QString error;
              if (!agendaLines(from, to, &lines, &error)) return Outcome::failure(error);
              *said = lines.join(QLatin1Char('\n'));
              return Outcome{true, false, {}, {}};
          }}},
        {QStringLiteral("undo-import"),
         {0,
          [](const QStringList&, QString* said) {
              const QString last = lastImportDescription();
              UndoImportResult result;
              const Outcome o = undoLastImport(&result);
              *said = last + QLatin1Char('\n') + result.summary();
              return o;
          }}},
    };
    return table;
}

}  // namespace

int runExchangeTool(const QStringList& args, const QString& programFolder, QTextStream& out,
                    QTextStream& err) {
    QStringList rest = args;
    QString db = QDir(programFolder).filePath(QLatin1String(schema::kDataFileName));
    if (rest.size() >= 2 && rest[0] == QStringLiteral("--db")) {
        db = rest[1];
        rest = rest.mid(2);
    }
    const auto command = rest.isEmpty() ? commands().end() : commands().find(rest[0]);
    if (command == commands().end() || rest.size() < command->second.arguments + 1 ||
        rest.size() > command->second.arguments + command->second.optional + 1) {
        err << QString::fromUtf8(kUsage);
        return 2;
    }
    if (!QFileInfo(db).isFile()) {
        err << QStringLiteral("数据文件不存在：%1\n").arg(db);
        return 1;
    }
    setGlobalConnectionString(connectionStringFor(QFileInfo(db).absoluteFilePath()));
    // A file that cannot be written is named before any work starts.
    if (const QString problem = writeProblem(db); !problem.isEmpty())
        err << QStringLiteral("注意：") << problem << Qt::endl;
    QString said;
    const Outcome outcome = command->second.run(rest.mid(1), &said);
    closeAllHandles();
    if (!outcome.ok) {
        err << outcome.ErrMsg << Qt::endl;
        return 1;
    }
    if (!said.isEmpty()) out << said << Qt::endl;
    return 0;
}

}  // namespace tarvel
