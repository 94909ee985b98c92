#include "exchange/importlayout.h"

#include <QHash>
#include <QRegularExpression>

namespace tarvel::exchange::layout {

namespace {

QString normalised(const QString& header) {
    QString h = header.simplified().toLower();
    h.remove(QLatin1Char('"'));
    return h;
}

// Headers and the targets they mean.
struct HeaderTable : QHash<QString, QString> {
    void put(const char* target, std::initializer_list<const char*> headers) {
        for (const char* h : headers) insert(QString::fromUtf8(h), QString::fromUtf8(target));
    }
};

// Headers whose meaning is known word for word.
const QHash<QString, QString>& exactContacts() {
    static const QHash<QString, QString> table = [] {
        HeaderTable t;
        t.put("con_lastname", {"name", "display name", "displayname", "full name", "姓名", "名字",
                               "显示名称", "显示名", "联系人", "联系人姓名", "客户姓名", "全名"});
        t.put("con_firstname", {"first name", "given name", "first", "名", "名字(名)"});
        t.put(":middle", {"middle name", "additional name", "middle", "中间名"});
        t.put(":family", {"last name", "family name", "surname", "last", "姓", "姓氏"});
        t.put("con_nickname", {"nickname", "nick name", "short name", "昵称", "nick"});
        t.put("con_title", {"title", "name prefix", "称谓", "称呼"});
        t.put("acc_name", {"company", "organization", "organisation", "organization 1 - name",
                           "organization name", "公司", "单位", "公司名称", "单位名称", "工作单位",
                           "公司/单位", "单位/公司", "客户名称", "所在单位", "company name"});
        t.put(":department", {"department", "organization 1 - department",
                              "organization department", "部门", "所在部门"});
        t.put(":jobtitle", {"job title", "organization 1 - title", "organization title", "职务",
                            "职位", "头衔", "job", "position", "occupation"});
        t.put("con_birthday", {"birthday", "birth date", "date of birth", "生日", "出生日期",
                               "出生年月日", "生辰"});
        t.put(":birth.year", {"birth year", "出生年份"});
        t.put(":birth.month", {"birth month", "出生月份"});
        t.put(":birth.day", {"birth day"});
        t.put("con_description", {"notes", "note", "comments", "附注", "备注", "说明", "备忘"});
        t.put("con_tag", {"categories", "category", "group membership", "labels", "类别", "分类",
                          "标签", "分组", "群组"});
        t.put("con_website",
              {"web page", "web page 1", "web page 2", "website", "web site", "personal web page",
               "personal website", "business website", "website 1 - value", "网页", "网页 1",
               "网页 2", "个人网址", "主页", "网址", "个人主页"});
        t.put(":im", {"screen name", "qq", "qq号", "qq号码", "微信", "微信号", "wechat", "skype",
                      "im address", "yahoo! id", "messenger id", "即时通讯", "im aim", "im icq",
                      "im jabber", "im msn", "im yahoo", "im skype"});
        // Yahoo names its telephone columns by place alone.
        t.put(":phone", {"home", "work", "other", "primary", "yahoo! phone"});
        t.put(":note", {"pager", "pager number", "寻呼机", "寻呼机号码", "suffix", "name suffix",
                        "anniversary", "纪念日", "spouse", "配偶", "manager's name",
                        "assistant's name", "custom 1", "custom 2", "custom 3", "custom 4"});
        t.put("con_province", {"省份", "省", "地区", "所在地区", "省市"});
        t.put(":addr.home.street", {"地址", "address", "联系地址", "通讯地址", "详细地址", "住址"});
        t.put(":addr.home.postcode", {"邮编", "邮政编码", "postcode", "zip", "zip code"});
        t.put(":addr.home.city", {"城市", "city", "所在城市"});
        t.put(":addr.home.country", {"国家", "country"});
        // Details of other fields, not fields themselves.
        t.put("", {"e-mail type",
                   "e-mail display name",
                   "e-mail 2 type",
                   "e-mail 2 display name",
                   "e-mail 3 type",
                   "e-mail 3 display name",
                   "电子邮件类型",
                   "电子邮件显示名称",
                   "电子邮件 2 类型",
                   "电子邮件 2 显示名称",
                   "电子邮件 3 类型",
                   "电子邮件 3 显示名称",
                   "gender",
                   "性别",
                   "priority",
                   "sensitivity",
                   "private",
                   "initials",
                   "yomi name",
                   "given name yomi",
                   "family name yomi",
                   "phonetic first name",
                   "phonetic middle name",
                   "phonetic last name",
                   "file as",
                   "mileage",
                   "billing information",
                   "directory server",
                   "hobby",
                   "location",
                   "subject",
                   "distribution lists"});
        return t;
    }();
    return table;
}

const QHash<QString, QString>& exactAccounts() {
    static const QHash<QString, QString> table = [] {
        HeaderTable t;
        t.put("acc_name",
              {"name", "company", "organization", "organisation", "公司", "单位", "公司名称",
               "单位名称", "客户名称", "公司/单位", "单位/公司", "名称", "客户"});
        t.put("acc_description", {"notes", "note", "comments", "附注", "备注", "说明"});
        t.put("acc_website", {"web page", "website", "web site", "网页", "主页", "网址", "网站"});
        t.put("acc_industry", {"industry", "行业", "所属行业"});
        t.put("acc_province", {"省份", "省", "地区", "所在地区"});
        t.put("acc_tag", {"categories", "category", "类别", "分类", "标签"});
        t.put(":addr.work.street", {"地址", "address", "联系地址", "通讯地址", "详细地址"});
        t.put(":addr.work.postcode", {"邮编", "邮政编码", "postcode", "zip", "zip code"});
        t.put(":addr.work.city", {"城市", "city"});
        t.put(":addr.work.country", {"国家", "country"});
        return t;
    }();
    return table;
}

bool hasAny(const QString& text, std::initializer_list<const char*> words) {
    for (const char* w : words)
        if (text.contains(QString::fromUtf8(w))) return true;
    return false;
}

// Google's numbered columns: "Phone 2 - Type", "E-mail 1 - Value",
// "Address 1 - Postal Code", "Organization 1 - Name"...
QString numberedTarget(const QString& h) {
    static const QRegularExpression numbered(
        QStringLiteral("^(phone|e-mail|email|address|im|website|relation|event|custom field|"
                       "organization|external id) (\\d+) - (.+)$"));
    const auto m = numbered.match(h);
    if (!m.hasMatch()) return QStringLiteral("?");
    const QString what = m.captured(1), n = m.captured(2), part = m.captured(3);
    const bool isLabel = part == QLatin1String("type") || part == QLatin1String("label");
    if (what == QLatin1String("phone"))
        return isLabel                          ? QStringLiteral(":label.p") + n
               : part == QLatin1String("value") ? QStringLiteral(":phone.p") + n
                                                : QString();
    if (what == QLatin1String("e-mail") || what == QLatin1String("email"))
        return part == QLatin1String("value") ? QStringLiteral(":email") : QString();
    if (what == QLatin1String("im"))
        return part == QLatin1String("value") ? QStringLiteral(":im") : QString();
    if (what == QLatin1String("website"))
        return part == QLatin1String("value") ? QStringLiteral("con_website") : QString();
    if (what == QLatin1String("address")) {
        if (isLabel) return QStringLiteral(":label.a") + n;
        static const QHash<QString, QString> parts = {
            {QStringLiteral("street"), QStringLiteral("street")},
            {QStringLiteral("extended address"), QStringLiteral("street")},
            {QStringLiteral("po box"), QStringLiteral("street")},
            {QStringLiteral("city"), QStringLiteral("city")},
            {QStringLiteral("region"), QStringLiteral("region")},
            {QStringLiteral("postal code"), QStringLiteral("postcode")},
            {QStringLiteral("country"), QStringLiteral("country")}};
        const QString p = parts.value(part);
        return p.isEmpty() ? QString() : QStringLiteral(":addr.a%1.%2").arg(n, p);
    }
    return QString();
}

QString addressTarget(const QString& h, const QString& kind) {
    QString group;
    if (hasAny(h, {"business", "work", "商务", "单位", "工作", "公司", "办公"}))
        group = QStringLiteral("work");
    else if (hasAny(h, {"home", "住宅", "家庭", "家庭所在", "住家"}))
        group = QStringLiteral("home");
    else if (hasAny(h, {"other", "其他", "其它"}))
        group = QStringLiteral("other");
    if (group.isEmpty()) return QString();
    QString part;
    if (hasAny(h, {"postal", "zip", "postcode", "邮政编码", "邮编"}))
        part = QStringLiteral("postcode");
    else if (hasAny(h, {"country", "国家"}))
        part = QStringLiteral("country");
    else if (hasAny(h, {"state", "region", "province", "省"}))
        part = QStringLiteral("region");
    else if (hasAny(h, {"city", "市/县", "城市", "市"}))
        part = QStringLiteral("city");
    else if (hasAny(h, {"street", "address", "街道", "地址", "po box"}))
        part = QStringLiteral("street");
    if (part.isEmpty()) return QString();
    if (kind == QLatin1String("accounts")) group = QStringLiteral("work");
    return QStringLiteral(":addr.%1.%2").arg(group, part);
}

// Words that say what a column holds, for the many localised variants.
QString keywordTarget(const QString& h, const QString& kind) {
    const bool accounts = kind == QLatin1String("accounts");
    const bool detail = hasAny(h, {"type", "display", "类型", "显示"});
    if (hasAny(h, {"e-mail", "email", "mail", "邮件", "邮箱"}))
        return detail || accounts ? QString() : QStringLiteral(":email");
    if (hasAny(h, {"pager", "寻呼"})) return accounts ? QString() : QStringLiteral(":note");
    if (hasAny(h, {"fax", "传真"})) return QStringLiteral(":fax");
    if (hasAny(h, {"mobile", "cell", "iphone", "手机", "移动电话"}))
        return accounts ? QStringLiteral(":phone") : QStringLiteral(":mobile");
    if (hasAny(h, {"phone", "电话", "座机", "固话", "callback", "isdn", "telex", "电报", "回电话"}))
        return QStringLiteral(":phone");
    if (const QString address = addressTarget(h, kind); !address.isEmpty()) return address;
    if (hasAny(h, {"web", "网页", "网址"}))
        return accounts ? QStringLiteral("acc_website") : QStringLiteral("con_website");
    return QString();
}

}  // namespace

QString targetOf(const QString& header, const QString& kind) {
    const QString h = normalised(header);
    if (h.isEmpty()) return QString();
    const auto& exact = kind == QLatin1String("accounts") ? exactAccounts() : exactContacts();
    if (const auto it = exact.constFind(h); it != exact.cend()) return *it;
    if (kind != QLatin1String("accounts")) {
        if (const QString numbered = numberedTarget(h); numbered != QLatin1String("?"))
            return numbered;
        // Apple's "Phone (Mobile)", "Email (Work)".
        static const QRegularExpression apple(
            QStringLiteral("^(phone|telephone|email|e-mail) ?\\((.+)\\)$"));
        if (const auto m = apple.match(h); m.hasMatch()) {
            if (m.captured(1).contains(QLatin1String("mail"))) return QStringLiteral(":email");
            return keywordTarget(m.captured(2) + QStringLiteral(" phone"), kind);
        }
    }
    return keywordTarget(h, kind);
}

QList<Part> choosableParts(const QString& kind) {
    if (kind == QLatin1String("accounts"))
        return {{QStringLiteral(":phone"), QStringLiteral("电话(依次填入)")},
                {QStringLiteral(":fax"), QStringLiteral("传真(依次填入)")},
                {QStringLiteral(":addr.work.street"), QStringLiteral("地址-街道")},
                {QStringLiteral(":addr.work.city"), QStringLiteral("地址-城市")},
                {QStringLiteral(":addr.work.region"), QStringLiteral("地址-省/州")},
                {QStringLiteral(":addr.work.postcode"), QStringLiteral("地址-邮编")},
                {QStringLiteral(":addr.work.country"), QStringLiteral("地址-国家")},
                {QStringLiteral(":note"), QStringLiteral("写入描述(附列名)")}};
    QList<Part> parts = {{QStringLiteral(":family"), QStringLiteral("姓")},
                         {QStringLiteral(":middle"), QStringLiteral("中间名")},
                         {QStringLiteral(":company"), QStringLiteral("单位名称")},
                         {QStringLiteral(":department"), QStringLiteral("部门")},
                         {QStringLiteral(":jobtitle"), QStringLiteral("职务")},
                         {QStringLiteral(":phone"), QStringLiteral("电话(依次填入)")},
                         {QStringLiteral(":mobile"), QStringLiteral("手机(依次填入)")},
                         {QStringLiteral(":fax"), QStringLiteral("传真(依次填入)")},
                         {QStringLiteral(":email"), QStringLiteral("电子邮件(依次填入)")},
                         {QStringLiteral(":im"), QStringLiteral("即时通讯(依次填入)")}};
    const QList<std::pair<QString, QString>> groups = {
        {QStringLiteral("home"), QStringLiteral("家庭地址")},
        {QStringLiteral("work"), QStringLiteral("单位地址")}};
    for (const auto& [group, caption] : groups)
        for (const Part& p : {Part{QStringLiteral("street"), QStringLiteral("街道")},
                              Part{QStringLiteral("city"), QStringLiteral("城市")},
                              Part{QStringLiteral("region"), QStringLiteral("省/州")},
                              Part{QStringLiteral("postcode"), QStringLiteral("邮编")},
                              Part{QStringLiteral("country"), QStringLiteral("国家")}})
            parts << Part{QStringLiteral(":addr.%1.%2").arg(group, p.key),
                          caption + QLatin1Char('-') + p.caption};
    parts << Part{QStringLiteral(":birth.year"), QStringLiteral("出生年份")}
          << Part{QStringLiteral(":birth.month"), QStringLiteral("出生月份")}
          << Part{QStringLiteral(":birth.day"), QStringLiteral("出生日")}
          << Part{QStringLiteral(":note"), QStringLiteral("写入描述(附列名)")};
    return parts;
}

QString partCaption(const QString& target) {
    if (!target.startsWith(QLatin1Char(':'))) return QString();
    for (const QString& kind : {QStringLiteral("contacts"), QStringLiteral("accounts")})
        for (const Part& p : choosableParts(kind))
            if (p.key == target) return p.caption;
    if (target.startsWith(QLatin1String(":phone."))) return QStringLiteral("电话(按类型列)");
    if (target.startsWith(QLatin1String(":label."))) return QStringLiteral("电话/地址的类型");
    if (target.startsWith(QLatin1String(":addr."))) {
        static const QHash<QString, QString> groups = {
            {QStringLiteral("home"), QStringLiteral("家庭地址")},
            {QStringLiteral("work"), QStringLiteral("单位地址")},
            {QStringLiteral("other"), QStringLiteral("其他地址")}};
        static const QHash<QString, QString> pieces = {
            {QStringLiteral("street"), QStringLiteral("街道")},
            {QStringLiteral("city"), QStringLiteral("城市")},
            {QStringLiteral("region"), QStringLiteral("省/州")},
            {QStringLiteral("postcode"), QStringLiteral("邮编")},
            {QStringLiteral("country"), QStringLiteral("国家")}};
        return groups.value(target.section(QLatin1Char('.'), 1, 1),
                            QStringLiteral("地址(按类型列)")) +
               QLatin1Char('-') + pieces.value(target.section(QLatin1Char('.'), 2));
    }
    if (target == QLatin1String(":given")) return QStringLiteral("名");
    return target;
}

}  // namespace tarvel::exchange::layout
