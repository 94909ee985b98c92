#include "exchange/tablerow.h"

#include <QHash>
#include <QMap>

#include "exchange/contactnames.h"
#include "exchange/importdate.h"
#include "store/jetdate.h"

namespace tarvel::exchange {

namespace {

struct Address {
    QStringList street;
    QString city, region, postcode, country;
    bool empty() const {
        return street.isEmpty() && city.isEmpty() && region.isEmpty() && postcode.isEmpty() &&
               country.isEmpty();
    }
    // One readable line in the order of the address's country; a second
    // street line is the flat or unit within the first.
    QString line() const {
        return addressLine(PostalAddress{{},
                                         QStringList(street.mid(1)).join(QLatin1Char(' ')),
                                         street.value(0),
                                         city,
                                         region,
                                         postcode,
                                         country});
    }
};

const QHash<QString, QStringList>& slotsOf(const QString& kind) {
    static const QHash<QString, QStringList> contacts = {
        {QStringLiteral(":phone"),
         {QStringLiteral("con_telephone"), QStringLiteral("con_telephone2"),
          QStringLiteral("con_telephone3")}},
        {QStringLiteral(":mobile"),
         {QStringLiteral("con_mobile"), QStringLiteral("con_mobile2"),
          QStringLiteral("con_mobile3")}},
        {QStringLiteral(":fax"),
         {QStringLiteral("con_fax"), QStringLiteral("con_fax2"), QStringLiteral("con_fax3")}},
        {QStringLiteral(":email"),
         {QStringLiteral("con_email"), QStringLiteral("con_email2"), QStringLiteral("con_email3")}},
        {QStringLiteral(":im"),
         {QStringLiteral("con_im"), QStringLiteral("con_im2"), QStringLiteral("con_im3")}}};
    static const QHash<QString, QStringList> accounts = {
        {QStringLiteral(":phone"), {QStringLiteral("acc_telephone")}},
        {QStringLiteral(":mobile"), {QStringLiteral("acc_telephone")}},
        {QStringLiteral(":fax"), {QStringLiteral("acc_fax")}}};
    return kind == QLatin1String("accounts") ? accounts : contacts;
}

// The kind of telephone a label of Google's ("Mobile", "Work Fax", "手机") names.
QString phoneKind(const QString& label) {
    const QString l = label.toLower();
    if (l.contains(QLatin1String("fax")) || l.contains(QStringLiteral("传真")))
        return QStringLiteral(":fax");
    if (l.contains(QLatin1String("mobile")) || l.contains(QLatin1String("cell")) ||
        l.contains(QLatin1String("iphone")) || l.contains(QStringLiteral("手机")) ||
        l.contains(QStringLiteral("移动")))
        return QStringLiteral(":mobile");
    return QStringLiteral(":phone");
}

QString addressGroup(const QString& label) {
    const QString l = label.toLower();
    for (const char* w : {"work", "business", "office", "工作", "单位", "公司", "商务"})
        if (l.contains(QString::fromUtf8(w))) return QStringLiteral("work");
    if (l.contains(QLatin1String("other")) || l.contains(QStringLiteral("其他")))
        return QStringLiteral("other");
    return QStringLiteral("home");
}

// "0/0/00" in an anniversary column says there is none.
bool isPlaceholder(const QString& value) {
    QDate day;
    return readDateCell(value, &day) == DateCell::Empty;
}

bool isDateColumn(const QString& column) {
    return column == QLatin1String("con_birthday") || column.endsWith(QLatin1String("_date"));
}

// Google's several values in one cell ("a ::: b") and its "* myContacts" group.
QStringList values(const QString& cell) {
    QStringList out;
    for (const QString& v : cell.split(QStringLiteral(" ::: "))) {
        const QString t = v.trimmed();
        if (!t.isEmpty()) out << t;
    }
    return out;
}

QString tags(const QString& cell) {
    QStringList out;
    for (QString v : values(cell)) {
        if (v.startsWith(QLatin1String("* "))) v = v.mid(2);
        if (v.compare(QLatin1String("myContacts"), Qt::CaseInsensitive) && !v.isEmpty()) out << v;
    }
    return out.join(QLatin1Char(','));
}

}  // namespace

TableRowReader::TableRowReader(const QString& kind, const QStringList& header,
                               const QStringList& targets)
    : kind_(kind), header_(header), targets_(targets) {}

bool TableRowReader::read(const CsvRow& row, IncomingRecord* record, QStringList* problems) const {
    const bool accounts = kind_ == QLatin1String("accounts");
    const QString notes =
        accounts ? QStringLiteral("acc_description") : QStringLiteral("con_description");
    QHash<QString, QVariant>& columns = record->columns;
    columns.clear();
    record->accountColumns.clear();
    record->organisation.clear();
    QStringList noteLines;
    QString family, middle, department, jobTitle;
    QString birthYear, birthMonth, birthDay;
    QMap<QString, Address> addresses;
    QHash<QString, QString> labels;
    QList<std::tuple<QString, QString, QString>> slotted;  // kind, header, value
    auto caption = [this](qsizetype c) { return header_.value(c).trimmed(); };
    auto bad = [&](qsizetype c, const QString& value) {
        *problems << QStringLiteral("第%1行“%2”列：无法识别的日期“%3”，这一项没有导入")
                         .arg(row.line)
                         .arg(caption(c), value);
    };
    bool any = false;
    for (qsizetype c = 0; c < targets_.size() && c < row.fields.size(); ++c) {
        const QString& target = targets_[c];
        const QString value = row.fields[c].trimmed();
        if (target.isEmpty() || value.isEmpty()) continue;
        any = true;
        if (target.startsWith(QLatin1String(":label."))) labels.insert(target.mid(7), value);
    }
    if (!any) return false;
    for (qsizetype c = 0; c < targets_.size() && c < row.fields.size(); ++c) {
        const QString& target = targets_[c];
        QString value = row.fields[c].trimmed();
        if (target.isEmpty() || value.isEmpty()) continue;
        value.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
        if (!target.startsWith(QLatin1Char(':'))) {
            if (target == QLatin1String("acc_name") && !accounts) {
                record->organisation = value;
            } else if (isDateColumn(target)) {
                QDate day;
                const DateCell read = readDateCell(value, &day);
                if (read == DateCell::Bad) bad(c, value);
                // A birthday without its year keeps its month and day for the
                // birthday list; another date without a year is kept in the note.
                const bool birthday = target == QLatin1String("con_birthday");
                if (read == DateCell::NoYear && birthday)
                    day = QDate(kYearlessBirthdayYear, day.month(), day.day());
                else if (read == DateCell::NoYear)
                    noteLines << caption(c) + QStringLiteral("：") +
                                     day.toString(QStringLiteral("M月d日"));
                const bool stored =
                    read == DateCell::Date || (read == DateCell::NoYear && birthday);
                if (stored && !columns.contains(target))
                    columns.insert(target, jetdate::naive(day));
            } else if (columns.contains(target)) {
                // A second column for the same field is kept in the note.
                if (columns.value(target).toString() != value)
                    noteLines << caption(c) + QStringLiteral("：") + value;
            } else {
                columns.insert(target,
                               target.endsWith(QLatin1String("_tag")) ? tags(value) : value);
            }
            continue;
        }
        const QString part = target.section(QLatin1Char('.'), 0, 0);
        if (target == QLatin1String(":given"))
            columns.insert(QStringLiteral("con_firstname"), value);
        else if (target == QLatin1String(":family"))
            family = value;
        else if (target == QLatin1String(":middle"))
            middle = value;
        else if (target == QLatin1String(":company") && accounts)
            columns.insert(QStringLiteral("acc_name"), value);
        else if (target == QLatin1String(":company"))
            record->organisation = value;
        else if (target == QLatin1String(":department"))
            department = value;
        else if (target == QLatin1String(":jobtitle"))
            jobTitle = value;
        else if (target == QLatin1String(":birth.year"))
            birthYear = value;
        else if (target == QLatin1String(":birth.month"))
            birthMonth = value;
        else if (target == QLatin1String(":birth.day"))
            birthDay = value;
        else if (target == QLatin1String(":note") && !isPlaceholder(value))
            noteLines << caption(c) + QStringLiteral("：") + value;
        else if (part == QLatin1String(":addr")) {
            QString group = target.section(QLatin1Char('.'), 1, 1);
            if (group.size() > 1 && group[0] == QLatin1Char('a') && group[1].isDigit())
                group = addressGroup(labels.value(group));
            Address& a = addresses[group];
            const QString piece = target.section(QLatin1Char('.'), 2);
            if (piece == QLatin1String("street"))
                a.street << value;
            else if (piece == QLatin1String("city"))
                a.city = value;
            else if (piece == QLatin1String("region"))
                a.region = value;
            else if (piece == QLatin1String("postcode"))
                a.postcode = value;
            else if (piece == QLatin1String("country"))
                a.country = value;
        } else if (part == QLatin1String(":phone") && target.size() > 6) {
            for (const QString& v : values(value))
                slotted << std::tuple(phoneKind(labels.value(target.mid(7))), caption(c), v);
        } else if (part != QLatin1String(":label")) {
            for (const QString& v : values(value)) {
                const QString h = caption(c);
                // "QQ：12345" says which network an IM address belongs to.
                const bool named = target == QLatin1String(":im") &&
                                   !h.contains(QStringLiteral("即时通讯")) &&
                                   !h.startsWith(QLatin1String("IM "), Qt::CaseInsensitive);
                slotted << std::tuple(target, h, named ? h + QLatin1Char(':') + v : v);
            }
        }
    }
    // Telephones, e-mails and IM into the free slots of their kind.
    const auto& kindSlots = slotsOf(kind_);
    for (const auto& [kind, h, v] : slotted) {
        const QStringList names = kindSlots.value(kind);
        bool placed = false, seen = false;
        for (const QString& n : names) seen = seen || columns.value(n).toString() == v;
        for (const QString& n : names) {
            if (seen || placed) break;
            if (columns.value(n).toString().isEmpty()) columns.insert(n, v), placed = true;
        }
        if (!placed && !seen) noteLines << h + QStringLiteral("：") + v;
    }
    // Addresses: home for the contact, work for a new account.
    auto put = [&](const QString& address, const QString& postcode, const Address& a) {
        if (!columns.value(address).toString().isEmpty()) return false;
        columns.insert(address, a.line());
        if (!a.postcode.isEmpty() && columns.value(postcode).toString().isEmpty())
            columns.insert(postcode, a.postcode);
        return true;
    };
    // An address column of this program's own beside street, city or postcode
    // columns is the first line of that address.
    const QString ownAddress =
        accounts ? QStringLiteral("acc_address") : QStringLiteral("con_address_family");
    const QString ownGroup = accounts ? QStringLiteral("work") : QStringLiteral("home");
    if (addresses.contains(ownGroup) && columns.contains(ownAddress))
        addresses[ownGroup].street.prepend(columns.take(ownAddress).toString());
    for (auto it = addresses.cbegin(); it != addresses.cend(); ++it) {
        const Address& a = it.value();
        if (a.empty()) continue;
        const QString line =
            a.line() + (a.postcode.isEmpty() ? QString() : QLatin1Char(' ') + a.postcode);
        if (accounts) {
            if (!put(QStringLiteral("acc_address"), QStringLiteral("acc_postcode"), a))
                noteLines << QStringLiteral("地址：") + line;
        } else if (it.key() == QLatin1String("work") && !record->organisation.isEmpty()) {
            record->accountColumns.insert(QStringLiteral("acc_address"), a.line());
            if (!a.postcode.isEmpty())
                record->accountColumns.insert(QStringLiteral("acc_postcode"), a.postcode);
        } else if (!put(QStringLiteral("con_address_family"), QStringLiteral("con_postcode_family"),
                        a)) {
            noteLines << (it.key() == QLatin1String("work") ? QStringLiteral("单位地址：")
                                                            : QStringLiteral("其他地址：")) +
                             line;
        }
    }
    if (!accounts) {
        // Birthday from year, month and day columns.
        if (!birthMonth.isEmpty() && !birthDay.isEmpty() &&
            !columns.contains(QStringLiteral("con_birthday"))) {
            const QDate day(birthYear.isEmpty() ? kYearlessBirthdayYear : birthYear.toInt(),
                            birthMonth.toInt(), birthDay.toInt());
            if (day.isValid())
                columns.insert(QStringLiteral("con_birthday"), jetdate::naive(day));
            else
                noteLines << QStringLiteral("生日：%1月%2日").arg(birthMonth, birthDay);
        }
        const QString title = QStringList{department, jobTitle}.join(QLatin1Char(' ')).trimmed();
        if (!title.isEmpty() &&
            columns.value(QStringLiteral("con_department_title")).toString().isEmpty())
            columns.insert(QStringLiteral("con_department_title"), title);
        // The whole name: the file's own, else its parts, else what else names the person.
        const QString given = columns.value(QStringLiteral("con_firstname")).toString();
        QString name = columns.value(QStringLiteral("con_lastname")).toString();
        if (name.isEmpty()) name = wholeName(family, given, middle);
        if (name.isEmpty()) name = record->organisation;
        for (const char* other : {"con_email", "con_mobile", "con_telephone", "con_im"})
            if (name.isEmpty()) name = columns.value(QString::fromLatin1(other)).toString();
        if (name.isEmpty()) {
            *problems
                << QStringLiteral("第%1行没有姓名、单位、电子邮件或电话，没有导入").arg(row.line);
            return false;
        }
        columns.insert(QStringLiteral("con_lastname"), name);
    } else if (columns.value(QStringLiteral("acc_name")).toString().isEmpty()) {
        *problems << QStringLiteral("第%1行没有单位名称，没有导入").arg(row.line);
        return false;
    }
    if (!noteLines.isEmpty()) {
        QString note = columns.value(notes).toString();
        if (!note.isEmpty()) note += QLatin1Char('\n');
        columns.insert(notes, note + noteLines.join(QLatin1Char('\n')));
    }
    return true;
}

}  // namespace tarvel::exchange
