#include "custom/fsettings.h"

#include <array>

#include "custom/statementlog.h"
#include "store/tarveldatabase.h"

namespace tarvel {

bool FSetting::SaveObj() {
    const QString sql = QStringLiteral("UPDATE fields SET fie_index=") + QString::number(index_) +
                        QStringLiteral(",fie_description='") +
                        tarveldatabase::SafeSql(description_) + QStringLiteral("',fie_visible=") +
                        (visible_ ? QStringLiteral("1") : QStringLiteral("0")) +
                        QStringLiteral(" WHERE fie_type=") + QString::number(fieldType_) +
                        QStringLiteral(" AND fie_name='") + tarveldatabase::SafeSql(fieldName_) +
                        QStringLiteral("'");
    return executeLogged(errMsg_, sql);
}

QString checkColumn(int fieldType) {
    static const char* const columns[] = {"opp_check", "acc_check", "con_check", "tas_check",
                                          "doc_check"};
    if (fieldType < 1 || fieldType > 5) return QString();
    return QLatin1String(columns[fieldType - 1]);
}

bool FSettings::GetMySetting(qint16 fieldType) {
    // Reloading replaces the columns, so the collection never holds a kind twice.
    clear();
    if (const QString check = checkColumn(fieldType); !check.isEmpty())
        selectFields_ = QLatin1Char(' ') + check + QStringLiteral(", ");
    const QString sql = QStringLiteral("SELECT * FROM fields WHERE fie_type=") +
                        QString::number(fieldType) + QStringLiteral(" ORDER BY fie_index");
    RecordsetPtr rs = readLogged(errMsg_, sql);
    if (!rs) return false;
    QStringList names;
    for (; !rs->Eof(); rs->MoveNext()) {
        FSetting f;
        f.setFieldName(rs->value(QStringLiteral("fie_name")).toString());
        f.setFieldType(qint16(rs->value(QStringLiteral("fie_type")).toInt()));
        f.setDescription(rs->value(QStringLiteral("fie_description")).toString());
        f.setIndex(qint16(rs->value(QStringLiteral("fie_index")).toInt()));
        f.setVisible(rs->value(QStringLiteral("fie_visible")).toInt() != 0);
        f.setFieldWidth(rs->value(QStringLiteral("fie_width")).toInt());
        // Two rows at one position keep both columns; the second goes unkeyed.
        if (!Add(f, QString::number(f.Index()))) Add(f);
        names << f.FieldName();
    }
    if (!names.isEmpty()) selectFields_ += names.join(QLatin1Char(',')) + QLatin1Char(' ');
    return true;
}

QString FSettings::FindCaption(const QString& fieldName) const {
    for (const FSetting& f : *this)
        if (f.FieldName() == fieldName) return f.Description();
    return QStringLiteral("无");
}

FSettings* programFieldSettings(int fieldType) {
    static std::array<FSettings, 5> lists;
    if (fieldType < 1 || fieldType > 5) return nullptr;
    return &lists[fieldType - 1];
}

void loadProgramFieldSettings() {
    for (qint16 kind = 1; kind <= 5; ++kind) {
        FSettings* s = programFieldSettings(kind);
        s->clear();
        s->GetMySetting(kind);
    }
}

bool SaveFieldWidth(qint16 fieldType, const QString& fieldName, qint32 width) {
    tarveldatabase db;
    db.Execute(QStringLiteral("UPDATE fields SET fie_width = ") + QString::number(width) +
               QStringLiteral(" WHERE fie_type = ") + QString::number(fieldType) +
               QStringLiteral(" AND fie_name ='") + tarveldatabase::SafeSql(fieldName) +
               QStringLiteral("'"));
    const bool ok = db.ErrMsg().isEmpty();
    if (FSettings* s = programFieldSettings(fieldType)) {
        s->clear();
        s->GetMySetting(fieldType);
    }
    return ok;
}

}  // namespace tarvel
