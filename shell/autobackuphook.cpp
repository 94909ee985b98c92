#include "shell/autobackuphook.h"

#include <QCoreApplication>

#include "exchange/filetools.h"
#include "store/clock.h"

namespace tarvel {

AutoBackupHook::AutoBackupHook(std::shared_ptr<Messages> dialogs, QObject* parent)
    : QObject(parent), dialogs_(std::move(dialogs)) {
    connect(&runner_, &exchange::AutoBackupRunner::finished, this, &AutoBackupHook::tell);
}

void AutoBackupHook::atStart() {
    const QString live = exchange::liveDataFile();
    exchange::cleanScratchFolder(live);
    const exchange::AutoBackupPlace place = exchange::autoBackupPlace(live);
    if (exchange::backupDueAtStart(place.folder, Clock::today()))
        runner_.start({live, place, Clock::now(), {}});
}

void AutoBackupHook::atClose() {
    // The window is gone and its event loop with it: the result of a backup
    // that finishes now is delivered here.
    auto finish = [this] {
        runner_.wait();
        QCoreApplication::sendPostedEvents(&runner_, QEvent::MetaCall);
    };
    finish();
    const QString live = exchange::liveDataFile();
    const exchange::AutoBackupPlace place = exchange::autoBackupPlace(live);
    if (!exchange::backupDueAtClose(live, place.folder)) return;
    runner_.start({live, place, Clock::now(), {}});
    finish();
}

void AutoBackupHook::tell(const exchange::AutoBackupResult& result) {
    if (!result.ok && !result.message.isEmpty()) dialogs_->warning(messageTitle(), result.message);
}

}  // namespace tarvel
