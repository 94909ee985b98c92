#pragma once

#include <QString>

namespace tarvel {

// Where automatic backups go, how much room they may take, and how long the
// recycle bin keeps deleted records (sections "backup" and "bin" of `setting`).
struct Safekeeping {
    static constexpr int kDefaultLimitMb = 1024;
    static constexpr int kDefaultBinDays = 30;

    // Empty: the `backups` folder beside the data file; a relative folder is
    // taken from the data file's folder.
    QString backupFolder;
    int backupLimitMb = kDefaultLimitMb;  // more than 0
    int binDays = kDefaultBinDays;        // 0: kept until the bin is emptied

    // Unset, blank or unreadable values read as the defaults.
    static Safekeeping load();
    // Writes the three values; `error` receives why one could not be written.
    bool save(QString* error) const;
};

}  // namespace tarvel
