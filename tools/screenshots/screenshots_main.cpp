// tarvel-screenshots DIR [--only lists|details|related|main]: saves pictures
// of the screens over generated records into DIR, each set over a fresh data
// file in a temporary folder, so no data file of the user's is touched.
#include <QApplication>
#include <QFile>
#include <QTemporaryDir>
#include <QTextStream>
#include <QWidget>
#include <algorithm>
#include <functional>

#include "store/connectionstring.h"
#include "store/sqlitehandle.h"
#include "tools/datafile.h"
#include "tools/screenshots/shots.h"

namespace tarvel::shots {

void Album::save(QWidget& window, const QString& name) {
    window.show();
    for (int i = 0; i < 10; ++i) QApplication::processEvents();
    const QString file = folder_.filePath(name + QStringLiteral(".png"));
    const bool saved = window.grab().save(file);
    allSaved_ = allSaved_ && saved;
    QTextStream(saved ? stdout : stderr) << (saved ? "" : "not saved: ") << file << Qt::endl;
    window.hide();
}

}  // namespace tarvel::shots

namespace {

using namespace tarvel;

// Runs `shoot` over a new data file that is gone afterwards.
bool withFreshDataFile(const std::function<void(shots::Album&)>& shoot, shots::Album& album) {
    QTemporaryDir dir;
    QString error;
    if (!dir.isValid() || !datafile::create(dir.filePath(QStringLiteral("mydata3.tvg")), &error)) {
        QTextStream(stderr) << "cannot build a data file: " << error << Qt::endl;
        return false;
    }
    setGlobalConnectionString(buildConnectionString(dir.path()));
    shoot(album);
    closeAllHandles();
    setGlobalConnectionString(QString());
    return true;
}

}  // namespace

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    const QStringList args = QApplication::arguments();
    const qsizetype only = args.indexOf(QStringLiteral("--only"));
    const QString set = only > 0 && only + 1 < args.size() ? args[only + 1] : QString();
    const std::pair<QString, void (*)(shots::Album&)> sets[] = {
        {QStringLiteral("lists"), shots::shootLists},
        {QStringLiteral("details"), shots::shootDetails},
        {QStringLiteral("related"), shots::shootRelated},
        {QStringLiteral("main"), shots::shootMain}};
    const bool known = set.isEmpty() || std::any_of(std::begin(sets), std::end(sets),
                                                    [&](const auto& s) { return s.first == set; });
    if (args.size() < 2 || args[1].startsWith(QLatin1String("--")) || !known) {
        QTextStream(stderr) << "usage: tarvel-screenshots DIR [--only lists|details|related|main]"
                            << Qt::endl;
        return 2;
    }
    const QDir folder(args[1]);
    if (!folder.exists() && !QDir().mkpath(args[1])) {
        QTextStream(stderr) << "cannot create " << args[1] << Qt::endl;
        return 1;
    }
    shots::Album album(folder);
    bool ok = true;
    for (const auto& [name, shoot] : sets)
        if (set.isEmpty() || set == name) ok = withFreshDataFile(shoot, album) && ok;
    return ok && album.allSaved() ? 0 : 1;
}
