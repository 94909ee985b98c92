// Not a test: saves pictures of the four detail pages, empty and showing a
// generated record, at 1024x700 and 1920x1080, into the folder given as
// argument, for a person to look at.
#include <QApplication>
#include <QDir>

#include "custom/fsettings.h"
#include "tests/support/tempdatafile.h"
#include "tests/views/listrecords.h"
#include "views/details/formaccdetail.h"
#include "views/details/formcondetail.h"
#include "views/details/formdocdetail.h"
#include "views/details/formoppdetail.h"

using namespace tarvel;

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    const QDir out(argc > 1 ? QString::fromLocal8Bit(argv[1]) : QDir::currentPath());
    tarvel::testing::TempDataFile file;
    testsupport::fillListRecords({40, 300, 60, 30, 20});
    loadProgramFieldSettings();
    FormConDetail contact;
    FormAccDetail account;
    FormOppDetail opportunity;
    FormDocDetail document;
    for (FormDetail* page :
         {static_cast<FormDetail*>(&contact), static_cast<FormDetail*>(&account),
          static_cast<FormDetail*>(&opportunity), static_cast<FormDetail*>(&document)}) {
        for (const QSize size : {QSize(1024, 700), QSize(1920, 1080)}) {
            for (int id : {0, 7}) {
                page->resize(size);
                page->fill({0, QString(), id});
                page->show();
                QCoreApplication::processEvents();
                page->grab().save(out.filePath(
                    QStringLiteral("%1_%2_%3.png")
                        .arg(page->objectName())
                        .arg(size.width())
                        .arg(id ? QStringLiteral("filled") : QStringLiteral("empty"))));
            }
        }
        page->hide();
    }
    return 0;
}
