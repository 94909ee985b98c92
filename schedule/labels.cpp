#include "schedule/labels.h"

#include "custom/appsettings.h"
#include "records/recordbase.h"

namespace tarvel {

QStringList recordKindLabels() {
    // By kind code: module key and built-in caption.
    static const char* const modules[][2] = {{"", ""},
                                             {"opportunity", "项目机会"},
                                             {"account", "客户单位"},
                                             {"contact", "联系人"},
                                             {"schedule", "日程安排"},
                                             {"document", "文档附件"}};
    AppSettings layout;
    layout.GetToolbarName(0);
    QStringList labels;
    for (const auto& m : modules) {
        const int at = layout.FindIndex(QLatin1String(m[0]));
        const QString stored = at > 0 ? layout.Item(at).ObjDesc().trimmed() : QString();
        labels << (stored.isEmpty() ? QString::fromUtf8(m[1]) : stored);
    }
    return labels;
}

QString recordKindLabel(qint16 recordKind) {
    if (recordKind < kind::Opportunity || recordKind > kind::Document) return QString();
    return recordKindLabels()[recordKind];
}

}  // namespace tarvel
