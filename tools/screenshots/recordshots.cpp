// The record lists, the detail pages and a contact's related panel.
#include <QCoreApplication>
#include <QLineEdit>
#include <QTabWidget>
#include <QTableView>
#include <QTreeWidget>

#include "custom/fsettings.h"
#include "records/recordbase.h"
#include "tools/screenshots/samplerecords.h"
#include "tools/screenshots/shots.h"
#include "views/details/formaccdetail.h"
#include "views/details/formcondetail.h"
#include "views/details/formdocdetail.h"
#include "views/details/formoppdetail.h"
#include "views/lists/categorypanel.h"
#include "views/lists/formlist.h"
#include "views/related/formrelated.h"

namespace tarvel::shots {

void shootLists(Album& album) {
    samples::fillRecords({400, 3000, 600, 500, 300});
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
        album.save(form, kind.formName);
    }
}

// Each page empty and showing a record, at a small and a large size.
void shootDetails(Album& album) {
    samples::fillRecords({40, 300, 60, 30, 20});
    loadProgramFieldSettings();
    FormConDetail contact;
    FormAccDetail account;
    FormOppDetail opportunity;
    FormDocDetail document;
    for (FormDetail* page :
         std::initializer_list<FormDetail*>{&contact, &account, &opportunity, &document}) {
        for (const QSize size : {QSize(1024, 700), QSize(1366, 680), QSize(1920, 1080)}) {
            for (int id : {0, 7}) {
                PageRequest request;
                request.recordId = id;
                page->resize(size);
                page->fill(request);
                album.save(*page,
                           QStringLiteral("%1_%2_%3")
                               .arg(page->objectName())
                               .arg(size.width())
                               .arg(id ? QStringLiteral("filled") : QStringLiteral("empty")));
            }
        }
    }
    // A name pasted past what the box holds: the box stops and the note says so.
    PageRequest request;
    request.recordId = 7;
    contact.resize(1366, 680);
    contact.fill(request);
    if (auto* name = contact.findChild<QLineEdit*>(QStringLiteral("txt_name"))) {
        name->end(false);
        name->insert(
            QStringLiteral("（北京华信科技有限公司华北区销售部大客户经理兼技术支持负责人）")
                .repeated(2));
    }
    album.save(contact, QStringLiteral("form_con_detail_1366_full_name"));
}

namespace {

// A contact with colleagues, deals, tasks and a document, and a deal with two accounts.
void fillRelatedRecords() {
    const auto run = &samples::execOrDie;
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
        "'年度维保合同', '初步接触', 80000, 30)");
    run("INSERT INTO opportunities_contacts (opp_id, con_id, con_part_in_opp) VALUES (1, 1, "
        "'决策人'), (2, 1, '技术联系人')");
    run("INSERT INTO tasks (tas_id, tas_subject, tas_date, tas_time, tas_tag, tas_description) "
        "VALUES (1, '拜访张总', #2025-5-6#, #9:30:00#, '拜访', '带上样品'), (2, '电话回访', "
        "#2025-5-9#, #14:00:00#, '电话', NULL)");
    run("INSERT INTO contacts_tasks (con_id, tas_id) VALUES (1, 1), (1, 2)");
    run("INSERT INTO documents (doc_id, doc_name, doc_path, doc_description) VALUES (1, "
        "'合同.pdf', '/home/user/文档', '盖章的扫描件')");
    run("INSERT INTO contacts_documents (con_id, doc_id) VALUES (1, 1)");
    run("INSERT INTO opportunities_accounts (opp_id, acc_id, acc_part_in_opp) VALUES (1, 1, "
        "'甲方'), (1, 2, '总包')");
}

void selectFirstRow(QWidget& panel, const char* grid) {
    panel.findChild<QTableView*>(QLatin1String(grid))->selectRow(0);
}

void showTab(QWidget& panel, int index) {
    panel.findChild<QTabWidget*>(QStringLiteral("tab_related"))->setCurrentIndex(index);
}

}  // namespace

void shootRelated(Album& album) {
    fillRelatedRecords();
    for (const QSize size : {QSize(1024, 700), QSize(1920, 1080)}) {
        const QString suffix = QStringLiteral("%1x%2").arg(size.width()).arg(size.height());
        FormRelated panel(kind::Contact);
        panel.setWindowTitle(QStringLiteral("相关信息"));
        panel.resize(size);
        panel.showRecord(1);
        selectFirstRow(panel, "dgrid_con");
        album.save(panel, QStringLiteral("form_con_related_") + suffix);
        showTab(panel, 2);
        selectFirstRow(panel, "dgrid_sch");
        album.save(panel, QStringLiteral("form_con_related_sch_") + suffix);
    }
    FormRelated deal(kind::Opportunity);
    deal.resize(1024, 700);
    deal.showRecord(1);
    showTab(deal, 1);
    selectFirstRow(deal, "dgrid_acc");
    album.save(deal, QStringLiteral("form_opp_related_acc_1024x700"));
}

}  // namespace tarvel::shots
