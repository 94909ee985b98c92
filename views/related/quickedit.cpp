#include "views/related/quickedit.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDateEdit>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>

#include "custom/optionlists.h"
#include "records/recordbase.h"
#include "views/common/fieldlimit.h"
#include "views/options/optionwidgets.h"

namespace tarvel {

namespace {

enum class Type { Line, ReadOnly, Memo, Digest, Date, Combo, Time, Percent, Check, Matches };

struct Field {
    const char* name;
    const char* caption;
    Type type = Type::Line;
    const char* options = nullptr;  // option list "object/name" of a combo
};

const std::vector<Field>& fieldsOf(qint16 k, qint16 ownerKind) {
    static const std::vector<Field> contact = {
        {"txt_con_name", "姓名(&N)："},
        {"lst_contacts", "选择联系人(&X)：", Type::Matches},
        {"txt_con_nickname", "昵称(&K)："},
        {"txt_con_account", "单位名称(&U)："},
        {"lst_accounts", "选择单位(&Y)：", Type::Matches},
        {"txt_con_accaddr", "单位地址(&D)："},
        {"txt_con_title", "部门职务(&J)："},
        {"txt_con_tel", "电话(&T)："},
        {"txt_con_mobile", "手机(&B)："},
        {"txt_con_email", "电子邮件(&E)："},
        {"txt_con_fax", "传真(&F)："},
        {"txt_con_part", "角色(&R)："},
        {"rtxt_con_memo", "简介(&M)：", Type::Memo},
        {"rtxt_con_sch", "日程：", Type::Digest},
    };
    static const std::vector<Field> relatedContact = [] {
        auto f = contact;
        for (Field& x : f)
            if (qstrcmp(x.name, "txt_con_part") == 0) x.caption = "关系(&R)：";
        return f;
    }();
    static const std::vector<Field> account = {
        {"txt_acc_name", "单位名称(&N)："},
        {"txt_acc_tel", "电话(&T)："},
        {"txt_acc_fax", "传真(&F)："},
        {"txt_acc_web", "网址(&W)："},
        {"txt_acc_address", "地址(&D)："},
        {"cbo_acc_industry", "行业(&I)：", Type::Combo, "acc/industry"},
        {"cbo_acc_region", "地区(&G)：", Type::Combo, "acc/region"},
        {"cbo_acc_type", "类型(&Y)：", Type::Combo, "acc/type"},
        {"txt_acc_part", "角色(&R)："},
        {"rtxt_acc_memo", "简介(&M)：", Type::Memo},
        {"rtxt_acc_sch", "日程：", Type::Digest},
    };
    static const std::vector<Field> opportunity = {
        {"txt_opp_name", "项目机会(&N)："},
        {"lst_opportunities", "选择项目机会(&X)：", Type::Matches},
        {"dt_opp_enddate", "结束日期(&D)：", Type::Date},
        {"cbo_opp_stage", "阶段(&P)：", Type::Combo, "opp/phase"},
        {"cbo_opp_probability", "成功概率(&B)：", Type::Percent},
        {"txt_opp_revenue", "预计金额(&E)："},
        {"txt_opp_revenue2", "成交金额(&A)："},
        {"cbo_opp_type", "类型(&Y)：", Type::Combo, "opp/type"},
        {"cbo_opp_importance", "重要性(&I)：", Type::Combo, "opp/importance"},
        {"txt_opp_tag", "标签(&G)："},
        {"rtxt_opp_memo", "描述(&M)：", Type::Memo},
        {"rtxt_opp_sch", "日程：", Type::Digest},
    };
    static const std::vector<Field> task = {
        {"txt_sch_subject", "主题(&S)："},
        {"DT_sch_date", "日期(&D)：", Type::Date},
        {"cbo_sch_time", "时间(&T)：", Type::Time},
        {"Cbo_sch_type", "类型(&Y)：", Type::Combo, "sch/type"},
        {"cbo_sch_importance", "重要性(&I)：", Type::Combo, "sch/importance"},
        {"cbo_sch_tag", "标签(&G)：", Type::Combo, "sch/tag"},
        {"txt_sch_outlay", "费用(&O)："},
        {"chk_sch_remind", "提醒(&R)", Type::Check},
        {"chk_sch_completed", "已完成(&C)", Type::Check},
        {"chk_sch_private", "私人(&P)", Type::Check},
        {"rtxt_sch_memo", "描述(&M)：", Type::Memo},
        {"rtxt_sch_digest", "日程摘要：", Type::Digest},
    };
    static const std::vector<Field> doc = {
        {"txt_doc_name", "文档名称(&N)："},
        {"txt_doc_path", "所在文件夹(&P)："},
        {"cbo_doc_tag", "标签(&G)：", Type::Combo, "doc/tag"},
        {"txt_doc_createdate", "创建日期：", Type::ReadOnly},
        {"rtxt_doc_memo", "描述(&M)：", Type::Memo},
    };
    switch (k) {
        case kind::Contact:
            return ownerKind == kind::Contact ? relatedContact : contact;
        case kind::Account:
            return account;
        case kind::Opportunity:
            return opportunity;
        case kind::Task:
            return task;
        default:
            return doc;
    }
}

QWidget* makeInput(const Field& f, QWidget* parent) {
    QWidget* w = nullptr;
    switch (f.type) {
        case Type::Line:
            w = new QLineEdit(parent);
            break;
        case Type::ReadOnly: {
            auto* e = new QLineEdit(parent);
            e->setReadOnly(true);
            w = e;
            break;
        }
        case Type::Memo:
        case Type::Digest: {
            auto* e = new QPlainTextEdit(parent);
            e->setTabChangesFocus(true);
            e->setReadOnly(f.type == Type::Digest);
            e->setMinimumHeight(48);
            w = e;
            break;
        }
        case Type::Date: {
            auto* d = new QDateEdit(parent);
            d->setCalendarPopup(true);
            d->setDisplayFormat(QStringLiteral("yyyy-MM-dd"));
            w = d;
            break;
        }
        case Type::Combo:
        case Type::Time:
        case Type::Percent: {
            auto* c = new QComboBox(parent);
            c->setEditable(true);
            c->setInsertPolicy(QComboBox::NoInsert);
            if (f.type == Type::Time) c->addItems(timeFormatItems());
            if (f.type == Type::Percent)
                for (int p = 0; p <= 100; p += 10)
                    c->addItem(QString::number(p) + QLatin1Char('%'));
            if (f.options) {
                const QString list = QLatin1String(f.options);
                FillOptionCombo(c, list.section(QLatin1Char('/'), 0, 0),
                                list.section(QLatin1Char('/'), 1, 1));
            }
            w = c;
            break;
        }
        case Type::Check:
            w = new QCheckBox(QString::fromUtf8(f.caption), parent);
            break;
        case Type::Matches: {
            auto* l = new QListWidget(parent);
            l->setMaximumHeight(90);
            w = l;
            break;
        }
    }
    w->setObjectName(QLatin1String(f.name));
    return w;
}

}  // namespace

QuickEdit buildQuickEdit(qint16 k, qint16 ownerKind, QWidget* parent) {
    QuickEdit q;
    q.box = new QWidget(parent);
    q.box->setObjectName(QStringLiteral("fra_quickedit"));
    auto* grid = new QGridLayout(q.box);
    grid->setContentsMargins(0, 0, 0, 0);
    // Short fields two to a row; memos, digests and match lists span the row.
    int row = 0, column = 0;
    auto* checks = new QHBoxLayout;
    for (const Field& f : fieldsOf(k, ownerKind)) {
        QWidget* input = makeInput(f, q.box);
        q.inputs << input;
        if (f.type == Type::Check) {
            checks->addWidget(input);
            continue;
        }
        auto* label = new QLabel(QString::fromUtf8(f.caption), q.box);
        label->setBuddy(input);
        const bool wide = f.type == Type::Memo || f.type == Type::Digest || f.type == Type::Matches;
        if (wide && column != 0) {
            ++row;
            column = 0;
        }
        grid->addWidget(label, row, column, Qt::AlignTop);
        grid->addWidget(input, row, column + 1, 1, wide ? 3 : 1);
        // The search shows a match list with its label.
        if (f.type == Type::Matches)
            input->setProperty("buddyLabel", QVariant::fromValue<QObject*>(label));
        if (wide || column == 2) {
            ++row;
            column = 0;
        } else {
            column = 2;
        }
    }
    if (checks->count() > 0) grid->addLayout(checks, ++row, 1, 1, 3);
    q.note = new QLabel(q.box);
    q.note->setObjectName(QStringLiteral("lbl_limit_note"));
    q.note->setAccessibleName(QStringLiteral("输入提示"));
    q.note->hide();
    grid->addWidget(q.note, ++row, 1, 1, 3);
    limitNamedFields(q.inputs, q.note);
    grid->setColumnStretch(1, 1);
    grid->setColumnStretch(3, 1);
    return q;
}

}  // namespace tarvel
