#include "schedule/labels.h"

#include <QHash>

#include "custom/appsettings.h"
#include "records/kinds.h"

namespace tarvel {

QString defaultToolbarCaption(const QString& key) {
    for (const RecordKindInfo& k : recordKinds())
        if (key == QLatin1String(k.moduleKey)) return k.captionText();
    static const QHash<QString, QString> others = {
        {QStringLiteral("pp"), QStringLiteral("首页")},
        {QStringLiteral("email"), QStringLiteral("邮件")},
        {QStringLiteral("inout"), QStringLiteral("数据交换")},
        {QStringLiteral("setting"), QStringLiteral("设置")},
    };
    return others.value(key);
}

QStringList recordKindLabels() {
    AppSettings layout;
    layout.GetToolbarName(0);
    QStringList labels{QString()};
    for (const RecordKindInfo& k : recordKinds()) {
        const int at = layout.FindIndex(QLatin1String(k.moduleKey));
        const QString stored = at > 0 ? layout.Item(at).ObjDesc().trimmed() : QString();
        labels << (stored.isEmpty() ? k.captionText() : stored);
    }
    return labels;
}

QString recordKindLabel(qint16 recordKind) {
    if (!kindByCode(recordKind)) return QString();
    return recordKindLabels()[recordKind];
}

}  // namespace tarvel
