#include "custom/appsettings.h"

#include <QHash>

namespace tarvel {

namespace {
const QString kSelect = QStringLiteral("SELECT * FROM interface WHERE app_type=");

qint16 small(const QVariant& v) {
    return qint16(v.toInt());
}
}  // namespace

bool AppSettings::loadRows(const QString& sql) {
    RecordsetPtr rs = readLogged(errMsg_, sql);
    if (!rs) return false;
    for (; !rs->Eof(); rs->MoveNext()) {
        AppSetting entry;
        entry.setAppType(small(rs->value(QStringLiteral("app_type"))));
        entry.setObjType(small(rs->value(QStringLiteral("object_type"))));
        entry.setObjName(rs->value(QStringLiteral("object_name")).toString());
        entry.setObjDesc(rs->value(QStringLiteral("object_description")).toString());
        entry.setObjVisible(small(rs->value(QStringLiteral("object_visible"))));
        entry.setObjIndex(small(rs->value(QStringLiteral("object_index"))));
        entry.setObjEditType(small(rs->value(QStringLiteral("object_edittype"))));
        items_.append(entry);
    }
    return true;
}

bool AppSettings::GetToolbarIndex(qint16 appType) {
    items_.clear();
    return loadRows(
        kSelect + QString::number(appType) +
        QStringLiteral(" AND object_type=1 ORDER BY app_type, object_type, object_index"));
}

bool AppSettings::GetToolbarName(qint16 appType) {
    items_.clear();
    bool ok = true;
    for (const char* module : {"account", "opportunity", "contact", "schedule", "document"}) {
        const QString sql =
            QStringLiteral("SELECT object_description FROM interface WHERE app_type=") +
            QString::number(appType) + QStringLiteral(" AND object_type=1 AND object_name='") +
            QLatin1String(module) + QStringLiteral("'");
        RecordsetPtr rs = readLogged(errMsg_, sql);
        if (!rs) {
            ok = false;
            continue;
        }
        if (rs->Eof()) continue;
        AppSetting entry;
        entry.setObjDesc(rs->value(0).toString());
        entry.setObjName(QLatin1String(module));
        items_.append(entry);
    }
    return ok;
}

bool AppSettings::GetRelationInfo(qint16 appType, int kind) {
    items_.clear();
    // "_" stays a one-character wildcard: '%opp_%' needs a character after
    // "opp", so "acc_opp" is not one of the opportunity's panels.
    static const char* const endings[] = {
        " AND object_type=2 ORDER BY object_name,object_index",
        " AND object_type=2 AND object_name LIKE '%opp_%' ORDER BY object_name,object_index",
        " AND object_type=2 AND object_name LIKE '%acc_%' ORDER BY object_name,object_index",
        " AND object_type=2 AND object_name LIKE '%con_%' ORDER BY object_name,object_index",
        " AND object_type=2 AND object_name LIKE '%sch_%' ORDER BY object_name,object_index",
        " AND object_type=2 AND object_name LIKE '%doc_%' ORDER BY object_name,object_index",
    };
    if (kind < 0 || kind > 5) return true;
    return loadRows(kSelect + QString::number(appType) + QLatin1String(endings[kind]));
}

bool AppSettings::GetObjs(qint16 appType, qint16 objectType) {
    items_.clear();
    return loadRows(kSelect + QString::number(appType) + QStringLiteral(" AND object_type=") +
                    QString::number(objectType));
}

int AppSettings::FindIndex(const QString& name) const {
    for (int i = 0; i < items_.size(); ++i)
        if (items_[i].ObjName() == name) return i + 1;
    return 0;
}

}  // namespace tarvel
