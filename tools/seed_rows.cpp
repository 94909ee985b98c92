// Shipped contents of the customisation tables of a new data file.
//
// Texts in this file end up inside SQL that the program assembles by plain
// concatenation (option filters, setting writes), so none of them may hold an
// ASCII single quote, and option texts avoid the LIKE wildcards % and _.
#include "tools/seed_rows.h"

#include "records/kinds.h"

namespace tarvel::seed {

namespace {

// List kinds of `fields`: the record-kind codes.
constexpr int kListOpportunities = 1;
constexpr int kListAccounts = 2;
constexpr int kListContacts = 3;
constexpr int kListTasks = 4;
constexpr int kListDocuments = 5;

struct Column {
    QString name;
    QString caption;
    int visible;
    int width;
};

void appendList(std::vector<FieldRow>& rows, int type, const std::vector<Column>& columns) {
    int index = 1;
    for (const Column& c : columns)
        rows.push_back(FieldRow{type, c.name, c.caption, index++, c.visible, c.width});
}

// Option texts shared by several lists.

QStringList importanceEntries() {
    return {QStringLiteral("非常重要"), QStringLiteral("重要"), QStringLiteral("一般"),
            QStringLiteral("不重要")};
}

QStringList regionEntries() {
    return {QStringLiteral("北京"),   QStringLiteral("天津"), QStringLiteral("上海"),
            QStringLiteral("重庆"),   QStringLiteral("河北"), QStringLiteral("山西"),
            QStringLiteral("内蒙古"), QStringLiteral("辽宁"), QStringLiteral("吉林"),
            QStringLiteral("黑龙江"), QStringLiteral("江苏"), QStringLiteral("浙江"),
            QStringLiteral("安徽"),   QStringLiteral("福建"), QStringLiteral("江西"),
            QStringLiteral("山东"),   QStringLiteral("河南"), QStringLiteral("湖北"),
            QStringLiteral("湖南"),   QStringLiteral("广东"), QStringLiteral("广西"),
            QStringLiteral("海南"),   QStringLiteral("四川"), QStringLiteral("贵州"),
            QStringLiteral("云南"),   QStringLiteral("西藏"), QStringLiteral("陕西"),
            QStringLiteral("甘肃"),   QStringLiteral("青海"), QStringLiteral("宁夏"),
            QStringLiteral("新疆"),   QStringLiteral("香港"), QStringLiteral("澳门"),
            QStringLiteral("台湾"),   QStringLiteral("海外")};
}

QStringList industryEntries() {
    return {QStringLiteral("IT/互联网"),
            QStringLiteral("电子/通信"),
            QStringLiteral("机械/制造"),
            QStringLiteral("金融/银行/证券"),
            QStringLiteral("保险"),
            QStringLiteral("房地产/建筑"),
            QStringLiteral("教育/培训"),
            QStringLiteral("医疗/医药"),
            QStringLiteral("贸易/批发/零售"),
            QStringLiteral("物流/运输"),
            QStringLiteral("能源/化工"),
            QStringLiteral("政府/公共事业"),
            QStringLiteral("媒体/广告/出版"),
            QStringLiteral("咨询/专业服务"),
            QStringLiteral("餐饮/酒店/旅游"),
            QStringLiteral("农林牧渔"),
            QStringLiteral("其他")};
}

QStringList contactRelationEntries() {
    return {QStringLiteral("客户"),   QStringLiteral("潜在客户"), QStringLiteral("合作伙伴"),
            QStringLiteral("供应商"), QStringLiteral("竞争对手"), QStringLiteral("同事"),
            QStringLiteral("朋友"),   QStringLiteral("同学"),     QStringLiteral("亲属"),
            QStringLiteral("其他")};
}

QStringList accountRelationEntries() {
    return {QStringLiteral("客户"),   QStringLiteral("潜在客户"), QStringLiteral("合作伙伴"),
            QStringLiteral("供应商"), QStringLiteral("竞争对手"), QStringLiteral("其他")};
}

QStringList titleEntries() {
    return {QStringLiteral("先生"), QStringLiteral("女士"), QStringLiteral("小姐"),
            QStringLiteral("博士"), QStringLiteral("教授"), QStringLiteral("老师"),
            QStringLiteral("律师"), QStringLiteral("医生")};
}

QStringList accountTypeEntries() {
    return {QStringLiteral("客户"),     QStringLiteral("潜在客户"), QStringLiteral("合作伙伴"),
            QStringLiteral("供应商"),   QStringLiteral("代理商"),   QStringLiteral("经销商"),
            QStringLiteral("竞争对手"), QStringLiteral("政府机构"), QStringLiteral("其他")};
}

// Numbered so that the text order (combos and the phase counts are sorted by
// text) follows the course of a sale.
QStringList phaseEntries() {
    return {QStringLiteral("1-初步接洽"), QStringLiteral("2-需求确认"),
            QStringLiteral("3-方案报价"), QStringLiteral("4-商务谈判"),
            QStringLiteral("5-签订合同"), QStringLiteral("6-成交回款"),
            QStringLiteral("7-失败放弃")};
}

QStringList opportunityTypeEntries() {
    return {QStringLiteral("新客户新业务"), QStringLiteral("老客户新业务"),
            QStringLiteral("续约/续费"),    QStringLiteral("产品销售"),
            QStringLiteral("服务项目"),     QStringLiteral("工程项目"),
            QStringLiteral("代理/合作")};
}

QStringList taskTypeEntries() {
    return {QStringLiteral("电话"), QStringLiteral("拜访"),     QStringLiteral("会议"),
            QStringLiteral("邮件"), QStringLiteral("传真"),     QStringLiteral("约会"),
            QStringLiteral("出差"), QStringLiteral("待办事项"), QStringLiteral("其他")};
}

void appendOptions(std::vector<OptionRow>& rows, const QString& object, const QString& name,
                   const QStringList& entries) {
    for (const QString& e : entries) rows.push_back(OptionRow{object, name, e, 0});
}

QString agreementText() {
    return QStringLiteral(
        "Tarvel日志软件用户许可协议\n"
        "\n"
        "请您在使用本软件之前仔细阅读本协议。选择“同意”并继续，即表示您已阅读、理解并接受本协议的全"
        "部条款；"
        "如果您不同意本协议，请选择“不同意”，并停止安装和使用本软件。\n"
        "\n"
        "一、许可\n"
        "1. "
        "Tarvel软件（以下简称“我们”）授予您一项非独占、不可转让的许可，允许您在您本人拥有或合法使用"
        "的计算机上"
        "安装和使用Tarvel日志软件（以下简称“本软件”），用于个人事务或您所在单位的内部业务管理。\n"
        "2. "
        "您不得出租、出售、出借或再许可本软件，不得对本软件进行反向工程、反编译或反汇编，法律明确允"
        "许的情形除外。\n"
        "3. "
        "本软件及其文档的著作权和其他知识产权归我们所有。本协议未明确授予您的权利，均由我们保留。\n"
        "\n"
        "二、数据保存在本地并加密\n"
        "4. "
        "您在本软件中录入的联系人、客户单位、项目机会、日程安排和文档附件等全部数据，只保存在您计算"
        "机上本软件"
        "所在文件夹的数据文件中，并以加密形式存储。本软件不会把您的业务数据上传到我们或任何第三方的"
        "服务器。\n"
        "5. "
        "本软件检查新版本时可能连接我们的服务器，这一过程只读取版本信息，不发送您的任何业务数据。\n"
        "6. "
        "您的登录密码只以不可逆的摘要形式保存。请牢记并妥善保管您的密码：我们无法为您找回遗忘的密码"
        "，"
        "也无法解密或恢复受密码保护的数据。\n"
        "\n"
        "三、数据备份由您负责\n"
        "7. "
        "您应当使用本软件的备份功能或其他方式定期备份数据文件，并将备份文件妥善保存在安全的位置。"
        "因硬件故障、误操作、计算机病毒、遗忘密码或其他原因造成的数据丢失或损坏，由您自行承担。\n"
        "8. "
        "您应当保证录入本软件的数据来源合法，并遵守有关个人信息保护的法律法规；使用本软件发送邮件时"
        "，"
        "不得发送垃圾邮件或违法信息。\n"
        "\n"
        "四、不提供担保\n"
        "9. 本软件按“现状”提供。在法律允许的最大范围内，我们不对本软件作任何明示或默示的担保，"
        "包括但不限于适销性、适用于特定用途及不侵权的担保；我们也不保证本软件没有错误或能够不间断地"
        "运行。\n"
        "\n"
        "五、责任限制\n"
        "10. "
        "在法律允许的最大范围内，对于因使用或无法使用本软件而产生的任何间接的、附带的、特殊的或后果"
        "性的损失，"
        "包括但不限于利润损失、业务中断和数据丢失，我们均不承担责任，即使我们已被告知可能发生此类损"
        "失。"
        "我们在本协议下承担的全部责任，以您为本软件实际支付的费用为限。\n"
        "\n"
        "六、协议的终止\n"
        "11. 您违反本协议任何条款时，本协议自动终止，您应立即停止使用并删除本软件的全部副本。"
        "您也可以随时卸载本软件终止本协议。协议终止后，您的数据文件仍归您所有。\n"
        "\n"
        "七、其他\n"
        "12. 我们可能在本软件的新版本中修改本协议，修改后的协议在您安装新版本时请您重新确认。\n"
        "13. "
        "本协议的订立、效力、解释及争议的解决，适用中华人民共和国法律。因本协议发生的争议，双方应友"
        "好协商解决；"
        "协商不成的，任何一方均可向有管辖权的人民法院提起诉讼。\n");
}

}  // namespace

const std::vector<FieldRow>& fieldRows() {
    static const std::vector<FieldRow> rows = [] {
        std::vector<FieldRow> r;

        // Opportunity list, read from `opportunities`.
        appendList(
            r, kListOpportunities,
            {
                {QStringLiteral("opp_id"), QStringLiteral("编号"), 0, 60},
                {QStringLiteral("opp_subject"), QStringLiteral("项目机会名称"), 1, 200},
                {QStringLiteral("opp_phase"), QStringLiteral("销售阶段"), 1, 100},
                {QStringLiteral("opp_succeed_probability"), QStringLiteral("成功概率(%)"), 1, 80},
                {QStringLiteral("opp_estimate_sale"), QStringLiteral("预计金额"), 1, 100},
                {QStringLiteral("opp_sale"), QStringLiteral("实际金额"), 1, 100},
                {QStringLiteral("opp_die_date"), QStringLiteral("预计结束日期"), 1, 100},
                {QStringLiteral("opp_type"), QStringLiteral("项目类型"), 1, 100},
                {QStringLiteral("opp_important"), QStringLiteral("重要性"), 1, 70},
                {QStringLiteral("opp_industry"), QStringLiteral("行业"), 0, 100},
                {QStringLiteral("opp_province"), QStringLiteral("地区"), 0, 70},
                {QStringLiteral("opp_tag"), QStringLiteral("标签"), 1, 120},
                {QStringLiteral("opp_description"), QStringLiteral("描述"), 1, 200},
                {QStringLiteral("opp_create_date"), QStringLiteral("创建日期"), 0, 100},
                {QStringLiteral("opp_recent_contact_date"), QStringLiteral("最近联系日期"), 1, 130},
                {QStringLiteral("opp_private"), QStringLiteral("私有"), 0, 60},
            });

        // Account list, read from `accounts`.
        appendList(
            r, kListAccounts,
            {
                {QStringLiteral("acc_id"), QStringLiteral("编号"), 0, 60},
                {QStringLiteral("acc_name"), QStringLiteral("客户/单位名称"), 1, 200},
                {QStringLiteral("acc_type"), QStringLiteral("客户类型"), 1, 90},
                {QStringLiteral("acc_industry"), QStringLiteral("行业"), 1, 110},
                {QStringLiteral("acc_province"), QStringLiteral("地区"), 1, 70},
                {QStringLiteral("acc_telephone"), QStringLiteral("电话"), 1, 110},
                {QStringLiteral("acc_fax"), QStringLiteral("传真"), 1, 110},
                {QStringLiteral("acc_website"), QStringLiteral("网址"), 1, 150},
                {QStringLiteral("acc_address"), QStringLiteral("地址"), 1, 200},
                {QStringLiteral("acc_postcode"), QStringLiteral("邮编"), 0, 70},
                {QStringLiteral("acc_important"), QStringLiteral("重要性"), 1, 70},
                {QStringLiteral("acc_relation"), QStringLiteral("关系"), 0, 80},
                {QStringLiteral("acc_tag"), QStringLiteral("标签"), 1, 120},
                {QStringLiteral("acc_description"), QStringLiteral("描述"), 1, 200},
                {QStringLiteral("acc_create_date"), QStringLiteral("创建日期"), 0, 100},
                {QStringLiteral("acc_recent_contact_date"), QStringLiteral("最近联系日期"), 1, 130},
                {QStringLiteral("acc_private"), QStringLiteral("私有"), 0, 60},
            });

        // Contact list, read from `que_contacts_accounts`: the contact's own
        // columns and those of its account.
        appendList(
            r, kListContacts,
            {
                {QStringLiteral("con_id"), QStringLiteral("编号"), 0, 60},
                {QStringLiteral("con_lastname"), QStringLiteral("姓名"), 1, 100},
                {QStringLiteral("con_title"), QStringLiteral("称呼"), 0, 60},
                {QStringLiteral("acc_name"), QStringLiteral("客户/单位名称"), 1, 180},
                {QStringLiteral("con_department_title"), QStringLiteral("部门/职务"), 1, 120},
                {QStringLiteral("con_telephone"), QStringLiteral("电话"), 1, 110},
                {QStringLiteral("con_mobile"), QStringLiteral("手机"), 1, 110},
                {QStringLiteral("con_email"), QStringLiteral("电子邮件"), 1, 160},
                {QStringLiteral("con_important"), QStringLiteral("重要性"), 1, 70},
                {QStringLiteral("con_relation"), QStringLiteral("关系"), 1, 80},
                {QStringLiteral("con_province"), QStringLiteral("地区"), 1, 70},
                {QStringLiteral("con_tag"), QStringLiteral("标签"), 1, 120},
                {QStringLiteral("con_description"), QStringLiteral("描述"), 1, 200},
                {QStringLiteral("con_recent_contact_date"), QStringLiteral("最近联系日期"), 1, 130},
                {QStringLiteral("con_firstname"), QStringLiteral("名"), 0, 80},
                {QStringLiteral("con_nickname"), QStringLiteral("昵称"), 0, 80},
                {QStringLiteral("con_telephone2"), QStringLiteral("电话2"), 0, 110},
                {QStringLiteral("con_telephone3"), QStringLiteral("电话3"), 0, 110},
                {QStringLiteral("con_mobile2"), QStringLiteral("手机2"), 0, 110},
                {QStringLiteral("con_mobile3"), QStringLiteral("手机3"), 0, 110},
                {QStringLiteral("con_fax"), QStringLiteral("传真"), 0, 110},
                {QStringLiteral("con_fax2"), QStringLiteral("传真2"), 0, 110},
                {QStringLiteral("con_fax3"), QStringLiteral("传真3"), 0, 110},
                {QStringLiteral("con_email2"), QStringLiteral("电子邮件2"), 0, 160},
                {QStringLiteral("con_email3"), QStringLiteral("电子邮件3"), 0, 160},
                {QStringLiteral("con_im"), QStringLiteral("即时通讯"), 0, 110},
                {QStringLiteral("con_im2"), QStringLiteral("即时通讯2"), 0, 110},
                {QStringLiteral("con_im3"), QStringLiteral("即时通讯3"), 0, 110},
                {QStringLiteral("con_website"), QStringLiteral("个人网址"), 0, 150},
                {QStringLiteral("con_address_family"), QStringLiteral("家庭地址"), 0, 200},
                {QStringLiteral("con_postcode_family"), QStringLiteral("家庭邮编"), 0, 70},
                {QStringLiteral("con_birthday"), QStringLiteral("生日"), 0, 100},
                {QStringLiteral("con_create_date"), QStringLiteral("创建日期"), 0, 100},
                {QStringLiteral("con_private"), QStringLiteral("私有"), 0, 60},
                {QStringLiteral("con_sendmail"), QStringLiteral("已发邮件"), 0, 70},
                {QStringLiteral("acc_type"), QStringLiteral("客户类型"), 0, 90},
                {QStringLiteral("acc_industry"), QStringLiteral("行业"), 0, 110},
                {QStringLiteral("acc_telephone"), QStringLiteral("单位电话"), 0, 110},
                {QStringLiteral("acc_address"), QStringLiteral("单位地址"), 0, 200},
                {QStringLiteral("acc_postcode"), QStringLiteral("单位邮编"), 0, 70},
                {QStringLiteral("acc_website"), QStringLiteral("单位网址"), 0, 150},
            });

        // Task list, read from `tasks`.
        appendList(
            r, kListTasks,
            {
                {QStringLiteral("tas_id"), QStringLiteral("编号"), 0, 60},
                {QStringLiteral("tas_date"), QStringLiteral("日期"), 1, 100},
                {QStringLiteral("tas_time"), QStringLiteral("时间"), 1, 60},
                {QStringLiteral("tas_subject"), QStringLiteral("主题"), 1, 200},
                {QStringLiteral("tas_type"), QStringLiteral("类型"), 1, 80},
                {QStringLiteral("tas_important"), QStringLiteral("重要性"), 1, 70},
                {QStringLiteral("tas_tag"), QStringLiteral("标签"), 1, 100},
                {QStringLiteral("tas_outlay"), QStringLiteral("费用"), 1, 80},
                {QStringLiteral("tas_closed"), QStringLiteral("完成"), 1, 60},
                {QStringLiteral("tas_remind"), QStringLiteral("提醒"), 1, 60},
                {QStringLiteral("tas_description"), QStringLiteral("描述"), 1, 200},
                {QStringLiteral("tas_cycle"), QStringLiteral("重复周期"), 0, 70},
                {QStringLiteral("tas_closedate"), QStringLiteral("重复截止日期"), 0, 100},
                {QStringLiteral("tas_again"), QStringLiteral("重复提醒"), 0, 70},
                {QStringLiteral("tas_private"), QStringLiteral("私有"), 0, 60},
                {QStringLiteral("tas_create_date"), QStringLiteral("创建日期"), 0, 100},
                {QStringLiteral("tas_recent_contact_date"), QStringLiteral("最近修改日期"), 0, 130},
                {QStringLiteral("tas_last_remind_date"), QStringLiteral("最近提醒日期"), 0, 100},
            });

        // Document list, read from `documents`.
        appendList(
            r, kListDocuments,
            {
                {QStringLiteral("doc_id"), QStringLiteral("编号"), 0, 60},
                {QStringLiteral("doc_name"), QStringLiteral("文档附件名称"), 1, 200},
                {QStringLiteral("doc_tag"), QStringLiteral("分类"), 1, 100},
                {QStringLiteral("doc_path"), QStringLiteral("文件路径"), 1, 200},
                {QStringLiteral("doc_description"), QStringLiteral("描述"), 1, 200},
                {QStringLiteral("doc_create_date"), QStringLiteral("创建日期"), 1, 100},
                {QStringLiteral("doc_recentedit_date"), QStringLiteral("最近修改日期"), 1, 130},
            });

        return r;
    }();
    return rows;
}

const std::vector<InterfaceRow>& interfaceRows() {
    static const std::vector<InterfaceRow> rows = [] {
        std::vector<InterfaceRow> r;
        const int shown = -1;  // a true flag is stored as -1

        // Toolbar and module entries, in toolbar order. Module captions are
        // also the display words of the record kinds.
        struct Entry {
            QString key;
            QString caption;
        };
        const auto module = [](qint16 code) {
            const RecordKindInfo* k = kindByCode(code);
            return Entry{QLatin1String(k->moduleKey), k->captionText()};
        };
        const std::vector<Entry> toolbar = {
            {QStringLiteral("back"), QStringLiteral("后退")},
            {QStringLiteral("forward"), QStringLiteral("前进")},
            {QStringLiteral("sepline1"), QStringLiteral("分隔线1")},
            {QStringLiteral("pp"), QStringLiteral("首页")},
            module(kind::Contact),
            module(kind::Account),
            module(kind::Opportunity),
            module(kind::Task),
            module(kind::Document),
            {QStringLiteral("sepline2"), QStringLiteral("分隔线2")},
            {QStringLiteral("email"), QStringLiteral("邮件")},
            {QStringLiteral("inout"), QStringLiteral("数据交换")},
            {QStringLiteral("setting"), QStringLiteral("设置")},
            {QStringLiteral("sepline3"), QStringLiteral("分隔线3")},
            {QStringLiteral("help"), QStringLiteral("帮助")},
            {QStringLiteral("bbs"), QStringLiteral("论坛")},
        };
        int index = 1;
        for (const Entry& e : toolbar)
            r.push_back(InterfaceRow{0, 1, e.key, e.caption, shown, index++, 0});

        // Related-record panels: owner + "_" + related kind, captioned with
        // the related kind's name, ordered within each owner.
        for (qint16 owner :
             {kind::Account, kind::Opportunity, kind::Contact, kind::Task, kind::Document}) {
            const RecordKindInfo* o = kindByCode(owner);
            int panelIndex = 1;
            for (qint16 related : o->layoutPanels()) {
                const RecordKindInfo* k = kindByCode(related);
                r.push_back(InterfaceRow{
                    0, 2, QLatin1String(o->word) + QLatin1Char('_') + QLatin1String(k->word),
                    k->captionText(), shown, panelIndex++, -1});
            }
        }
        return r;
    }();
    return rows;
}

const std::vector<OptionRow>& optionRows() {
    static const std::vector<OptionRow> rows = [] {
        std::vector<OptionRow> r;
        const QString con = QStringLiteral("con");
        const QString acc = QStringLiteral("acc");
        const QString opp = QStringLiteral("opp");
        const QString sch = QStringLiteral("sch");
        const QString doc = QStringLiteral("doc");

        appendOptions(r, con, QStringLiteral("tag"),
                      {QStringLiteral("VIP"), QStringLiteral("客户"), QStringLiteral("潜在客户"),
                       QStringLiteral("合作伙伴"), QStringLiteral("供应商"), QStringLiteral("同事"),
                       QStringLiteral("朋友"), QStringLiteral("同学"), QStringLiteral("家人")});
        appendOptions(r, con, QStringLiteral("title"), titleEntries());
        appendOptions(r, con, QStringLiteral("importance"), importanceEntries());
        appendOptions(r, con, QStringLiteral("region"), regionEntries());
        appendOptions(r, con, QStringLiteral("relationship"), contactRelationEntries());

        appendOptions(
            r, acc, QStringLiteral("tag"),
            {QStringLiteral("重点客户"), QStringLiteral("老客户"), QStringLiteral("新客户"),
             QStringLiteral("潜在客户"), QStringLiteral("合作伙伴"), QStringLiteral("供应商"),
             QStringLiteral("竞争对手")});
        appendOptions(r, acc, QStringLiteral("type"), accountTypeEntries());
        appendOptions(r, acc, QStringLiteral("industry"), industryEntries());
        appendOptions(r, acc, QStringLiteral("region"), regionEntries());
        appendOptions(r, acc, QStringLiteral("importance"), importanceEntries());
        appendOptions(r, acc, QStringLiteral("relationship"), accountRelationEntries());

        appendOptions(
            r, opp, QStringLiteral("tag"),
            {QStringLiteral("重点项目"), QStringLiteral("新项目"), QStringLiteral("续约"),
             QStringLiteral("招投标"), QStringLiteral("长期跟进"), QStringLiteral("暂停")});
        appendOptions(r, opp, QStringLiteral("phase"), phaseEntries());
        appendOptions(r, opp, QStringLiteral("type"), opportunityTypeEntries());
        appendOptions(r, opp, QStringLiteral("importance"), importanceEntries());
        // Probability keeps its stored order (its combo is not sorted), so the
        // eleven steps go in ascending order.
        QStringList probability;
        for (int p = 0; p <= 100; p += 10) probability << QString::number(p);
        appendOptions(r, opp, QStringLiteral("Probability"), probability);
        appendOptions(r, opp, QStringLiteral("industry"), industryEntries());
        appendOptions(r, opp, QStringLiteral("region"), regionEntries());

        appendOptions(r, sch, QStringLiteral("tag"),
                      {QStringLiteral("工作"), QStringLiteral("个人"), QStringLiteral("会议"),
                       QStringLiteral("客户拜访"), QStringLiteral("出差"), QStringLiteral("家庭"),
                       QStringLiteral("学习")});
        appendOptions(r, sch, QStringLiteral("type"), taskTypeEntries());
        appendOptions(r, sch, QStringLiteral("importance"), importanceEntries());

        appendOptions(
            r, doc, QStringLiteral("tag"),
            {QStringLiteral("合同"), QStringLiteral("报价单"), QStringLiteral("方案"),
             QStringLiteral("产品资料"), QStringLiteral("发票/单据"), QStringLiteral("会议纪要"),
             QStringLiteral("个人文档"), QStringLiteral("其他")});
        return r;
    }();
    return rows;
}

const std::vector<SettingRow>& settingRows() {
    static const std::vector<SettingRow> rows = [] {
        const QString on = QStringLiteral("1");
        const QString empty;
        std::vector<SettingRow> r = {
            // Start-up: the agreement is not yet accepted, no password is set.
            {QStringLiteral("login"), QStringLiteral("password"), QStringLiteral("登录密码"), empty,
             QStringLiteral("登录密码的MD5摘要"), on},
            {QStringLiteral("login"), QStringLiteral("agreement"), QStringLiteral("用户协议"),
             empty, agreementText(), QStringLiteral("0")},

            // User profile, required before a report file can be exported.
            {QStringLiteral("personal"), QStringLiteral("user_name"), QStringLiteral("姓名"), empty,
             QStringLiteral("用户的姓名"), on},
            {QStringLiteral("personal"), QStringLiteral("user_account"), QStringLiteral("单位"),
             empty, QStringLiteral("用户所在的单位"), on},
            {QStringLiteral("personal"), QStringLiteral("user_title"), QStringLiteral("职务"),
             empty, QStringLiteral("用户的职务"), on},
            {QStringLiteral("personal"), QStringLiteral("user_email"), QStringLiteral("电子邮件"),
             empty, QStringLiteral("用户的电子邮件地址，用来识别报告文件的发送人"), on},

            // Program state.
            {QStringLiteral("software"), QStringLiteral("backupdate"),
             QStringLiteral("最近备份日期"), empty, QStringLiteral("最近一次备份数据的日期"), on},
            {QStringLiteral("software"), QStringLiteral("date_upgrade"), QStringLiteral("版本日期"),
             empty, QStringLiteral("与升级服务器上的版本信息比较的日期"), on},
            {QStringLiteral("software"), QStringLiteral("date_recent_getfile"),
             QStringLiteral("最近检查更新日期"), empty,
             QStringLiteral("最近一次从升级服务器读取版本信息的日期"), on},
            // Update check: with no host the program sends no request.
            {QStringLiteral("software"), QStringLiteral("update_host"),
             QStringLiteral("升级服务器"), empty,
             QStringLiteral("检查新版本的服务器地址，为空时不检查"), on},
            {QStringLiteral("software"), QStringLiteral("update_port"),
             QStringLiteral("升级服务器端口"), empty,
             QStringLiteral("升级服务器的端口，为空时不检查"), on},

            // E-mail window.
            {QStringLiteral("mail"), QStringLiteral("signature"), QStringLiteral("邮件签名"), empty,
             QStringLiteral("附加在邮件正文之后的签名"), on},
            {QStringLiteral("mail"), QStringLiteral("adwords1"), QStringLiteral("邮件附言1"),
             QStringLiteral("本邮件由Tarvel日志软件发送。"),
             QStringLiteral("附加在邮件末尾的第一行附言"), on},
            {QStringLiteral("mail"), QStringLiteral("adwords2"), QStringLiteral("邮件附言2"),
             QStringLiteral("Tarvel日志软件：联系人、客户、项目机会和日程一站式管理。"),
             QStringLiteral("附加在邮件末尾的第二行附言"), on},
            {QStringLiteral("mail"), QStringLiteral("recommend_tarvel"),
             QStringLiteral("推荐Tarvel"),
             QStringLiteral(
                 "我正在使用Tarvel日志软件管理联系人和日程，推荐您也试试：https://www.tarvel.cn/"),
             QStringLiteral("向朋友推荐本软件的邮件内容"), on},

            // Tips shown on the module pages.
            {QStringLiteral("ads"), QStringLiteral("homepage"), QStringLiteral("首页提示"),
             QStringLiteral("欢迎使用Tarvel日志软件！请记得定期备份您的数据。"),
             QStringLiteral("首页上显示的提示"), on},
            {QStringLiteral("ads"), QStringLiteral("account"), QStringLiteral("客户单位提示"),
             QStringLiteral(
                 "提示：在相关信息中可以把联系人、项目机会、日程和文档与客户单位关联起来。"),
             QStringLiteral("客户单位页上显示的提示"), on},
            {QStringLiteral("ads"), QStringLiteral("contact"), QStringLiteral("联系人提示"),
             QStringLiteral("提示：在列表最左边一栏选择记录后，可以群发邮件、打印标签或导出报表。"),
             QStringLiteral("联系人页上显示的提示"), on},
            {QStringLiteral("ads"), QStringLiteral("opportunity"), QStringLiteral("项目机会提示"),
             QStringLiteral("提示：填写销售阶段和成功概率，可以统计加权预计金额。"),
             QStringLiteral("项目机会页上显示的提示"), on},
            {QStringLiteral("ads"), QStringLiteral("schedule"), QStringLiteral("日程安排提示"),
             QStringLiteral("提示：为日程设置提醒，到时间会自动弹出提醒窗口。"),
             QStringLiteral("日程安排页上显示的提示"), on},
            {QStringLiteral("ads"), QStringLiteral("document"), QStringLiteral("文档附件提示"),
             QStringLiteral("提示：文档附件只记录文件的位置，移动文件后请更新文件路径。"),
             QStringLiteral("文档附件页上显示的提示"), on},

            // Web addresses. The search endpoints are prefixes to which the
            // encoded search text is appended.
            {QStringLiteral("website"), QStringLiteral("se"), QStringLiteral("网页搜索"),
             QStringLiteral("https://www.baidu.com/s?wd="),
             QStringLiteral("搜索姓名或单位名称时使用的网址，后接搜索内容"), on},
            {QStringLiteral("website"), QStringLiteral("se_map"), QStringLiteral("地图搜索"),
             QStringLiteral("https://map.baidu.com/search/?querytype=s&wd="),
             QStringLiteral("搜索地址时使用的网址，后接搜索内容"), on},
            {QStringLiteral("website"), QStringLiteral("homepage"), QStringLiteral("产品网站"),
             QStringLiteral("https://www.tarvel.cn/"),
             QStringLiteral("登录窗口中链接打开的产品网站"), on},
            {QStringLiteral("website"), QStringLiteral("help"), QStringLiteral("帮助网站"),
             QStringLiteral("https://www.tarvel.cn/help/"),
             QStringLiteral("工具栏“帮助”打开的网址"), on},
            {QStringLiteral("website"), QStringLiteral("bbs"), QStringLiteral("用户论坛"),
             QStringLiteral("https://www.tarvel.cn/bbs/"), QStringLiteral("工具栏“论坛”打开的网址"),
             on},
            {QStringLiteral("website"), QStringLiteral("support_email"), QStringLiteral("支持邮箱"),
             QStringLiteral("support@tarvel.cn"),
             QStringLiteral("接收用户建议和问题的电子邮件地址"), on},

            // Home page layout, rewritten by the main window.
            {QStringLiteral("model_pp"), QStringLiteral("homepage"), QStringLiteral("首页布局"),
             empty, QStringLiteral("首页的显示方式"), on},
        };
        return r;
    }();
    return rows;
}

const std::vector<LegacyOptionTable>& legacyOptionTables() {
    static const std::vector<LegacyOptionTable> tables = {
        {QStringLiteral("phase"), QStringLiteral("pha_description"), QStringLiteral("pha_count"),
         phaseEntries()},
        {QStringLiteral("important"), QStringLiteral("imp_description"),
         QStringLiteral("imp_count"), importanceEntries()},
        {QStringLiteral("opp_type"), QStringLiteral("opp_type_description"),
         QStringLiteral("opp_type_count"), opportunityTypeEntries()},
        {QStringLiteral("relation"), QStringLiteral("rel_description"), QStringLiteral("rel_count"),
         contactRelationEntries()},
        {QStringLiteral("province"), QStringLiteral("pro_description"), QStringLiteral("pro_count"),
         regionEntries()},
        {QStringLiteral("industry"), QStringLiteral("ind_description"), QStringLiteral("ind_count"),
         industryEntries()},
        {QStringLiteral("type"), QStringLiteral("typ_description"), QStringLiteral("typ_count"),
         accountTypeEntries()},
        {QStringLiteral("task_type"), QStringLiteral("tas_typ_description"),
         QStringLiteral("tas_typ_count"), taskTypeEntries()},
        {QStringLiteral("title"), QStringLiteral("tit_description"), QStringLiteral("tit_count"),
         titleEntries()},
    };
    return tables;
}

}  // namespace tarvel::seed
