#include "shell/startup.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include "custom/softwaresetting.h"
#include "shell/globals.h"
#include "store/connectionstring.h"
#include "tests/support/tempdatafile.h"

using namespace tarvel;

TEST(StartFolder, DataDirBeatsTarvelHomeBeatsTheExecutableFolder) {
    const QString exe = QStringLiteral("/opt/tarvel/bin");
    EXPECT_EQ(programFolder({"tarvel"}, QString(), exe), exe);
    EXPECT_EQ(programFolder({"tarvel"}, QStringLiteral("  "), exe), exe);
    EXPECT_EQ(programFolder({"tarvel"}, QStringLiteral("/home/u/tv"), exe),
              QStringLiteral("/home/u/tv"));
    EXPECT_EQ(programFolder({"tarvel", "--data-dir", "/data/x"}, QStringLiteral("/home/u/tv"), exe),
              QStringLiteral("/data/x"));
    EXPECT_EQ(programFolder({"tarvel", "--data-dir=/data/y"}, QString(), exe),
              QStringLiteral("/data/y"));
    // A dangling option is no folder.
    EXPECT_EQ(programFolder({"tarvel", "--data-dir"}, QString(), exe), exe);
    // The program name itself never counts, even if it looks like the option.
    EXPECT_EQ(programFolder({"--data-dir", "/a"}, QString(), exe), exe);
}

TEST(StartFolder, OneTrailingSeparatorIsDroppedAndBlanksTrimmed) {
    const QString sep = QDir::separator();
    const QString base = QDir::toNativeSeparators(QStringLiteral("/srv/tarvel"));
    const QString file = sep + QStringLiteral("mydata3.tvg");

    setApplicationPath(QStringLiteral("  ") + base + sep + QStringLiteral(" "));
    EXPECT_EQ(appGlobals().appPath, base + sep);
    EXPECT_EQ(appGlobals().appPathNoSep, base);
    EXPECT_EQ(parseConnectionString(globalConnectionString()).dataSource, base + file);
    EXPECT_FALSE(globalConnectionString().contains(sep + sep));

    setApplicationPath(base);
    EXPECT_EQ(appGlobals().appPathNoSep, base);
    EXPECT_EQ(parseConnectionString(globalConnectionString()).dataSource, base + file);

    setApplicationPath(base + sep + sep);  // only one is dropped
    EXPECT_EQ(appGlobals().appPathNoSep, base + sep);
    setGlobalConnectionString(QString());
}

TEST(StartWindow, FirstRunOnlyWhileTheAgreementIsUnaccepted) {
    {
        tarvel::testing::TempDataFile file;
        setApplicationPath(file.folder() + QDir::separator());
        EXPECT_EQ(globalConnectionString(), file.connectionString());
        EXPECT_TRUE(needsFirstRun());  // shipped as "0"

        SoftwareSetting s;
        s.GetValue(QStringLiteral("login"), QStringLiteral("agreement"));
        s.WriteValue(QStringLiteral("login"), QStringLiteral("agreement"), s.Set_Name(),
                     QStringLiteral(" 0 "), s.Set_Value(), s.Set_Description());
        EXPECT_TRUE(needsFirstRun());  // trimmed before the comparison
        s.WriteValue(QStringLiteral("login"), QStringLiteral("agreement"), s.Set_Name(),
                     QStringLiteral("1"), s.Set_Value(), s.Set_Description());
        EXPECT_FALSE(needsFirstRun());
    }
    // No data file: nothing is read, so the login window is chosen; no file appears.
    QTemporaryDir empty;
    setApplicationPath(empty.path());
    EXPECT_FALSE(needsFirstRun());
    QString where;
    bool missing = false;
    EXPECT_FALSE(dataFileOpens(&where, &missing));
    EXPECT_TRUE(missing);
    EXPECT_EQ(where, QDir::toNativeSeparators(empty.path()) + QDir::separator() +
                         QStringLiteral("mydata3.tvg"));
    EXPECT_FALSE(QFile::exists(where));
    setGlobalConnectionString(QString());
}
