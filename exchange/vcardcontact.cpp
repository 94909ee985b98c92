#include "exchange/vcardcontact.h"

#include "exchange/contactnames.h"
#include "store/jetdate.h"

namespace tarvel::exchange {

namespace {

// Where values of one kind go, and the caption of those that do not fit.
struct Slots {
    QStringList columns;
    const char* overflow;
};

const Slots kTelephones{{"con_telephone", "con_telephone2", "con_telephone3"}, "其他电话"};
const Slots kMobiles{{"con_mobile", "con_mobile2", "con_mobile3"}, "其他手机"};
const Slots kFaxes{{"con_fax", "con_fax2", "con_fax3"}, "其他传真"};
const Slots kEmails{{"con_email", "con_email2", "con_email3"}, "其他邮箱"};
const Slots kIms{{"con_im", "con_im2", "con_im3"}, "其他即时通讯"};
const Slots kWebsites{{"con_website"}, "其他网址"};

// Instant-messaging properties of address books and the word that says which.
const QHash<QString, QString>& imProperties() {
    static const QHash<QString, QString> words = {{"X-QQ", "QQ"},
                                                  {"X-WECHAT", "微信"},
                                                  {"X-WEIXIN", "微信"},
                                                  {"X-AIM", "AIM"},
                                                  {"X-ICQ", "ICQ"},
                                                  {"X-JABBER", "Jabber"},
                                                  {"X-MSN", "MSN"},
                                                  {"X-YAHOO", "Yahoo"},
                                                  {"X-SKYPE", "Skype"},
                                                  {"X-SKYPE-USERNAME", "Skype"},
                                                  {"X-GOOGLE-TALK", "Google Talk"},
                                                  {"X-GTALK", "Google Talk"},
                                                  {"X-GADUGADU", "GaduGadu"}};
    return words;
}

// Properties with no field of their own that are kept in the note, and their captions.
QString noteCaption(const QString& property) {
    static const QHash<QString, QString> captions = {{"ANNIVERSARY", "纪念日"},
                                                     {"X-ANNIVERSARY", "纪念日"},
                                                     {"RELATED", "相关的人"},
                                                     {"X-ABRELATEDNAMES", "相关的人"},
                                                     {"X-SPOUSE", "配偶"},
                                                     {"X-ASSISTANT", "助理"},
                                                     {"X-MANAGER", "上级"},
                                                     {"X-EVOLUTION-SPOUSE", "配偶"},
                                                     {"X-EVOLUTION-ASSISTANT", "助理"},
                                                     {"X-EVOLUTION-MANAGER", "上级"}};
    return captions.value(property);
}

// IMPP's URI schemes and the word that says which service.
QString imServiceOfScheme(const QString& scheme) {
    static const QHash<QString, QString> words = {
        {"qq", "QQ"},       {"weixin", "微信"}, {"wechat", "微信"},       {"xmpp", "XMPP"},
        {"aim", "AIM"},     {"skype", "Skype"}, {"sip", "SIP"},           {"msnim", "MSN"},
        {"ymsgr", "Yahoo"}, {"icq", "ICQ"},     {"gtalk", "Google Talk"}, {"x-im", "IM"}};
    return words.value(scheme.toLower(), scheme);
}

// The label an Apple or Google card gives a group ("item1.X-ABLabel:_$!<Mobile>!$_").
QString labelText(QString label) {
    if (label.startsWith(QLatin1String("_$!<")) && label.endsWith(QLatin1String(">!$_")))
        label = label.mid(4, label.size() - 8);
    return label.trimmed();
}

// Words for a kind of number or address, as TYPE gives them or a label holds them.
const QStringList kFaxWords = {"fax", "传真"};
const QStringList kMobileWords = {"cell", "mobile", "iphone", "手机", "移动"};
const QStringList kWorkWords = {"work", "工作", "公司", "单位"};

bool saysAny(const QStringList& types, const QString& label, const QStringList& words) {
    for (const QString& w : words)
        if (types.contains(w) || (!label.isEmpty() && label.contains(w, Qt::CaseInsensitive)))
            return true;
    return false;
}

QString withoutScheme(const QString& value, const char* scheme) {
    const QString s = value.trimmed();
    return s.startsWith(QLatin1String(scheme), Qt::CaseInsensitive)
               ? s.mid(qsizetype(qstrlen(scheme))).trimmed()
               : s;
}

class CardReader {
public:
    explicit CardReader(const VCardCard& card) : card_(card), old_(card.oldStyle()) {
        for (const VCardProperty& p : card.properties)
            if (p.name == QLatin1String("X-ABLABEL") && !p.group.isEmpty())
                labels_.insert(p.group, labelText(vcardUnescaped(p.value, old_)));
    }

    VCardContact read() {
        for (const VCardProperty& p : card_.properties) {
            if (p.badBytes && !out_.badLines.contains(p.line)) out_.badLines << p.line;
            take(p);
        }
        finish();
        return out_;
    }

private:
    QString text(const VCardProperty& p) const { return vcardUnescaped(p.value, old_).trimmed(); }
    QStringList parts(const VCardProperty& p, char separator = ';') const {
        return vcardParts(p.value, QLatin1Char(separator), old_);
    }
    QString label(const VCardProperty& p) const { return labels_.value(p.group); }
    void set(const char* column, const QString& value) {
        if (!value.isEmpty()) record().columns.insert(QLatin1String(column), value);
    }
    IncomingRecord& record() { return out_.record; }

    // Into the first empty slot, else into the note under the slots' caption.
    void put(const Slots& target, const QString& value) {
        if (value.isEmpty()) return;
        for (const QString& column : target.columns) {
            const QString there = record().columns.value(column).toString();
            if (there.compare(value, Qt::CaseInsensitive) == 0) return;
            if (there.isEmpty()) {
                record().columns.insert(column, value);
                return;
            }
        }
        toNote(QString::fromUtf8(target.overflow), value);
    }
    void toNote(const QString& caption, const QString& value) {
        const QString line = caption + QStringLiteral("：") + value;
        if (!extraNotes_.contains(line)) {
            extraNotes_ << line;
            out_.movedToNote << caption;
        }
    }

    void take(const VCardProperty& p) {
        const QString& n = p.name;
        if (n == QLatin1String("FN")) {
            if (fn_.isEmpty()) fn_ = text(p);
        } else if (n == QLatin1String("N")) {
            if (!hasN_) name_ = parts(p);
            hasN_ = true;
        } else if (n == QLatin1String("TEL")) {
            telephone(p);
        } else if (n == QLatin1String("EMAIL")) {
            put(kEmails, withoutScheme(text(p), "mailto:"));
        } else if (n == QLatin1String("ORG")) {
            if (org_.isEmpty()) org_ = parts(p);
        } else if (n == QLatin1String("TITLE") || n == QLatin1String("ROLE")) {
            addUnique(&titles_, text(p));
        } else if (n == QLatin1String("ADR")) {
            addresses_ << &p;
        } else if (n == QLatin1String("LABEL")) {
            addUnique(&postalLabels_, text(p));
        } else if (n == QLatin1String("NICKNAME")) {
            for (const QString& nick : parts(p, ',')) addUnique(&nicknames_, nick.trimmed());
        } else if (n == QLatin1String("URL")) {
            put(kWebsites, text(p));
        } else if (n == QLatin1String("IMPP")) {
            im(p);
        } else if (imProperties().contains(n)) {
            const QString id = text(p);
            if (!id.isEmpty()) put(kIms, imProperties().value(n) + QLatin1Char(':') + id);
        } else if (n == QLatin1String("CATEGORIES")) {
            for (const QString& tag : parts(p, ',')) addUnique(&tags_, tag.trimmed());
        } else if (n == QLatin1String("NOTE")) {
            addUnique(&notes_, vcardUnescaped(p.value, old_).trimmed());
        } else if (n == QLatin1String("BDAY")) {
            birthday(p);
        } else if (!noteCaption(n).isEmpty()) {
            const QString value = text(p);
            if (!value.isEmpty()) toNote(noteCaption(n), value);
        } else if (n == QLatin1String("UID")) {
            if (record().externalId.isEmpty()) record().externalId = text(p);
        }
    }

    static void addUnique(QStringList* list, const QString& value) {
        if (!value.isEmpty() && !list->contains(value)) *list << value;
    }

    void telephone(const VCardProperty& p) {
        const QString number = withoutScheme(text(p), "tel:");
        const QString l = label(p);
        if (saysAny(p.types, l, kFaxWords))
            put(kFaxes, number);
        else if (saysAny(p.types, l, kMobileWords))
            put(kMobiles, number);
        else
            put(kTelephones, number);
        if (!number.isEmpty()) firstNumber_ = firstNumber_.isEmpty() ? number : firstNumber_;
    }

    void im(const VCardProperty& p) {
        const QString value = text(p);
        if (value.isEmpty()) return;
        QString service = p.parameters.value(QStringLiteral("X-SERVICE-TYPE"));
        QString id = value;
        const qsizetype colon = value.indexOf(QLatin1Char(':'));
        if (colon > 0) {
            if (service.isEmpty()) service = imServiceOfScheme(value.left(colon));
            id = value.mid(colon + 1);
            while (id.startsWith(QLatin1Char('/'))) id.remove(0, 1);
        }
        put(kIms, (service.isEmpty() ? QStringLiteral("IM") : service) + QLatin1Char(':') + id);
    }

    void birthday(const VCardProperty& p) {
        const QString value = text(p);
        if (value.isEmpty() || record().columns.contains(QStringLiteral("con_birthday"))) return;
        std::optional<QDate> day = vcardBirthday(value);
        // Apple marks a birthday without a year by a year it names.
        const QString omitted = p.parameters.value(QStringLiteral("X-APPLE-OMIT-YEAR"));
        if (day && !omitted.isEmpty() && day->year() == omitted.toInt())
            day = QDate(kYearlessBirthdayYear, day->month(), day->day());
        if (day && day->isValid())
            record().columns.insert(QStringLiteral("con_birthday"), jetdate::naive(*day));
        else
            toNote(QStringLiteral("生日"), value);
    }

    void finish() {
        const QString family = name_.value(0).trimmed(), given = name_.value(1).trimmed();
        QString whole = fn_;
        if (whole.isEmpty())
            whole = wholeName(family, given, name_.value(2).trimmed(), name_.value(4).trimmed());
        const QString organisation = org_.value(0).trimmed();
        if (whole.isEmpty()) whole = organisation;
        if (whole.isEmpty()) whole = record().columns.value(QStringLiteral("con_email")).toString();
        if (whole.isEmpty()) whole = firstNumber_;
        if (whole.isEmpty()) whole = nicknames_.value(0);
        if (whole.isEmpty()) whole = QStringLiteral("未命名联系人");
        set("con_lastname", whole);
        set("con_firstname", given);
        set("con_title", name_.value(3).trimmed());
        set("con_nickname", nicknames_.join(QLatin1Char(',')));
        set("con_tag", tags_.join(QLatin1Char(',')));
        record().organisation = organisation;
        // The units of the organisation and the titles, as one "department and title".
        QStringList department;
        for (qsizetype i = organisation.isEmpty() ? 0 : 1; i < org_.size(); ++i)
            addUnique(&department, org_[i].trimmed());
        if (organisation.isEmpty() && !department.isEmpty())
            record().organisation = department.takeFirst();
        for (const QString& t : std::as_const(titles_)) addUnique(&department, t);
        set("con_department_title", department.join(QLatin1Char(' ')));
        placeAddresses();
        QStringList note = notes_;
        note << extraNotes_;
        set("con_description", note.join(QLatin1Char('\n')));
    }

    // A home (or untyped) address for the contact, a work address for the
    // account the contact brings; the rest into the note.
    void placeAddresses() {
        // Some programs print the address only: one line of it, when nothing better.
        if (addresses_.isEmpty() && !postalLabels_.isEmpty()) {
            QString line = postalLabels_.first();
            set("con_address_family", line.replace(QLatin1Char('\n'), QStringLiteral(", ")));
        }
        const bool account = !record().organisation.isEmpty();
        bool contactHas = false, accountHas = false;
        QList<const VCardProperty*> rest;
        for (const VCardProperty* p : std::as_const(addresses_)) {
            const bool work = saysAny(p->types, label(*p), kWorkWords);
            if (work && account && !accountHas) {
                accountHas = place(*p, "acc_address", "acc_postcode", true);
            } else if (!work && !contactHas) {
                contactHas = place(*p, "con_address_family", "con_postcode_family", false);
            } else {
                rest << p;
            }
        }
        for (const VCardProperty* p : std::as_const(rest)) {
            if (!contactHas) {
                contactHas = place(*p, "con_address_family", "con_postcode_family", false);
                continue;
            }
            const PostalAddress a = address(*p);
            const QString line = addressLine(a);
            if (!line.isEmpty() || !a.postcode.isEmpty())
                toNote(QStringLiteral("其他地址"),
                       a.postcode.isEmpty() ? line : line + QLatin1Char(' ') + a.postcode);
        }
    }
    PostalAddress address(const VCardProperty& p) const {
        const QStringList a = parts(p);
        return {a.value(0), a.value(1), a.value(2), a.value(3), a.value(4), a.value(5), a.value(6)};
    }
    bool place(const VCardProperty& p, const char* line, const char* code, bool forAccount) {
        const PostalAddress a = address(p);
        const QString text = addressLine(a), postcode = a.postcode.trimmed();
        if (text.isEmpty() && postcode.isEmpty()) return false;
        auto& columns = forAccount ? record().accountColumns : record().columns;
        if (!text.isEmpty()) columns.insert(QLatin1String(line), text);
        if (!postcode.isEmpty()) columns.insert(QLatin1String(code), postcode);
        return true;
    }

    const VCardCard& card_;
    const bool old_;
    QHash<QString, QString> labels_;
    VCardContact out_;
    QString fn_, firstNumber_;
    QStringList name_, org_, titles_, nicknames_, tags_, notes_, extraNotes_;
    bool hasN_ = false;
    QList<const VCardProperty*> addresses_;
    QStringList postalLabels_;  // addresses as printed on an envelope
};

}  // namespace

std::optional<QDate> vcardBirthday(const QString& value) {
    QString v = value.trimmed();
    const bool yearless = v.startsWith(QLatin1String("--"));
    // "--0102", "--01-02": month and day only; else the date before any time.
    v = (yearless ? v.mid(2) : v.section(QLatin1Char('T'), 0, 0)).remove(QLatin1Char('-'));
    if (yearless) v = QString::number(kYearlessBirthdayYear) + v.left(4);
    if (v.size() != 8) return std::nullopt;
    int number[3] = {0, 0, 0};  // year, month, day
    for (qsizetype i = 0; i < 8; ++i) {
        if (!v[i].isDigit()) return std::nullopt;
        int& n = number[i < 4 ? 0 : i < 6 ? 1 : 2];
        n = n * 10 + v[i].digitValue();
    }
    const QDate d(number[0], number[1], number[2]);
    if (!d.isValid()) return std::nullopt;
    return d;
}

VCardContact contactOfCard(const VCardCard& card) {
    return CardReader(card).read();
}

void tellAbout(const VCardCard& card, VCardContact* c, VCardReading* reading) {
    QStringList lines;
    for (int line : std::as_const(c->badLines)) lines << QString::number(line);
    if (!lines.isEmpty())
        reading->unreadable << QStringLiteral("第%1张名片「%2」第%3行")
                                   .arg(card.number)
                                   .arg(c->name(), lines.join(QLatin1Char(',')));
    c->movedToNote.removeDuplicates();
    if (!c->movedToNote.isEmpty())
        reading->moved << QStringLiteral("「%1」的%2")
                              .arg(c->name(), c->movedToNote.join(QStringLiteral("、")));
}

VCardReading readVCards(const QByteArray& bytes) {
    const VCardText text = readVCardText(bytes);
    VCardReading out;
    out.skipped = text.broken;
    out.contacts.reserve(text.cards.size());
    for (const VCardCard& card : text.cards) {
        VCardContact c = contactOfCard(card);
        tellAbout(card, &c, &out);
        out.contacts.append(std::move(c));
    }
    return out;
}
}  // namespace tarvel::exchange
