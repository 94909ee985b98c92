// Not a test: fills a temporary data file with contacts of which some are
// the same person written differently, and saves pictures of 查找重复 and
// 合并 into the folder given as argument, for a person to look at.
#include <QApplication>
#include <QDir>

#include "custom/fsettings.h"
#include "records/kinds.h"
#include "tests/support/tempdatafile.h"
#include "tests/views/helpers.h"
#include "views/lists/duplicatesdialog.h"
#include "views/lists/mergedialog.h"

using namespace tarvel;

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    const QDir out(argc > 1 ? QString::fromLocal8Bit(argv[1]) : QDir::currentPath());
    tarvel::testing::TempDataFile file;
    for (const char* sql : {
             "INSERT INTO accounts (acc_id, acc_name) VALUES (1, '北京华信科技有限公司')",
             "INSERT INTO accounts (acc_id, acc_name) VALUES (2, '华信科技（中国）有限公司')",
             "INSERT INTO accounts (acc_id, acc_name) VALUES (3, '上海远景集团')",
             "INSERT INTO accounts (acc_id, acc_name) VALUES (4, '上海远景有限公司')",
             "INSERT INTO accounts (acc_id, acc_name) VALUES (5, 'Yuanjing Co., Ltd.')",
             "INSERT INTO accounts (acc_id, acc_name) VALUES (6, 'YUANJING Inc.')",
             "INSERT INTO accounts_contacts (acc_id, con_id) VALUES (1, 1)",
             "INSERT INTO accounts_contacts (acc_id, con_id) VALUES (2, 2)",
             "INSERT INTO contacts (con_lastname, con_mobile, con_email, con_title, "
             "con_department_title, con_province, con_create_date) VALUES ('王伟', "
             "'13800138000', '', '销售经理', '', '北京', '2024-03-05 00:00:00')",
             "INSERT INTO contacts (con_lastname, con_mobile2, con_email, con_title, "
             "con_department_title, con_province, con_create_date) VALUES ('王 伟', "
             "'+86 138 0013 8000', 'wangwei@huaxin.cn', '', '销售部', '', "
             "'2025-01-10 00:00:00')",
             "INSERT INTO contacts (con_lastname, con_mobile, con_email, con_title) VALUES "
             "('李娜', '13912345678', 'Li.Na@Example.com', '采购')",
             "INSERT INTO contacts (con_lastname, con_mobile, con_email, con_title) VALUES "
             "('李 娜', '', 'li.na@example.com', '采购主管')",
             "INSERT INTO contacts (con_lastname, con_mobile) VALUES ('张强', "
             "'１３７００００１１１１')",
             "INSERT INTO contacts (con_lastname, con_mobile) VALUES ('张强', '137 0000 1111')",
             "INSERT INTO contacts (con_lastname, con_mobile) VALUES ('赵敏', '13655556666')",
         })
        testsupport::run(QString::fromUtf8(sql));
    loadProgramFieldSettings();
    auto dialogs = std::make_shared<MessageBoxDialogs>(nullptr);
    for (qint16 code : {kind::Contact, kind::Account}) {
        lists::DuplicatesDialog dialog(code, dialogs);
        dialog.search();
        dialog.show();
        QCoreApplication::processEvents();
        dialog.grab().save(out.filePath(QStringLiteral("dlg_duplicates_%1.png").arg(code)));
        if (code != kind::Contact) continue;
        lists::MergeDialog merge(code, dialog.groups().first().keys, dialogs);
        merge.show();
        QCoreApplication::processEvents();
        merge.grab().save(out.filePath(QStringLiteral("dlg_merge.png")));
    }
    return 0;
}
