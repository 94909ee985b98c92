#include "schedule/taskcategories.h"

#include "records/recordbase.h"
#include "store/tarveldatabase.h"

namespace tarvel {

QString TaskCategories::valueFilter(const QString& column, const QString& value) {
    if (value.isEmpty())
        return column + QStringLiteral(" IS NULL OR ") + column + QStringLiteral("=''");
    return column + QStringLiteral("='") + tarveldatabase::SafeSql(value) + QLatin1Char('\'');
}

bool TaskCategories::loadGroup(const QString& group, const QString& column) {
    tarveldatabase db;
    RecordsetPtr rs = db.GetReadRs(QStringLiteral("SELECT ") + column +
                                   QStringLiteral(", COUNT(*) FROM tasks GROUP BY ") + column +
                                   QStringLiteral(" ORDER BY ") + column);
    if (!rs || !db.ErrMsg().isEmpty()) {
        errMsg_ = QStringLiteral("读取日程分类出错，原因可能是") + db.ErrMsg();
        return false;
    }
    // Null and the empty text are one category to the user.
    TaskCategory blank{group, QStringLiteral("(未分类)"), 0, valueFilter(column, QString())};
    for (; !rs->Eof(); rs->MoveNext()) {
        const QString value = recordvalue::text(rs->value(0)).trimmed();
        const int count = recordvalue::int32(rs->value(1));
        if (value.isEmpty())
            blank.count += count;
        else
            categories_ << TaskCategory{group, value, count, valueFilter(column, value)};
    }
    if (blank.count > 0) categories_ << blank;
    return true;
}

bool TaskCategories::load() {
    categories_.clear();
    total_ = 0;
    errMsg_.clear();
    tarveldatabase db;
    RecordsetPtr rs =
        db.GetReadRs(QStringLiteral("SELECT tas_closed, COUNT(*) FROM tasks GROUP BY tas_closed"));
    if (!rs || !db.ErrMsg().isEmpty()) {
        errMsg_ = QStringLiteral("读取日程分类出错，原因可能是") + db.ErrMsg();
        return false;
    }
    int open = 0;
    for (; !rs->Eof(); rs->MoveNext()) {
        const int count = recordvalue::int32(rs->value(1));
        total_ += count;
        if (recordvalue::int16(rs->value(0)) == 0) open += count;
    }
    // A null state counts as open, as the task page shows it.
    categories_ << TaskCategory{QStringLiteral("状态"), QStringLiteral("未完成"), open,
                                QStringLiteral("tas_closed=0 OR tas_closed IS NULL")}
                << TaskCategory{QStringLiteral("状态"), QStringLiteral("已完成"), total_ - open,
                                QStringLiteral("tas_closed<>0")};
    return loadGroup(QStringLiteral("类型"), QStringLiteral("tas_type")) &&
           loadGroup(QStringLiteral("重要性"), QStringLiteral("tas_important")) &&
           loadGroup(QStringLiteral("标签"), QStringLiteral("tas_tag"));
}

}  // namespace tarvel
