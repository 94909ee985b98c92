#pragma once

#include <QString>

namespace tarvel {

struct ConnectionInfo {
    QString dataSource;  // path of the data file
    QString password;    // database password
    bool valid = false;  // both parts were found
};

// Reads "Data Source" and "Jet OLEDB:Database Password" out of a connection string.
ConnectionInfo parseConnectionString(const QString& connectionString);

// The connection string of a data file at any path, keyed with the database password.
QString connectionStringFor(const QString& filePath);

// The connection string of the program's data file in the folder `appPathNoSep`
// (a folder without a trailing separator), joined with the native separator.
QString buildConnectionString(const QString& appPathNoSep);

// The global connection string that start-up builds and every operation reads.
QString globalConnectionString();
void setGlobalConnectionString(const QString& connectionString);

}  // namespace tarvel
