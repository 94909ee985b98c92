#include "shell/startup.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QTemporaryDir>

#include "custom/softwaresetting.h"
#include "shell/globals.h"
#include "store/connectionstring.h"
#include "tests/support/tempdatafile.h"

using namespace tarvel;

TEST(StartFolder, DataDirBeatsTarvelHomeBeatsTheExecutableFolder) {
    const QString exe = QStringLiteral("/opt/tarvel/bin");
    const struct {
        QStringList args;
        QString home, folder;
    } cases[] = {
        {{"tarvel"}, "  ", exe},
        {{"tarvel"}, "/home/u/tv", "/home/u/tv"},
        {{"tarvel", "--data-dir", "/data/x"}, "/home/u/tv", "/data/x"},
        {{"tarvel", "--data-dir=/data/y"}, "", "/data/y"},
        {{"tarvel", "--data-dir"}, "", exe},  // a dangling option is no folder
        {{"--data-dir", "/a"}, "", exe},      // the program name never counts
    };
    for (const auto& c : cases)
        EXPECT_EQ(programFolder(c.args, c.home, exe), c.folder) << c.args.join(' ').toStdString();
}

TEST(StartFolder, OneTrailingSeparatorIsDroppedAndBlanksTrimmed) {
    const QString sep = QDir::separator();
    const QString base = QDir::toNativeSeparators(QStringLiteral("/srv/tarvel"));
    setApplicationPath(QStringLiteral("  ") + base + sep + QStringLiteral(" "));
    EXPECT_EQ(appGlobals().appPath, base + sep);
    EXPECT_EQ(appGlobals().appPathNoSep, base);
    EXPECT_EQ(parseConnectionString(globalConnectionString()).dataSource,
              base + sep + QStringLiteral("mydata3.tvg"));
    setApplicationPath(base + sep + sep);  // only one is dropped
    EXPECT_EQ(appGlobals().appPathNoSep, base + sep);
    setGlobalConnectionString(QString());
}

TEST(StartWindow, FirstRunOnlyWhileTheAgreementIsUnaccepted) {
    {
        tarvel::testing::TempDataFile file;
        EXPECT_TRUE(needsFirstRun());  // shipped as "0"
        SoftwareSetting s;
        s.GetValue(QStringLiteral("login"), QStringLiteral("agreement"));
        for (const char* visible : {" 0 ", "1"}) {
            s.WriteValue(QStringLiteral("login"), QStringLiteral("agreement"), s.Set_Name(),
                         QLatin1String(visible), s.Set_Value(), s.Set_Description());
            EXPECT_EQ(needsFirstRun(), visible[0] == ' ') << visible;  // trimmed first
        }
    }
    // No data file: nothing is read, so the login window is chosen; no file appears.
    QTemporaryDir empty;
    setApplicationPath(empty.path());
    EXPECT_FALSE(needsFirstRun());
    EXPECT_TRUE(QDir(empty.path()).isEmpty());
    setGlobalConnectionString(QString());
}
