#pragma once

#include <QObject>
#include <memory>

#include "exchange/autobackup.h"
#include "views/common/dialogs.h"

namespace tarvel {

// The automatic backups of a running program: one at the first start of a day
// and one at closing when the data file changed since, each on a thread of
// its own; a backup that fails or is not kept is told through `dialogs`.
class AutoBackupHook : public QObject {
    Q_OBJECT
public:
    explicit AutoBackupHook(std::shared_ptr<Messages> dialogs, QObject* parent = nullptr);

    // Removes what killed runs left behind and starts the day's backup when
    // none was made today. Returns at once.
    void atStart();
    // After the window has closed: lets a running backup finish, then makes
    // the closing backup when the file changed, and waits for it.
    void atClose();
    exchange::AutoBackupRunner& runner() { return runner_; }

private:
    void tell(const exchange::AutoBackupResult& result);

    std::shared_ptr<Messages> dialogs_;
    exchange::AutoBackupRunner runner_;
};

}  // namespace tarvel
