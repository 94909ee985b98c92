// Not a test: fills a temporary data file with a contact and its related
// records and saves pictures of its related panel at two window sizes into
// the folder given as argument, for a person to look at.
#include <QApplication>
#include <QDir>
#include <QTabWidget>
#include <QTableView>

#include "records/recordbase.h"
#include "tests/support/tempdatafile.h"
#include "tests/views/helpers.h"
#include "views/related/formrelated.h"

using namespace tarvel;
using tarvel::testsupport::run;

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    const QDir out(argc > 1 ? QString::fromLocal8Bit(argv[1]) : QDir::currentPath());
    tarvel::testing::TempDataFile file;
    run("INSERT INTO accounts (acc_id, acc_name, acc_address) VALUES (1, '北京华信科技有限公司', "
        "'北京市海淀区中关村大街27号'), (2, '上海东方贸易公司', '上海市浦东新区世纪大道100号')");
    const char* names[] = {"张伟", "王芳", "李娜", "刘强", "陈静", "杨磊", "赵军", "黄敏"};
    for (int i = 0; i < 8; ++i)
        run(QStringLiteral("INSERT INTO contacts (con_id, con_lastname, con_nickname, "
                           "con_department_title, con_telephone, con_mobile, con_email, "
                           "con_description, con_create_date, con_recent_contact_date) VALUES "
                           "(%1, '%2', '小%3', '销售部 经理', '010-6234567%1', '1381234567%1', "
                           "'user%1@163.com', '多年的老客户', #2024-3-%1#, #2025-5-%1 10:00:00#)")
                .arg(i + 1)
                .arg(QString::fromUtf8(names[i]))
                .arg(QString::fromUtf8(names[i]).left(1)));
    run("INSERT INTO accounts_contacts (acc_id, con_id) VALUES (1, 1), (1, 2), (2, 3), (2, 4)");
    run("INSERT INTO contacts_contacts (con_id1, con_id2, con_relation) VALUES (1, 2, '同事'), "
        "(3, 1, '客户'), (1, 5, '朋友')");
    run("INSERT INTO opportunities (opp_id, opp_subject, opp_phase, opp_estimate_sale, "
        "opp_succeed_probability) VALUES (1, '机房改造二期', '谈判', 250000, 60), (2, "
        "'年度维保合同', "
        "'初步接触', 80000, 30)");
    run("INSERT INTO opportunities_contacts (opp_id, con_id, con_part_in_opp) VALUES (1, 1, "
        "'决策人'), (2, 1, '技术联系人')");
    run("INSERT INTO tasks (tas_id, tas_subject, tas_date, tas_time, tas_tag, tas_description) "
        "VALUES (1, '拜访张总', #2025-5-6#, #9:30:00#, '拜访', '带上样品'), (2, '电话回访', "
        "#2025-5-9#, #14:00:00#, '电话', NULL)");
    run("INSERT INTO contacts_tasks (con_id, tas_id) VALUES (1, 1), (1, 2)");
    run("INSERT INTO documents (doc_id, doc_name, doc_path, doc_description) VALUES (1, "
        "'合同.pdf', '/home/user/文档', '盖章的扫描件')");
    run("INSERT INTO contacts_documents (con_id, doc_id) VALUES (1, 1)");

    for (const QSize size : {QSize(1024, 700), QSize(1920, 1080)}) {
        FormRelated panel(kind::Contact);
        panel.setWindowTitle(QStringLiteral("相关信息"));
        panel.resize(size);
        panel.showRecord(1);
        panel.show();
        auto* grid = panel.findChild<QTableView*>(QStringLiteral("dgrid_con"));
        grid->selectRow(0);
        QCoreApplication::processEvents();
        panel.grab().save(out.filePath(
            QStringLiteral("form_con_related_%1x%2.png").arg(size.width()).arg(size.height())));
        auto* tabs = panel.findChild<QTabWidget*>(QStringLiteral("tab_related"));
        tabs->setCurrentIndex(2);
        panel.findChild<QTableView*>(QStringLiteral("dgrid_sch"))->selectRow(0);
        QCoreApplication::processEvents();
        panel.grab().save(out.filePath(
            QStringLiteral("form_con_related_sch_%1x%2.png").arg(size.width()).arg(size.height())));
    }
    run("INSERT INTO opportunities_accounts (opp_id, acc_id, acc_part_in_opp) VALUES (1, 1, "
        "'甲方'), (1, 2, '总包')");
    FormRelated deal(kind::Opportunity);
    deal.resize(1024, 700);
    deal.showRecord(1);
    deal.show();
    deal.findChild<QTabWidget*>(QStringLiteral("tab_related"))->setCurrentIndex(1);
    deal.findChild<QTableView*>(QStringLiteral("dgrid_acc"))->selectRow(0);
    QCoreApplication::processEvents();
    deal.grab().save(out.filePath(QStringLiteral("form_opp_related_acc_1024x700.png")));
    return 0;
}
