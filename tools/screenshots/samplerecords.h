#pragma once
// Generated records that look like a salesperson's: accounts, contacts (most
// linked to an account), opportunities, tasks and documents with varied
// provinces, tags and texts, written in one transaction. The pictures and the
// list tests stand on them.
#include <QRandomGenerator>
#include <QStringList>

#include "store/tarveldatabase.h"
#include "store/transaction.h"

namespace tarvel::samples {

struct RecordCounts {
    int accounts = 0;
    int contacts = 0;
    int opportunities = 0;
    int tasks = 0;
    int documents = 0;
};

inline QString pick(QRandomGenerator& random, const QStringList& from) {
    return from[int(random.bounded(quint32(from.size())))];
}

inline void execOrDie(const QString& sql) {
    tarveldatabase db;
    db.Execute(sql);
    if (!db.ErrMsg().isEmpty()) qFatal("%s\n%s", qPrintable(db.ErrMsg()), qPrintable(sql));
}

// Keys start at 1 in an empty file, so contact n is con_id n.
inline void fillRecords(const RecordCounts& n, quint32 seed = 7) {
    QRandomGenerator random(seed);
    const QStringList surnames = {"王", "李", "张", "刘", "陈", "杨", "黄", "赵", "吴", "周"};
    const QStringList given = {"伟", "芳", "娜", "敏", "静", "强", "磊", "军", "洋", "勇"};
    const QStringList provinces = {"北京", "上海", "广东", "浙江", "四川", "江苏"};
    const QStringList important = {"非常重要", "重要", "一般", "不重要"};
    const QStringList relations = {"客户", "潜在客户", "合作伙伴", "朋友"};
    const QStringList tags = {"VIP", "展会", "老客户", "VIP,展会", ""};
    const QStringList industries = {"IT/互联网", "金融/银行/证券", "教育/培训", "医疗/医药"};
    const QStringList titles = {"经理", "销售部/主管", "技术部/工程师", "总经理"};
    const auto q = [](const QString& s) {
        return QLatin1Char('\'') + tarveldatabase::SafeSql(s) + QLatin1Char('\'');
    };
    Transaction transaction;
    for (int i = 1; i <= n.accounts; ++i)
        execOrDie(QStringLiteral("INSERT INTO accounts (acc_name, acc_type, acc_industry, "
                                 "acc_province, acc_important, acc_relation, acc_tag, "
                                 "acc_telephone, acc_address, acc_description, "
                                 "acc_recent_contact_date, acc_check) VALUES (%1,%2,%3,%4,%5,%6,"
                                 "%7,%8,%9,%10,#2024-%11-%12#,0)")
                      .arg(q(pick(random, provinces) + QStringLiteral("科技有限公司%1").arg(i)),
                           q(pick(random, relations)), q(pick(random, industries)),
                           q(pick(random, provinces)), q(pick(random, important)),
                           q(pick(random, relations)), q(pick(random, tags)),
                           q(QStringLiteral("010-6%1").arg(1000000 + i)),
                           q(QStringLiteral("人民路%1号").arg(i)))
                      .arg(q(QStringLiteral("单位说明 %1").arg(i)))
                      .arg(1 + i % 12)
                      .arg(1 + i % 28));
    for (int i = 1; i <= n.contacts; ++i) {
        const QString name = pick(random, surnames) + pick(random, given) +
                             (random.bounded(2) ? pick(random, given) : QString());
        execOrDie(QStringLiteral("INSERT INTO contacts (con_lastname, con_department_title, "
                                 "con_telephone, con_mobile, con_email, con_important, "
                                 "con_relation, con_province, con_tag, con_description, "
                                 "con_birthday, con_recent_contact_date, con_check) VALUES "
                                 "(%1,%2,%3,%4,%5,%6,%7,%8,%9,%10,#19%11-%12-%13#,"
                                 "#2024-%14-%15 %16:00:00#,0)")
                      .arg(q(name), q(pick(random, titles)),
                           q(QStringLiteral("021-5%1").arg(2000000 + i)),
                           q(QStringLiteral("139%1").arg(10000000 + i)),
                           q(QStringLiteral("user%1@example.com").arg(i)),
                           q(pick(random, important)), q(pick(random, relations)),
                           q(pick(random, provinces)), q(pick(random, tags)))
                      .arg(q(QStringLiteral("第%1位联系人的说明").arg(i)))
                      .arg(60 + i % 30)
                      .arg(1 + i % 12)
                      .arg(1 + i % 28)
                      .arg(1 + i % 12)
                      .arg(1 + (i * 7) % 28)
                      .arg(8 + i % 10));
        if (n.accounts > 0 && i % 7 != 0)
            execOrDie(QStringLiteral("INSERT INTO accounts_contacts (acc_id, con_id) VALUES "
                                     "(%1,%2)")
                          .arg(1 + i % n.accounts)
                          .arg(i));
    }
    for (int i = 1; i <= n.opportunities; ++i) {
        execOrDie(QStringLiteral("INSERT INTO opportunities (opp_subject, opp_phase, "
                                 "opp_succeed_probability, opp_estimate_sale, opp_sale, "
                                 "opp_province, opp_important, opp_tag, opp_description, "
                                 "opp_recent_contact_date, opp_check) VALUES (%1,%2,%3,%4,1,%5,"
                                 "%6,%7,%8,#2024-3-%9#,0)")
                      .arg(q(QStringLiteral("项目%1：").arg(i) + pick(random, industries)),
                           q(QStringLiteral("%1-阶段").arg(1 + i % 6)))
                      .arg(10 * (1 + i % 9))
                      .arg(10000 * (1 + i % 20))
                      .arg(q(pick(random, provinces)), q(pick(random, important)),
                           q(pick(random, tags)), q(QStringLiteral("项目说明%1").arg(i)))
                      .arg(1 + i % 28));
        if (n.contacts > 0)
            execOrDie(QStringLiteral("INSERT INTO opportunities_contacts (opp_id, con_id) "
                                     "VALUES (%1,%2)")
                          .arg(i)
                          .arg(1 + (i * 3) % n.contacts));
    }
    for (int i = 1; i <= n.tasks; ++i)
        execOrDie(QStringLiteral("INSERT INTO tasks (tas_subject, tas_date, tas_outlay, "
                                 "tas_description, tas_check) VALUES (%1,#2024-5-%2 9:30:00#,%3,"
                                 "%4,0)")
                      .arg(q(QStringLiteral("拜访客户%1").arg(i)))
                      .arg(1 + i % 28)
                      .arg(100 * (i % 5))
                      .arg(q(QStringLiteral("任务说明%1").arg(i))));
    for (int i = 1; i <= n.documents; ++i)
        execOrDie(QStringLiteral("INSERT INTO documents (doc_id, doc_name, doc_path, doc_tag, "
                                 "doc_description, doc_recentedit_date, doc_check) VALUES "
                                 "(%1,%2,%3,%4,%5,#2024-4-%6#,0)")
                      .arg(i)
                      .arg(q(QStringLiteral("合同%1.docx").arg(i)),
                           q(QStringLiteral("/home/user/文档/合同%1.docx").arg(i)),
                           q(pick(random, tags)), q(QStringLiteral("文档说明%1").arg(i)))
                      .arg(1 + i % 28));
    transaction.commit();
}

}  // namespace tarvel::samples
