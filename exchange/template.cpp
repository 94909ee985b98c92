#include "exchange/template.h"

#include <QFileInfo>
#include <QSet>
#include <memory>

#include "exchange/attachedfile.h"
#include "exchange/filetools.h"
#include "exchange/optioncolumns.h"
#include "exchange/tables.h"
#include "exchange/templatecontent.h"
#include "store/connectionstring.h"
#include "store/schema.h"
#include "store/sqlitehandle.h"
#include "store/tarveldatabase.h"
#include "store/transaction.h"

namespace tarvel::exchange {

namespace {

const QString kSchema = QStringLiteral("tvtemplate");

QString quoted(const QString& name) {
    return QLatin1Char('"') + name + QLatin1Char('"');
}

// Copies the rows of `table` from the live file into the attached one, or
// back with `intoTemplate` false: the columns both have, less `skip`.
bool copyRows(const AttachedFile& file, const QString& table, bool intoTemplate,
              const QString& where, const QString& skip, QString* error) {
    QStringList cols = file.sharedColumns(table);
    cols.removeAll(skip);
    if (cols.isEmpty()) return true;
    const QString list = cols.join(QStringLiteral(", "));
    const QString from = intoTemplate ? QStringLiteral("main") : file.schema();
    const QString to = intoTemplate ? file.schema() : QStringLiteral("main");
    return file.run(QStringLiteral("INSERT INTO %1.%2 (%3) SELECT %3 FROM %4.%2 %5")
                        .arg(to, quoted(table), list, from, where),
                    {}, error);
}

// Builds the template's tables in a new file as the live file defines them.
bool createTables(const QString& path, QString* error) {
    auto live = acquireHandle(globalConnectionString(), error);
    if (!live) return false;
    auto target = Handle::open(path, QLatin1String(schema::kDatabasePassword), true, error);
    if (!target) return false;
    bool ok = true;
    for (const QString& table : templateTables()) {
        QList<QVariantList> ddl;
        // Tables sort after their indexes' type name, so read them first.
        ok = queryRows(*live,
                       QStringLiteral("SELECT sql FROM main.sqlite_master WHERE tbl_name='%1' "
                                      "AND sql IS NOT NULL ORDER BY type DESC")
                           .arg(table),
                       &ddl, error);
        if (ok && ddl.isEmpty()) {
            *error = QStringLiteral("当前数据文件缺少表 %1").arg(table);
            ok = false;
        }
        for (int i = 0; ok && i < ddl.size(); ++i)
            ok = target->exec(ddl[i].value(0).toString(), error);
        if (!ok) break;
    }
    target->close();
    return ok;
}

// The texts records store in each option list's column.
QHash<QString, QStringList> usedOptions(const AttachedFile& file, QString* error) {
    QHash<QString, QStringList> used;
    for (const OptionColumn& o : optionColumns()) {
        QList<QVariantList> values;
        if (!file.rows(QStringLiteral("SELECT DISTINCT %1 FROM main.%2 WHERE %1 IS NOT NULL")
                           .arg(o.column, o.table),
                       &values, error))
            return {};
        QStringList& texts = used[optionListKey(o.object, o.name)];
        for (const QVariantList& v : std::as_const(values)) {
            const QString text = v.value(0).toString();
            const QStringList parts =
                o.several ? text.split(QLatin1Char(','), Qt::SkipEmptyParts) : QStringList{text};
            for (const QString& p : parts)
                if (!p.trimmed().isEmpty() && !texts.contains(p.trimmed(), Qt::CaseInsensitive))
                    texts << p.trimmed();
        }
    }
    return used;
}

}  // namespace

QStringList templateTables() {
    return {QStringLiteral("fields"),   QStringLiteral("interface"), QStringLiteral("options"),
            QStringLiteral("phase"),    QStringLiteral("important"), QStringLiteral("opp_type"),
            QStringLiteral("relation"), QStringLiteral("province"),  QStringLiteral("industry"),
            QStringLiteral("type"),     QStringLiteral("task_type"), QStringLiteral("title")};
}

namespace {

// The options the records use that the loaded lists lack, each added to
// `added` as (list key, text); a line for the user per list.
QStringList keptOptionsNotIn(const QHash<QString, QStringList>& used, const TemplateContent& loaded,
                             QList<QPair<QString, QString>>* added) {
    QStringList lines;
    for (const OptionColumn& o : optionColumns()) {
        const QString key = optionListKey(o.object, o.name);
        const QStringList offered = loaded.options.value(key);
        QStringList missing;
        for (const QString& text : used.value(key))
            if (!offered.contains(text, Qt::CaseInsensitive)) missing << text;
        if (missing.isEmpty()) continue;
        for (const QString& text : std::as_const(missing)) added->append({key, text});
        lines << QStringLiteral("%1的%2选项另外保留记录在用的：%3")
                     .arg(kindCaptionOfPrefix(o.object), o.caption,
                          missing.join(QStringLiteral("、")));
    }
    return lines;
}

}  // namespace

Outcome saveTemplate(const QString& chosen) {
    const QString prefix = QStringLiteral("保存模板没有完成：");
    if (chosen.trimmed().isEmpty()) return Outcome{true, false, {}, {}};
    const QString target = QFileInfo(chosen.trimmed()).absoluteFilePath();
    const QString part = target + QStringLiteral(".part");
    Leftovers leftovers{{part}};
    QString error;
    if (!removeFile(part, &error) || !createTables(part, &error))
        return Outcome::failure(prefix + error);
    {
        AttachedFile file(part, kSchema);
        if (!file.isOpen()) return Outcome::failure(prefix + file.error());
        Transaction transaction;
        bool ok = transaction.isActive();
        if (!ok) error = transaction.error();
        for (const QString& table : templateTables()) {
            if (!ok) break;
            ok = copyRows(file, table, true,
                          table == QLatin1String("interface") ? QStringLiteral("WHERE app_type=0")
                                                              : QString(),
                          QString(), &error);
        }
        if (ok && !transaction.commit()) {
            ok = false;
            error = transaction.error();
        }
        if (!ok) return Outcome::failure(prefix + error);
    }
    if (!replaceFile(part, target, &error)) return Outcome::failure(prefix + error);
    return Outcome{true, false, target, {}};
}

namespace {

// A template checked and attached, with what it holds and the options the
// records use read beside it.
struct OpenTemplate {
    std::unique_ptr<AttachedFile> file;
    TemplateContent loaded;
    QList<QPair<QString, QString>> kept;  // options the records use that it lacks
    QStringList keptLines;
    QString source, error;

    bool open(const QString& path) {
        source = QFileInfo(path.trimmed()).absoluteFilePath();
        if (!checkTemplateFile(source, &error)) return false;
        file = std::make_unique<AttachedFile>(source, kSchema);
        if (!file->isOpen()) return (error = file->error(), false);
        if (!loaded.read(*file, file->schema(), &error)) return false;
        const QHash<QString, QStringList> used = usedOptions(*file, &error);
        if (!error.isEmpty()) return false;
        keptLines = keptOptionsNotIn(used, loaded, &kept);
        return true;
    }
};

}  // namespace

Outcome describeTemplate(const QString& path, QStringList* changes) {
    OpenTemplate t;
    TemplateContent now;
    if (!t.open(path) || !now.read(*t.file, QStringLiteral("main"), &t.error))
        return Outcome::failure(QStringLiteral("无法载入模板：") + t.error);
    *changes = describeChanges(now, t.loaded) + t.keptLines;
    if (changes->isEmpty()) *changes << QStringLiteral("模板与当前设置相同，载入后不会有变化。");
    return Outcome{true, false, t.source, {}};
}

Outcome loadTemplate(const QString& path, int* kept) {
    const QString prefix = QStringLiteral("载入模板没有完成，当前设置没有改动：");
    // What the records use is read before their lists are replaced.
    OpenTemplate t;
    if (!t.open(path)) return Outcome::failure(prefix + t.error);
    const AttachedFile& file = *t.file;
    const auto& added = t.kept;
    QString error;

    Transaction transaction;
    bool ok = transaction.isActive();
    if (!ok) error = transaction.error();
    tarveldatabase db;
    // The layout in use goes first, as the program has always cleared it.
    const QStringList clear = {QStringLiteral("DELETE * FROM interface WHERE app_type=0 "),
                               QStringLiteral("DELETE * FROM fields")};
    for (const QString& sql : clear) {
        if (!ok) break;
        db.Execute(sql);
        ok = db.ErrMsg().isEmpty();
        if (!ok) error = db.ErrMsg();
    }
    ok = ok && copyRows(file, QStringLiteral("interface"), false,
                        QStringLiteral("WHERE app_type=0"), QString(), &error);
    ok = ok && copyRows(file, QStringLiteral("fields"), false, QString(), QString(), &error);
    for (const QString& table : templateTables().mid(2)) {
        if (!ok) break;
        db.Execute(QStringLiteral("DELETE * FROM ") + table);
        ok = db.ErrMsg().isEmpty();
        if (!ok) error = db.ErrMsg();
        // The option lists' own keys are this file's to give.
        ok =
            ok && copyRows(file, table, false, QString(),
                           table == QLatin1String("options") ? QStringLiteral("opt_id") : QString(),
                           &error);
    }
    for (const auto& [key, text] : std::as_const(added)) {
        if (!ok) break;
        const QStringList objectAndName = key.split(QLatin1Char('/'));
        ok = file.run(QStringLiteral("INSERT INTO main.options (opt_object, opt_name, "
                                     "opt_description, opt_count) VALUES (?, ?, ?, 0)"),
                      {objectAndName.value(0), objectAndName.value(1), text}, &error);
    }
    if (ok && !transaction.commit()) {
        ok = false;
        error = transaction.error();
    }
    if (!ok) {
        transaction.rollback();
        return Outcome::failure(prefix + error);
    }
    if (kept) *kept = int(added.size());
    return Outcome{true, false, t.source, {}};
}

}  // namespace tarvel::exchange
