#pragma once

#include <QDateTime>
#include <QString>

#include "exchange/progress.h"

namespace tarvel::exchange {

// The names backup and restore build from the moment they start; numbers are
// written without leading zeros. The working files live in the scratch folder
// (`.tarvel-tmp`), where a later start removes what a killed run left.
struct BackupNames {
    QString live;         // mydata3.tvg
    QString plainCopy;    // .tarvel-tmp/tmp.mdb: the compaction's source
    QString compacted;    // .tarvel-tmp/Y-M-D-h-m.tmp: the compaction's output
    QString offered;      // Tarvel数据备份文件Y-M-D.tbk: the name the save dialog offers
    QString safetyCopy;   // tmpbackup Y-M-D-h-m.tbk: the live file before a restore
    QString restoreCopy;  // .tarvel-tmp/temp.tbk: the chosen backup before it is moved into place

    static BackupNames at(const QString& folder, const QDateTime& moment);
};

// The filter of both backup file dialogs.
inline QString backupFilter() {
    return QStringLiteral("Tarvel备份文件(*.tbk)|*.tbk");
}

// Writes a compacted copy of the data file `live` to `target`, on connections
// of its own (it may run on another thread): no global state is read or
// written. Writers of the live file wait while it is copied, so the copy is
// one consistent state.
Outcome backupFile(const QString& live, const QString& target, const QDateTime& moment,
                   const Progress& progress = {});

// Writes a compacted copy of the live data file to `chosen` and records the
// date of the backup. An empty (or blank) name does nothing and succeeds with
// an empty path.
Outcome backupTo(const QString& chosen, const Progress& progress = {});

// Puts the backup `chosen` in place of the live data file, after checking it
// and keeping the live file under the safety name (Outcome::path). Every
// cached handle is closed first; callers close and reopen their recordsets.
// A live file that is a symbolic link stays one: the file it points to is replaced.
Outcome restoreFrom(const QString& chosen, const Progress& progress = {});

}  // namespace tarvel::exchange
