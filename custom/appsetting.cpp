#include "custom/appsetting.h"

#include "store/tarveldatabase.h"

namespace tarvel {

namespace {
QString num(int v) {
    return QString::number(v);
}
// The visible flag is a boolean: any true value is stored as -1.
QString flag(qint16 v) {
    return v != 0 ? QStringLiteral("-1") : QStringLiteral("0");
}
QString quote(const QString& text) {
    return tarveldatabase::SafeSql(text);
}
}  // namespace

bool AppSetting::run(const QString& sql) {
    return executeLogged(errMsg_, sql);
}

bool AppSetting::SaveToolbarIndex() {
    return run(QStringLiteral("UPDATE interface SET object_index=") + num(objIndex_) +
               QStringLiteral(" ,object_visible= ") + flag(objVisible_) +
               QStringLiteral(" WHERE app_type=0 AND object_type=1 AND object_name='") +
               quote(objName_) + QStringLiteral("'"));
}

bool AppSetting::SaveToolbarName() {
    return run(QStringLiteral("UPDATE interface SET object_description='") + quote(objDesc_) +
               QStringLiteral("'") +
               QStringLiteral("  WHERE app_type=0 AND object_type=1 AND object_name='") +
               quote(objName_) + QStringLiteral("'"));
}

bool AppSetting::SaveRelationInfo() {
    return run(QStringLiteral("UPDATE interface SET object_description='") + quote(objDesc_) +
               QStringLiteral("',object_visible=") + flag(objVisible_) +
               QStringLiteral(",object_edittype=") + num(objEditType_) +
               QStringLiteral(" WHERE app_type=0 AND object_type=2 AND object_name='") +
               quote(objName_) + QStringLiteral("'"));
}

bool AppSetting::SaveObj() {
    // Unlike the three saves above, the entry's own layout set and type choose the row.
    return run(QStringLiteral("UPDATE interface SET object_description='") + quote(objDesc_) +
               QStringLiteral("',object_index=") + num(objIndex_) +
               QStringLiteral(",object_visible=") + flag(objVisible_) +
               QStringLiteral(",object_edittype=") + num(objEditType_) +
               QStringLiteral(" WHERE app_type=") + num(appType_) +
               QStringLiteral(" AND object_type=") + num(objType_) +
               QStringLiteral(" AND object_name='") + quote(objName_) + QStringLiteral("'"));
}

}  // namespace tarvel
