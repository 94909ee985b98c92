// Not a test: deletes three ticked contacts from the contact list in a
// temporary data file and saves a picture of the main window with the
// status bar's 撤销 offer, into the folder given as argument.
#include <QApplication>
#include <QDir>
#include <QStatusBar>

#include "custom/fsettings.h"
#include "shell/mainwindow.h"
#include "tests/support/tempdatafile.h"
#include "tests/views/helpers.h"
#include "views/lists/formlist.h"

using namespace tarvel;

namespace {

// Answers every question Yes, so the delete goes ahead unattended.
class YesDialogs : public testsupport::ScriptedDialogs {
public:
    bool ask(const QString& title, const QString& text, Icon icon, Buttons buttons) override {
        ScriptedDialogs::ask(title, text, icon, buttons);
        return true;
    }
};

}  // namespace

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    const QDir out(argc > 1 ? QString::fromLocal8Bit(argv[1]) : QDir::currentPath());
    tarvel::testing::TempDataFile file;
    for (const char* sql : {
             "INSERT INTO accounts (acc_name, acc_telephone) VALUES ('北京华信科技有限公司', "
             "'010-62881234')",
             "INSERT INTO accounts (acc_name) VALUES ('上海远景集团')",
             "INSERT INTO contacts (con_lastname, con_mobile, con_email, con_title, con_check) "
             "VALUES ('王伟', '13800138000', 'wangwei@huaxin.cn', '销售经理', true)",
             "INSERT INTO contacts (con_lastname, con_mobile, con_email, con_title, con_check) "
             "VALUES ('李娜', '13912345678', 'li.na@yuanjing.com', '采购主管', true)",
             "INSERT INTO contacts (con_lastname, con_mobile, con_title, con_check) VALUES "
             "('张强', '13700001111', '工程师', true)",
             "INSERT INTO contacts (con_lastname, con_mobile, con_title) VALUES ('赵敏', "
             "'13655556666', '总经理')",
             "INSERT INTO contacts (con_lastname, con_mobile, con_title) VALUES ('陈晓东', "
             "'13511112222', '财务')",
             "INSERT INTO accounts_contacts (acc_id, con_id) VALUES (1, 1)",
             "INSERT INTO accounts_contacts (acc_id, con_id) VALUES (2, 2)",
             "INSERT INTO accounts_contacts (acc_id, con_id) VALUES (2, 4)",
         })
        testsupport::run(QString::fromUtf8(sql));
    loadProgramFieldSettings();
    MainWindowOptions o;
    o.trayAvailable = [] { return false; };
    o.checkForUpdate = false;
    o.dialogs = std::make_shared<YesDialogs>();
    TarvelMain main(o);
    main.Timer1()->stop();
    main.resize(1100, 640);
    main.show();
    main.OpenPage(page::ContactList);
    auto* list = qobject_cast<lists::FormList*>(main.currentPage());
    if (!list) return 1;
    list->runOperation(QStringLiteral("删除选定记录"));
    QCoreApplication::processEvents();
    main.grab().save(out.filePath(QStringLiteral("main_undo_offer.png")));
    main.undoOffer()->undo();
    QCoreApplication::processEvents();
    main.grab().save(out.filePath(QStringLiteral("main_undone.png")));
    return 0;
}
