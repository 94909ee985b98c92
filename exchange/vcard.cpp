#include "exchange/vcard.h"

#include <QRegularExpression>

#include "exchange/recordwriter.h"
#include "exchange/textdecode.h"
#include "exchange/textfile.h"
#include "store/jetdate.h"
#include "store/tarveldatabase.h"
#include "store/transaction.h"

namespace tarvel::exchange {

namespace {

// Telephone-like columns and the TYPE each carries.
struct NumberColumns {
    const char* type;
    QStringList columns;
};
const std::vector<NumberColumns>& numberColumns() {
    static const std::vector<NumberColumns> numbers = {
        {"work,voice", {"con_telephone", "con_telephone2", "con_telephone3"}},
        {"cell", {"con_mobile", "con_mobile2", "con_mobile3"}},
        {"fax", {"con_fax", "con_fax2", "con_fax3"}}};
    return numbers;
}
const QStringList kEmails = {"con_email", "con_email2", "con_email3"};

QString escaped(const QString& value) {
    QString v = value;
    v.replace(QLatin1Char('\\'), QStringLiteral("\\\\"));
    v.replace(QLatin1Char(','), QStringLiteral("\\,"));
    v.replace(QLatin1Char(';'), QStringLiteral("\\;"));
    v.replace(QStringLiteral("\r\n"), QStringLiteral("\\n"));
    v.replace(QLatin1Char('\n'), QStringLiteral("\\n"));
    return v;
}

QString unescaped(const QString& value) {
    QString out;
    for (qsizetype i = 0; i < value.size(); ++i) {
        if (value[i] == QLatin1Char('\\') && i + 1 < value.size()) {
            const QChar next = value[++i];
            out += (next == QLatin1Char('n') || next == QLatin1Char('N')) ? QChar(QLatin1Char('\n'))
                                                                          : next;
        } else {
            out += value[i];
        }
    }
    return out;
}

// Splits a structured value at unescaped ';'.
QStringList components(const QString& value) {
    QStringList parts{QString()};
    for (qsizetype i = 0; i < value.size(); ++i) {
        if (value[i] == QLatin1Char('\\') && i + 1 < value.size()) {
            parts.last() += value[i];
            parts.last() += value[++i];
        } else if (value[i] == QLatin1Char(';')) {
            parts << QString();
        } else {
            parts.last() += value[i];
        }
    }
    for (QString& p : parts) p = unescaped(p);
    return parts;
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

QString text(const VCardContact& c, const char* column) {
    return c.columns.value(QLatin1String(column)).toString().trimmed();
}

QString birthday(const QVariant& value) {
    const auto d = jetdate::fromVariant(value);
    if (!d || d->date() == QDate(1900, 1, 1)) return {};
    return d->date().toString(QStringLiteral("yyyyMMdd"));
}

QVariant parseBirthday(const QString& value) {
    for (const char* format : {"yyyyMMdd", "yyyy-MM-dd"}) {
        const QDate d = QDate::fromString(value.left(QString::fromLatin1(format).size()),
                                          QLatin1String(format));
        if (d.isValid()) return jetdate::naive(d);
    }
    return {};
}

struct Property {
    QString name;
    QStringList types;  // lower case
    QString value;
};

Property parseLine(const QString& line) {
    qsizetype colon = -1;
    bool inQuotes = false;
    for (qsizetype i = 0; i < line.size() && colon < 0; ++i) {
        if (line[i] == QLatin1Char('"'))
            inQuotes = !inQuotes;
        else if (line[i] == QLatin1Char(':') && !inQuotes)
            colon = i;
    }
    Property p;
    if (colon < 0) return p;
    QStringList head = line.left(colon).split(QLatin1Char(';'));
    p.name = head.takeFirst().section(QLatin1Char('.'), -1).toUpper();
    p.value = line.mid(colon + 1);
    for (const QString& param : std::as_const(head)) {
        const QString key = param.section(QLatin1Char('='), 0, 0).trimmed().toUpper();
        QString values = param.section(QLatin1Char('='), 1).remove(QLatin1Char('"')).toLower();
        // vCard 2.1 and some 3.0 writers give bare types ("TEL;CELL:").
        if (!param.contains(QLatin1Char('='))) values = key.toLower();
        if (key == QStringLiteral("TYPE") || !param.contains(QLatin1Char('=')))
            p.types << values.split(QLatin1Char(','), Qt::SkipEmptyParts);
    }
    return p;
}

void putNext(VCardContact& c, const QStringList& columns, const QString& value) {
    for (const QString& column : columns) {
        if (c.columns.value(column).toString().isEmpty()) {
            c.columns.insert(column, value);
            return;
        }
    }
}

void apply(VCardContact& c, const Property& p) {
    auto set = [&](const char* column, const QString& value) {
        c.columns.insert(QLatin1String(column), value);
    };
    if (p.name == QStringLiteral("N")) {
        const QStringList n = components(p.value);
        set("con_lastname", n.value(0));
        set("con_firstname", n.value(1));
        if (!n.value(3).isEmpty()) set("con_title", n.value(3));
    } else if (p.name == QStringLiteral("FN")) {
        if (text(c, "con_lastname").isEmpty() && text(c, "con_firstname").isEmpty())
            set("con_lastname", unescaped(p.value));
    } else if (p.name == QStringLiteral("NICKNAME")) {
        set("con_nickname", unescaped(p.value));
    } else if (p.name == QStringLiteral("ORG")) {
        c.organisation = components(p.value).value(0);
    } else if (p.name == QStringLiteral("TITLE")) {
        set("con_department_title", unescaped(p.value));
    } else if (p.name == QStringLiteral("TEL")) {
        QString number = unescaped(p.value);
        if (number.startsWith(QStringLiteral("tel:"))) number = number.mid(4);
        const int kind = p.types.contains(QStringLiteral("fax"))    ? 2
                         : p.types.contains(QStringLiteral("cell")) ? 1
                                                                    : 0;
        putNext(c, numberColumns()[kind].columns, number);
    } else if (p.name == QStringLiteral("EMAIL")) {
        putNext(c, kEmails, unescaped(p.value));
    } else if (p.name == QStringLiteral("ADR")) {
        const QStringList a = components(p.value);
        if (text(c, "con_address_family").isEmpty() || p.types.contains(QStringLiteral("home"))) {
            QStringList parts;
            for (int i : {6, 4, 3, 2})  // country, region, locality, street
                if (!a.value(i).isEmpty()) parts << a.value(i);
            set("con_address_family", parts.join(QString()));
            set("con_postcode_family", a.value(5));
        }
    } else if (p.name == QStringLiteral("URL")) {
        set("con_website", unescaped(p.value));
    } else if (p.name == QStringLiteral("BDAY")) {
        c.columns.insert(QStringLiteral("con_birthday"), parseBirthday(p.value));
    } else if (p.name == QStringLiteral("NOTE")) {
        set("con_description", unescaped(p.value));
    }
}

}  // namespace

QString writeVCards(const QList<VCardContact>& contacts) {
    QString out;
    for (const VCardContact& c : contacts) {
        QStringList lines = {QStringLiteral("BEGIN:VCARD"), QStringLiteral("VERSION:4.0")};
        const QString last = text(c, "con_lastname"), first = text(c, "con_firstname");
        QString fn = last + first;
        if (fn.isEmpty()) fn = text(c, "con_nickname");
        lines << QStringLiteral("FN:") + escaped(fn.isEmpty() ? QStringLiteral("无名") : fn);
        lines << QStringLiteral("N:%1;%2;;%3;")
                     .arg(escaped(last), escaped(first), escaped(text(c, "con_title")));
        auto add = [&](const QString& name, const QString& value) {
            if (!value.isEmpty()) lines << name + QLatin1Char(':') + escaped(value);
        };
        add(QStringLiteral("NICKNAME"), text(c, "con_nickname"));
        if (!c.organisation.trimmed().isEmpty())
            lines << QStringLiteral("ORG:") + escaped(c.organisation.trimmed());
        add(QStringLiteral("TITLE"), text(c, "con_department_title"));
        for (const NumberColumns& n : numberColumns())
            for (const QString& column : n.columns)
                add(QStringLiteral("TEL;VALUE=text;TYPE=\"%1\"").arg(QLatin1String(n.type)),
                    c.columns.value(column).toString().trimmed());
        for (const QString& column : kEmails)
            add(QStringLiteral("EMAIL"), c.columns.value(column).toString().trimmed());
        const QString address = text(c, "con_address_family"),
                      postcode = text(c, "con_postcode_family");
        if (!address.isEmpty() || !postcode.isEmpty())
            lines << QStringLiteral("ADR;TYPE=home:;;%1;;;%2;")
                         .arg(escaped(address), escaped(postcode));
        if (!text(c, "con_website").isEmpty())
            lines << QStringLiteral("URL:") + text(c, "con_website");
        add(QStringLiteral("BDAY"), birthday(c.columns.value(QStringLiteral("con_birthday"))));
        add(QStringLiteral("NOTE"), text(c, "con_description"));
        lines << QStringLiteral("END:VCARD");
        for (const QString& line : std::as_const(lines)) out += folded(line);
    }
    return out;
}

QList<VCardContact> readVCards(const QString& input) {
    // Unfold: a line break followed by a blank or a tab continues the line.
    QString text = input;
    text.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    text.replace(QRegularExpression(QStringLiteral("\n[ \t]")), QString());
    QList<VCardContact> contacts;
    std::optional<VCardContact> current;
    for (const QString& line : text.split(QLatin1Char('\n'))) {
        const Property p = parseLine(line.trimmed().isEmpty() ? QString() : line);
        if (p.name == QStringLiteral("BEGIN") &&
            p.value.trimmed().toUpper() == QStringLiteral("VCARD")) {
            current.emplace();
        } else if (p.name == QStringLiteral("END") && current) {
            contacts << *current;
            current.reset();
        } else if (current) {
            apply(*current, p);
        }
    }
    return contacts;
}

Outcome exportVCards(const QString& path, int* written, const Progress& progress) {
    tarveldatabase db;
    const auto rs =
        db.GetReadRs(QStringLiteral("SELECT * FROM que_contacts_accounts WHERE con_check= true"));
    if (!rs || rs->State() != adStateOpen)
        return Outcome::failure(QStringLiteral("导出没有完成：") + db.ErrMsg());
    QList<VCardContact> contacts;
    for (bool more = !rs->Eof(); more; more = rs->MoveNext() && !rs->Eof()) {
        VCardContact c;
        for (int i = 0; i < rs->FieldCount(); ++i)
            if (rs->fieldName(i).startsWith(QStringLiteral("con_")))
                c.columns.insert(rs->fieldName(i), rs->value(i));
        c.organisation = rs->value(QStringLiteral("acc_name")).toString();
        contacts << c;
        if (progress && !progress(int(contacts.size() * 90 / qMax(1, rs->RecordCount()))))
            return Outcome::cancel();
    }
    QString error;
    if (!writeTextFile(path, writeVCards(contacts), false, &error))
        return Outcome::failure(QStringLiteral("导出没有完成：") + error);
    if (written) *written = int(contacts.size());
    if (progress) progress(100);
    return Outcome{true, false, path, {}};
}

Outcome importVCards(const QString& path, int* added, const Progress& progress) {
    DecodedText text;
    QString error;
    if (!readTextFile(path, &text, &error)) return Outcome::failure(error);
    const QList<VCardContact> contacts = readVCards(text.text);
    if (contacts.isEmpty())
        return Outcome::failure(QStringLiteral("%1 中没有联系人名片").arg(path));
    Transaction transaction;
    RecordWriter writer(QStringLiteral("contacts"));
    AccountLinker linker;
    if (!transaction.isActive() || !writer.isOpen())
        return Outcome::failure(importFailed() + transaction.error() + writer.ErrMsg());
    for (qsizetype i = 0; i < contacts.size(); ++i) {
        const qint64 id = writer.add(contacts[i].columns, &error);
        if (!id || !linker.link(id, contacts[i].organisation, &error))
            return Outcome::failure(
                QStringLiteral("第%1张名片无法导入，没有导入任何记录：%2").arg(i + 1).arg(error));
        if (progress && !progress(int((i + 1) * 100 / contacts.size()))) return Outcome::cancel();
    }
    if (!transaction.commit()) return Outcome::failure(importFailed() + transaction.error());
    if (added) *added = int(contacts.size());
    return Outcome{true, false, path, {}};
}

}  // namespace tarvel::exchange
