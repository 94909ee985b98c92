// Prints the peak resident memory, in KiB, of a process that opens a data file
// and, in mode "list", holds the contacts list in a grid model with the rows a
// grid shows at once read from it. Mode "file" only opens the file, for
// comparison. Used by store_bench; a process of its own so that nothing else
// the benchmark did counts. The figure is the kernel's high-water mark of this
// program's memory (VmHWM): getrusage's ru_maxrss would carry over the parent's
// size from before exec.
//
//   list_rss list|file DATAFILE

#include <QCoreApplication>
#include <QFile>
#include <cstdio>
#include <cstring>

#include "browse/recordsetmodel.h"
#include "custom/fsettings.h"
#include "store/connectionstring.h"
#include "store/tarveldatabase.h"

int main(int argc, char** argv) {
    if (argc != 3 || (std::strcmp(argv[1], "list") != 0 && std::strcmp(argv[1], "file") != 0)) {
        std::fprintf(stderr, "usage: list_rss list|file DATAFILE\n");
        return 2;
    }
    QCoreApplication app(argc, argv);
    tarvel::setGlobalConnectionString(tarvel::connectionStringFor(QString::fromLocal8Bit(argv[2])));
    tarvel::FSettings fields;
    if (!fields.GetMySetting(3)) {
        std::fprintf(stderr, "cannot read the list fields\n");
        return 1;
    }
    tarvel::RecordsetModel model;
    if (std::strcmp(argv[1], "list") == 0) {
        tarvel::tarveldatabase db;
        model.setRecordset(db.GetReadRs(
            QStringLiteral("SELECT ") + fields.SelectFields() +
            QStringLiteral(" FROM que_contacts_accounts  ORDER BY con_recent_contact_date DESC")));
        if (model.rowCount() == 0) {
            std::fprintf(stderr, "the list is empty: %s\n", qPrintable(db.ErrMsg()));
            return 1;
        }
        for (int row = 0; row < 30; ++row)
            for (int column = 0; column < model.columnCount(); ++column)
                model.data(model.index(row, column));
    }
    QFile status(QStringLiteral("/proc/self/status"));
    if (status.open(QIODevice::ReadOnly)) {
        for (QByteArray line = status.readLine(); !line.isEmpty(); line = status.readLine()) {
            if (!line.startsWith("VmHWM:")) continue;
            std::printf("%s\n", line.mid(6).trimmed().split(' ').value(0).constData());
            return 0;
        }
    }
    std::fprintf(stderr, "no VmHWM in /proc/self/status\n");
    return 1;
}
