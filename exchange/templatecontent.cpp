#include "exchange/templatecontent.h"

#include <QFileInfo>
#include <QSet>

#include "exchange/attachedfile.h"
#include "exchange/optioncolumns.h"
#include "exchange/tables.h"
#include "exchange/template.h"
#include "store/schema.h"
#include "store/sqlitehandle.h"

namespace tarvel::exchange {

namespace {

// Long lists are cut for the message box; the count says how many there are.
QString listed(const QStringList& texts) {
    const int shown = 12;
    QString text = texts.mid(0, shown).join(QStringLiteral("、"));
    if (texts.size() > shown) text += QStringLiteral(" 等 %1 项").arg(texts.size());
    return text.isEmpty() ? QStringLiteral("（无）") : text;
}

QSet<QString> folded(const QStringList& texts) {
    QSet<QString> out;
    for (const QString& t : texts) out.insert(t.trimmed().toCaseFolded());
    return out;
}

// The entries `pick` selects that are shown, in order: their captions, or
// with `byName` their fixed names (a renamed entry is no change of order).
template <typename Pick>
QStringList shown(const QList<TemplateContent::Entry>& entries, Pick pick, bool byName = false) {
    QStringList out;
    for (const TemplateContent::Entry& e : entries)
        if (e.visible && pick(e))
            out << (byName                                        ? e.name
                    : e.name.startsWith(QLatin1String("sepline")) ? QStringLiteral("|")
                                                                  : e.caption);
    return out;
}

QString ownerOf(const QString& panel) {
    return panel.section(QLatin1Char('_'), 0, 0);
}

}  // namespace

bool TemplateContent::read(const AttachedFile& file, const QString& schemaName, QString* error) {
    QList<QVariantList> rows;
    if (!file.rows(QStringLiteral("SELECT object_type, object_name, object_description, "
                                  "object_visible FROM %1.interface WHERE app_type=0 ORDER BY "
                                  "object_type, object_index")
                       .arg(schemaName),
                   &rows, error))
        return false;
    for (const QVariantList& r : std::as_const(rows))
        layout << Entry{r[0].toInt(), r[1].toString(), r[2].toString(), r[3].toInt() != 0};
    if (!file.rows(QStringLiteral("SELECT fie_type, fie_name, fie_description, fie_visible FROM "
                                  "%1.fields ORDER BY fie_type, fie_index")
                       .arg(schemaName),
                   &rows, error))
        return false;
    for (const QVariantList& r : std::as_const(rows))
        fields << Entry{r[0].toInt(), r[1].toString(), r[2].toString(), r[3].toInt() != 0};
    if (!file.rows(QStringLiteral("SELECT opt_object, opt_name, opt_description FROM %1.options "
                                  "ORDER BY opt_id")
                       .arg(schemaName),
                   &rows, error))
        return false;
    for (const QVariantList& r : std::as_const(rows))
        options[optionListKey(r[0].toString(), r[1].toString())] << r[2].toString().trimmed();
    return true;
}

QStringList describeChanges(const TemplateContent& now, const TemplateContent& loaded) {
    QStringList lines;
    QHash<QString, QString> captions;
    for (const auto& e : now.layout) captions.insert(QString::number(e.type) + e.name, e.caption);
    for (const auto& e : loaded.layout) {
        const QString before = captions.value(QString::number(e.type) + e.name);
        if (!before.isEmpty() && before.trimmed() != e.caption.trimmed())
            lines << QStringLiteral("名称“%1”改为“%2”").arg(before, e.caption);
    }
    const auto toolbar = [](const TemplateContent::Entry& e) { return e.type == 1; };
    if (shown(now.layout, toolbar, true) != shown(loaded.layout, toolbar, true))
        lines << QStringLiteral("工具栏：") + listed(shown(loaded.layout, toolbar));
    for (const char* owner : {"con", "acc", "opp", "sch", "doc"}) {
        const auto panels = [owner](const TemplateContent::Entry& e) {
            return e.type == 2 && ownerOf(e.name) == QLatin1String(owner);
        };
        if (shown(now.layout, panels, true) != shown(loaded.layout, panels, true))
            lines << QStringLiteral("%1页显示的相关面板：%2")
                         .arg(kindCaptionOfPrefix(QLatin1String(owner)),
                              listed(shown(loaded.layout, panels)));
    }
    for (const RecordKind& kind : recordKinds()) {
        const auto columns = [&kind](const TemplateContent::Entry& e) {
            return e.type == kind.code;
        };
        if (shown(now.fields, columns) != shown(loaded.fields, columns))
            lines << QStringLiteral("%1列表显示的列：%2")
                         .arg(kind.caption, listed(shown(loaded.fields, columns)));
    }
    QStringList keys = loaded.options.keys() + now.options.keys();
    keys.removeDuplicates();
    keys.sort();
    for (const QString& key : std::as_const(keys)) {
        const QStringList after = loaded.options.value(key);
        if (folded(now.options.value(key)) == folded(after)) continue;
        const QString object = key.section(QLatin1Char('/'), 0, 0);
        const QString name = key.section(QLatin1Char('/'), 1);
        QString caption = name;
        for (const OptionColumn& o : optionColumns())
            if (o.object == object && o.name == name) caption = o.caption;
        lines << QStringLiteral("%1的%2选项：%3")
                     .arg(kindCaptionOfPrefix(object), caption, listed(after));
    }
    return lines;
}

bool checkTemplateFile(const QString& path, QString* error) {
    if (!QFileInfo(path).isFile())
        return (*error = QStringLiteral("找不到文件 %1").arg(path), false);
    const QString notTemplate = QStringLiteral("%1 不是Tarvel模板文件").arg(path);
    QSet<QString> have;
    if (!readFileTables(path, &have))
        return (*error = notTemplate + QStringLiteral("，或密码不符"), false);
    for (const RecordTable& t : recordTables())
        if (have.contains(t.name))
            return (*error = QStringLiteral("%1 是Tarvel数据文件，不是模板文件").arg(path), false);
    for (const QString& table : templateTables())
        if (!have.contains(table))
            return (*error = notTemplate + QStringLiteral("：缺少表 %1").arg(table), false);
    return true;
}

}  // namespace tarvel::exchange
