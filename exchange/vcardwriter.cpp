#include "exchange/vcardwriter.h"

#include <QUuid>

#include "exchange/contactnames.h"
#include "exchange/vcardcontact.h"
#include "store/jetdate.h"

namespace tarvel::exchange {

namespace {

// Telephone-like columns and the TYPE each carries, in 4.0 and 3.0 spelling.
struct NumberColumns {
    const char* four;
    const char* three;
    QStringList columns;
};
const std::vector<NumberColumns>& numberColumns() {
    static const std::vector<NumberColumns> numbers = {
        {"\"work,voice\"", "WORK,VOICE", {"con_telephone", "con_telephone2", "con_telephone3"}},
        {"cell", "CELL", {"con_mobile", "con_mobile2", "con_mobile3"}},
        {"fax", "FAX", {"con_fax", "con_fax2", "con_fax3"}}};
    return numbers;
}

// The IMPP scheme of the service an IM field names ("QQ:12345").
QString schemeOfService(const QString& service) {
    static const QHash<QString, QString> schemes = {
        {"qq", "qq"},       {"微信", "weixin"}, {"xmpp", "xmpp"},        {"jabber", "xmpp"},
        {"aim", "aim"},     {"skype", "skype"}, {"sip", "sip"},          {"msn", "msnim"},
        {"yahoo", "ymsgr"}, {"icq", "icq"},     {"google talk", "gtalk"}};
    return schemes.value(service.trimmed().toLower());
}

QString escaped(const QString& value) {
    QString v = value;
    v.replace(QLatin1Char('\\'), QStringLiteral("\\\\"));
    v.replace(QLatin1Char(','), QStringLiteral("\\,"));
    v.replace(QLatin1Char(';'), QStringLiteral("\\;"));
    v.replace(QStringLiteral("\r\n"), QStringLiteral("\\n"));
    v.replace(QLatin1Char('\n'), QStringLiteral("\\n"));
    return v;
}

// A content line folded at 75 octets, never inside a UTF-8 sequence.
QString folded(const QString& line) {
    QString out;
    int octets = 0;
    for (qsizetype i = 0; i < line.size(); ++i) {
        const QChar c = line[i];
        const bool pairStart = c.isHighSurrogate() && i + 1 < line.size();
        const int size = pairStart ? 4 : c.unicode() < 0x80 ? 1 : c.unicode() < 0x800 ? 2 : 3;
        if (octets + size > 75) {
            out += QStringLiteral("\r\n ");
            octets = 1;
        }
        out += c;
        if (pairStart) out += line[++i];
        octets += size;
    }
    return out + QStringLiteral("\r\n");
}

QString text(const QHash<QString, QVariant>& columns, const char* column) {
    return columns.value(QLatin1String(column)).toString().trimmed();
}

class CardWriter {
public:
    CardWriter(const ContactForCard& c, VCardVersion version)
        : c_(c), four_(version == VCardVersion::Four) {}

    QStringList lines() {
        lines_ << QStringLiteral("BEGIN:VCARD")
               << (four_ ? QStringLiteral("VERSION:4.0") : QStringLiteral("VERSION:3.0"));
        name();
        add("NICKNAME", text(c_.columns, "con_nickname"));
        if (!c_.organisation.trimmed().isEmpty())
            lines_ << QStringLiteral("ORG:") + escaped(c_.organisation.trimmed());
        add("TITLE", text(c_.columns, "con_department_title"));
        for (const NumberColumns& n : numberColumns())
            for (const QString& column : n.columns)
                add(four_ ? QStringLiteral("TEL;VALUE=text;TYPE=%1").arg(QLatin1String(n.four))
                          : QStringLiteral("TEL;TYPE=%1").arg(QLatin1String(n.three)),
                    c_.columns.value(column).toString().trimmed());
        for (const char* column : {"con_email", "con_email2", "con_email3"})
            add(four_ ? "EMAIL" : "EMAIL;TYPE=INTERNET", text(c_.columns, column));
        address("home", text(c_.columns, "con_address_family"),
                text(c_.columns, "con_postcode_family"));
        address("work", text(c_.accountColumns, "acc_address"),
                text(c_.accountColumns, "acc_postcode"));
        const QString website = text(c_.columns, "con_website");
        if (!website.isEmpty()) lines_ << QStringLiteral("URL:") + website;
        for (const char* column : {"con_im", "con_im2", "con_im3"}) im(text(c_.columns, column));
        QStringList tags;
        for (const QString& tag : text(c_.columns, "con_tag").split(QLatin1Char(',')))
            if (!tag.trimmed().isEmpty()) tags << escaped(tag.trimmed());
        if (!tags.isEmpty()) lines_ << QStringLiteral("CATEGORIES:") + tags.join(QLatin1Char(','));
        birthday();
        add("NOTE", text(c_.columns, "con_description"));
        lines_ << QStringLiteral("UID:") + (c_.uid.isEmpty() ? contactCardUid(c_.columns) : c_.uid)
               << QStringLiteral("END:VCARD");
        return lines_;
    }

private:
    void add(const QString& name, const QString& value) {
        if (!value.isEmpty()) lines_ << name + QLatin1Char(':') + escaped(value);
    }
    void add(const char* name, const QString& value) { add(QLatin1String(name), value); }

    void name() {
        const QString whole = text(c_.columns, "con_lastname"),
                      given = text(c_.columns, "con_firstname");
        QString fn = whole.isEmpty() ? wholeName(QString(), given) : whole;
        if (fn.isEmpty()) fn = text(c_.columns, "con_nickname");
        lines_ << QStringLiteral("FN:") +
                      escaped(fn.isEmpty() ? QStringLiteral("未命名联系人") : fn);
        lines_ << QStringLiteral("N:%1;%2;;%3;")
                      .arg(escaped(familyOf(whole, given)), escaped(given),
                           escaped(text(c_.columns, "con_title")));
    }

    void address(const char* type, const QString& line, const QString& postcode) {
        if (line.isEmpty() && postcode.isEmpty()) return;
        lines_ << QStringLiteral("ADR;TYPE=%1:;;%2;;;%3;")
                      .arg(four_ ? QLatin1String(type) : QString::fromLatin1(type).toUpper(),
                           escaped(line), escaped(postcode));
    }

    void im(const QString& value) {
        if (value.isEmpty()) return;
        const qsizetype colon = value.indexOf(QLatin1Char(':'));
        const QString service = colon > 0 ? value.left(colon).trimmed() : QString();
        const QString id = colon > 0 ? value.mid(colon + 1).trimmed() : value;
        const QString scheme = schemeOfService(service);
        if (!scheme.isEmpty())
            lines_ << QStringLiteral("IMPP:%1:%2").arg(scheme, id);
        else if (!service.isEmpty())
            lines_ << QStringLiteral("IMPP;X-SERVICE-TYPE=\"%1\":x-im:%2").arg(service, id);
        else
            lines_ << QStringLiteral("IMPP:x-im:") + id;
    }

    void birthday() {
        const auto d = jetdate::fromVariant(c_.columns.value(QStringLiteral("con_birthday")));
        if (!d || d->date() == QDate(1900, 1, 1) || !d->date().isValid()) return;
        const QDate day = d->date();
        if (day.year() != kYearlessBirthdayYear)
            lines_ << QStringLiteral("BDAY:") + day.toString(four_ ? QStringLiteral("yyyyMMdd")
                                                                   : QStringLiteral("yyyy-MM-dd"));
        else if (four_)
            lines_ << QStringLiteral("BDAY:--") + day.toString(QStringLiteral("MMdd"));
        else  // 3.0 has no yearless date; Apple's convention, which phones know
            lines_ << QStringLiteral("BDAY;X-APPLE-OMIT-YEAR=1604:1604-") +
                          day.toString(QStringLiteral("MM-dd"));
    }

    const ContactForCard& c_;
    const bool four_;
    QStringList lines_;
};

}  // namespace

QString contactCardUid(const QHash<QString, QVariant>& columns) {
    static const QUuid space(QStringLiteral("{5b0f0c8e-7a43-4f59-9d0c-2f3e6c1a9b71}"));
    const QString key = QStringLiteral("contact:%1:%2")
                            .arg(columns.value(QStringLiteral("con_id")).toString(),
                                 columns.value(QStringLiteral("con_create_date")).toString());
    return QStringLiteral("urn:uuid:") +
           QUuid::createUuidV5(space, key).toString(QUuid::WithoutBraces);
}

QString writeVCards(const QList<ContactForCard>& contacts, VCardVersion version) {
    QString out;
    for (const ContactForCard& c : contacts)
        for (const QString& line : CardWriter(c, version).lines()) out += folded(line);
    return out;
}

}  // namespace tarvel::exchange
