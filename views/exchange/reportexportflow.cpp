#include "views/exchange/reportexportflow.h"

#include <QFileInfo>

#include "custom/userprofile.h"
#include "exchange/filetools.h"
#include "exchange/reportexport.h"
#include "store/clock.h"
#include "views/common/progressrun.h"

namespace tarvel {

QString ExportReport(int kind, QWidget* parent, Messages& dialogs, FileDialogs& files,
                     const PageSwitch& pageSwitch) {
    if (const QString problem = exchange::profileProblem(); !problem.isEmpty()) {
        dialogs.info(messageTitle(), problem);
        return {};
    }
    const QString proposed = exchange::proposedReportName(exchange::dataFolder(),
                                                          UserProfile::load().name, Clock::today());
    const QString chosen =
        files
            .getSaveFileName(QStringLiteral("导出到Tarvel报表"), proposed, exchange::reportFilter())
            .trimmed();
    if (chosen.isEmpty()) return {};
    // The existing file is replaced only once the new report is complete.
    if (QFileInfo::exists(chosen) &&
        !dialogs.ask(messageTitle(), exchange::overwriteQuestion(chosen)))
        return {};
    ProgressRun progress(parent, QStringLiteral("正在导出Tarvel报表……"));
    const exchange::Outcome out = exchange::exportReport(kind, chosen, progress.callback());
    if (!out.ok) {
        if (!out.cancelled) dialogs.info(messageTitle(), out.ErrMsg);
        return {};
    }
    if (pageSwitch) pageSwitch(page::DataExchange, QString(), 0);
    return out.path;
}

bool exportReportFromList(int kind, QWidget* parent, Messages& dialogs, FileDialogs& files,
                          const PageSwitch& pageSwitch) {
    if (ExportReport(kind, parent, dialogs, files, pageSwitch).isEmpty()) {
        dialogs.info(messageTitle(), QStringLiteral("导出Tarvel报表没有完成!"));
        return false;
    }
    if (dialogs.ask(messageTitle(), QStringLiteral("导出Tarvel报表完成,现在要发送邮件吗?")) &&
        pageSwitch)
        pageSwitch(page::Email, QString(), 0);
    return true;
}

}  // namespace tarvel
