// Not a test: fills a temporary data file with a few thousand generated
// records and saves a picture of each list screen into the folder given as
// argument, for a person to look at.
#include <QApplication>
#include <QDir>
#include <QTreeWidget>

#include "custom/fsettings.h"
#include "tests/support/tempdatafile.h"
#include "tests/views/listrecords.h"
#include "views/lists/categorypanel.h"
#include "views/lists/formlist.h"

using namespace tarvel;

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    const QDir out(argc > 1 ? QString::fromLocal8Bit(argv[1]) : QDir::currentPath());
    tarvel::testing::TempDataFile file;
    testsupport::fillListRecords({400, 3000, 600, 500, 300});
    loadProgramFieldSettings();
    for (int number = 0; number <= lists::listno::Documents; ++number) {
        const lists::ListKind& kind = lists::listKind(number);
        lists::FormList form(kind);
        form.setWindowTitle(kind.noun);
        form.resize(1280, 760);
        PageRequest request;
        request.page = kind.page;
        form.fill(request);
        form.show();
        QCoreApplication::processEvents();
        for (int i = 0; i < form.panel()->topLevelItemCount() && i < 4; ++i)
            form.panel()->topLevelItem(i)->setExpanded(true);
        if (number == lists::listno::Contacts)
            form.panel()->itemClicked(
                form.panel()->entry(QStringLiteral("province"), QStringLiteral("北京")), 0);
        QCoreApplication::processEvents();
        form.grab().save(out.filePath(kind.formName + QStringLiteral(".png")));
    }
    return 0;
}
