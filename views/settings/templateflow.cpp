#include "views/settings/templateflow.h"

#include <QDir>
#include <QFileInfo>

#include "custom/fsettings.h"
#include "exchange/filetools.h"
#include "exchange/template.h"
#include "store/clock.h"

namespace tarvel {

void saveTemplateFlow(Messages& dialogs, FileDialogs& files) {
    const QDate today = Clock::today();
    const QString proposed = QDir(exchange::dataFolder())
                                 .filePath(QStringLiteral("Tarvel模板%1-%2-%3.tvm3")
                                               .arg(today.year())
                                               .arg(today.month())
                                               .arg(today.day()));
    QString chosen = files
                         .getSaveFileName(QStringLiteral("保存为模板"), proposed,
                                          exchange::templateDialogFilter())
                         .trimmed();
    if (chosen.isEmpty()) return;
    if (QFileInfo(chosen).suffix().isEmpty()) chosen += QStringLiteral(".tvm3");
    const exchange::Outcome out = exchange::saveTemplate(chosen);
    dialogs.info(messageTitle(), out.ok ? QStringLiteral("模板已保存到 ") + out.path : out.ErrMsg);
}

bool loadTemplateFlow(Messages& dialogs, FileDialogs& files) {
    const QString chosen = files
                               .getOpenFileName(QStringLiteral("载入模板"), exchange::dataFolder(),
                                                exchange::templateDialogFilter())
                               .trimmed();
    if (chosen.isEmpty()) return false;
    QStringList changes;
    exchange::Outcome out = exchange::describeTemplate(chosen, &changes);
    if (!out.ok) {
        dialogs.info(messageTitle(), out.ErrMsg);
        return false;
    }
    const QString question =
        QStringLiteral("载入模板将替换当前的列表字段、界面布局和选项列表：\n") +
        changes.join(QLatin1Char('\n')) + QStringLiteral("\n\n记录不会改动。现在载入吗?");
    if (!dialogs.ask(messageTitle(), question, Messages::Icon::Question,
                     Messages::Buttons::OkCancel))
        return false;
    out = exchange::loadTemplate(chosen);
    if (!out.ok) {
        dialogs.info(messageTitle(), out.ErrMsg);
        return false;
    }
    // The lists read the program-wide columns: they must see the loaded ones.
    loadProgramFieldSettings();
    dialogs.info(messageTitle(), QStringLiteral("模板已载入。"));
    return true;
}

}  // namespace tarvel
