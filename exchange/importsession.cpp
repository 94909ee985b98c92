#include "exchange/importsession.h"

#include <QCryptographicHash>
#include <QFileInfo>
#include <QSet>
#include <optional>

#include "exchange/importjournal.h"
#include "exchange/lastaction.h"
#include "exchange/recordwriter.h"
#include "exchange/tableexport.h"
#include "exchange/tables.h"
#include "records/columnlimit.h"
#include "store/clock.h"
#include "store/jetdate.h"
#include "store/tarveldatabase.h"
#include "store/transaction.h"

namespace tarvel::exchange {

namespace {

const QStringList kMobiles = {"con_mobile", "con_mobile2", "con_mobile3"};
const QStringList kEmails = {"con_email", "con_email2", "con_email3"};

QStringList texts(const QHash<QString, QVariant>& columns, const QStringList& names) {
    QStringList out;
    for (const QString& name : names) out << columns.value(name).toString();
    return out;
}

// Empty as the screens see it: no text, or the birthday that means none.
bool isEmptyValue(const QVariant& v) {
    if (v.isNull()) return true;
    if (v.typeId() == QMetaType::QDateTime) {
        const QDateTime d = v.toDateTime();
        return !d.isValid() || d.date() == QDate(1900, 1, 1);
    }
    return v.toString().trimmed().isEmpty();
}

// The same value written another way (blanks, case, +86) is no difference.
bool sameValue(const QString& column, const QVariant& a, const QVariant& b) {
    const QString x = ImportJournal::text(a), y = ImportJournal::text(b);
    if (x == y) return true;
    if (column.contains(QLatin1String("mobile")) || column.contains(QLatin1String("telephone")) ||
        column.contains(QLatin1String("fax")))
        return ImportSession::normalisedPhone(x) == ImportSession::normalisedPhone(y);
    if (column.contains(QLatin1String("email")))
        return ImportSession::normalisedEmail(x) == ImportSession::normalisedEmail(y);
    return x.simplified().toCaseFolded() == y.simplified().toCaseFolded();
}

}  // namespace

QString ImportTally::summary() const {
    QString text = QStringLiteral("新增 %1，更新 %2，跳过 %3").arg(added).arg(updated).arg(skipped);
    if (accountsAdded) text += QStringLiteral("；新建单位 %1 个").arg(accountsAdded);
    if (kept) text += QStringLiteral("；%1 处已有内容与文件不同，保留了已有内容").arg(kept);
    if (!cuts.isEmpty()) text += QStringLiteral("；%1 处内容超过长度，已截断").arg(cuts.size());
    return text;
}

QString ImportTally::cutLines() const {
    constexpr int kListed = 20;
    if (cuts.isEmpty()) return QString();
    QString text = QStringLiteral("以下内容超过长度，已截断：\n") +
                   cuts.mid(0, kListed).join(QLatin1Char('\n'));
    if (cuts.size() > kListed) text += QStringLiteral("\n……共%1处").arg(cuts.size());
    return text;
}

QString ImportSession::normalisedName(const QString& name) {
    return name.simplified().toCaseFolded();
}

QStringList ImportSession::contactKeys(const QString& name, const QStringList& mobiles,
                                       const QStringList& emails) {
    QStringList keys;
    const QString n = normalisedName(name);
    if (n.isEmpty()) return keys;
    for (const QString& m : mobiles)
        if (const QString p = ImportSession::normalisedPhone(m); !p.isEmpty())
            keys << n + QStringLiteral("\x1Fm") + p;
    for (const QString& e : emails)
        if (const QString a = ImportSession::normalisedEmail(e); !a.isEmpty())
            keys << n + QStringLiteral("\x1F") + QStringLiteral("e") + a;
    return keys;
}

QString ImportSession::normalisedPhone(const QString& number) {
    QString digits;
    for (const QChar c : number) {
        // Full-width digits and plus sign read as their ASCII forms.
        const QChar n = (c.unicode() >= 0xFF10 && c.unicode() <= 0xFF19)
                            ? QChar(c.unicode() - 0xFF10 + '0')
                            : (c.unicode() == 0xFF0B ? QChar('+') : c);
        if (n.isDigit() || (n == QLatin1Char('+') && digits.isEmpty())) digits += n;
    }
    for (const char* prefix : {"+86", "0086"})
        if (digits.startsWith(QLatin1String(prefix))) return digits.mid(qsizetype(strlen(prefix)));
    if (digits.startsWith(QLatin1String("86")) && digits.size() == 13) return digits.mid(2);
    return digits;
}

QString ImportSession::normalisedEmail(const QString& address) {
    QString a = address;
    a.remove(QLatin1Char(' '));
    return a.trimmed().toCaseFolded();
}

struct ImportSession::Impl {
    QString table, key, source, file;
    OnMatch onMatch;
    Transaction transaction;
    std::optional<RecordWriter> writer;
    std::optional<AccountLinker> linker;
    ImportJournal journal;
    QString error;
    ImportTally tally;
    QHash<QString, qint64> byKey;         // contacts: name+mobile/e-mail; accounts: name
    QHash<QString, qint64> byExternalId;  // of this source
    QSet<qint64> existing;                // keys of the table's records
    QSet<qint64> added;
    QSet<qint64> withAccount;  // contacts linked to an account

    Impl(const QString& t, const QString& s, const QString& f, OnMatch m)
        : table(t), key(t.left(3) + QStringLiteral("_id")), source(s), file(f), onMatch(m) {}

    bool load();
    // Cuts the record's texts to what their columns hold, noting each cut.
    IncomingRecord fitted(const IncomingRecord& r);
    void fit(QHash<QString, QVariant>* columns, const QString& origin, const QString& name);
    QString captionOf(const QString& column);
    QHash<QString, QString> captions;  // column -> the list's caption, read when first needed
    qint64 match(const IncomingRecord& r) const;
    void remember(qint64 id, const QHash<QString, QVariant>& columns);
    bool bringUpToDate(qint64 id, const IncomingRecord& r, QString* error);
    bool linkAccount(qint64 contactId, const IncomingRecord& r, bool onlyWhenNone, QString* error);
};

bool ImportSession::Impl::load() {
    tarveldatabase db;
    const bool contacts = table == QStringLiteral("contacts");
    const QString select = contacts
                               ? QStringLiteral(
                                     "SELECT con_id, con_lastname, con_mobile, con_mobile2, "
                                     "con_mobile3, con_email, con_email2, con_email3 FROM contacts")
                           : table == QStringLiteral("accounts")
                               ? QStringLiteral("SELECT acc_id, acc_name FROM accounts")
                               : QStringLiteral("SELECT %1 FROM %2").arg(key, table);
    const auto rs = db.GetReadRs(select);
    if (!rs || rs->State() != adStateOpen) return (error = db.ErrMsg(), false);
    for (bool more = !rs->Eof(); more; more = rs->MoveNext() && !rs->Eof()) {
        const qint64 id = rs->value(0).toLongLong();
        existing.insert(id);
        if (contacts) {
            for (const QString& k : contactKeys(
                     rs->value(1).toString(),
                     {rs->value(2).toString(), rs->value(3).toString(), rs->value(4).toString()},
                     {rs->value(5).toString(), rs->value(6).toString(), rs->value(7).toString()}))
                byKey.insert(k, id);
        } else if (table == QStringLiteral("accounts")) {
            byKey.insert(normalisedName(rs->value(1).toString()), id);
        }
    }
    if (contacts) {
        const auto linked = db.GetReadRs(QStringLiteral("SELECT con_id FROM accounts_contacts"));
        if (!linked || linked->State() != adStateOpen) return (error = db.ErrMsg(), false);
        for (bool more = !linked->Eof(); more; more = linked->MoveNext() && !linked->Eof())
            withAccount.insert(linked->value(0).toLongLong());
    }
    const auto ids = db.GetReadRs(
        QStringLiteral("SELECT ext_id, ext_key FROM external_ids WHERE ext_source='%1' AND "
                       "ext_table='%2'")
            .arg(QString(source).replace(QLatin1Char('\''), QStringLiteral("''")), table));
    if (!ids || ids->State() != adStateOpen) return (error = db.ErrMsg(), false);
    for (bool more = !ids->Eof(); more; more = ids->MoveNext() && !ids->Eof()) {
        const qint64 id = ids->value(1).toLongLong();
        // A record the user deleted since is not found again: it comes back.
        if (existing.contains(id)) byExternalId.insert(ids->value(0).toString(), id);
    }
    return true;
}

QString ImportSession::Impl::captionOf(const QString& column) {
    if (captions.isEmpty())
        for (const QString& t : {table, QStringLiteral("accounts")})
            if (const RecordKind* k = recordKind(t))
                for (const ExportColumn& c : exportColumns(k->code, false))
                    if (!captions.contains(c.name)) captions.insert(c.name, c.caption.trimmed());
    const QString caption = captions.value(column);
    return caption.isEmpty() ? column : caption;
}

void ImportSession::Impl::fit(QHash<QString, QVariant>* columns, const QString& origin,
                              const QString& name) {
    // Read through a const view: the shared hash is copied only when a value is cut.
    const QHash<QString, QVariant>& read = *columns;
    QList<QString> cut;
    for (auto it = read.cbegin(); it != read.cend(); ++it)
        if (it.value().typeId() == QMetaType::QString &&
            columnlimit::exceeds(it.value().toString(), columnlimit::width(it.key())))
            cut << it.key();
    for (const QString& column : std::as_const(cut)) {
        const int width = columnlimit::width(column);
        columns->insert(column, columnlimit::cut(columns->value(column).toString(), width));
        tally.cuts << QStringLiteral("%1「%2」：%3超过%4个字，已截断")
                          .arg(origin, name, captionOf(column))
                          .arg(width);
    }
}

IncomingRecord ImportSession::Impl::fitted(const IncomingRecord& r) {
    // The record is named by the start of its name, shortened for the line.
    constexpr int kNameShown = 12;
    const RecordKind* k = recordKind(table);
    const QString whole =
        k ? r.columns.value(QLatin1String(k->nameColumn)).toString().trimmed() : QString();
    const QString name = columnlimit::exceeds(whole, kNameShown)
                             ? columnlimit::cut(whole, kNameShown) + QStringLiteral("…")
                             : whole;
    IncomingRecord out = r;
    fit(&out.columns, r.origin, name);
    fit(&out.accountColumns, r.origin, name);
    const int accountWidth = columnlimit::width(QStringLiteral("acc_name"));
    if (columnlimit::exceeds(out.organisation.trimmed(), accountWidth)) {
        out.organisation = columnlimit::cut(out.organisation.trimmed(), accountWidth);
        tally.cuts << QStringLiteral("%1「%2」：%3超过%4个字，已截断")
                          .arg(r.origin, name, captionOf(QStringLiteral("acc_name")))
                          .arg(accountWidth);
    }
    return out;
}

qint64 ImportSession::Impl::match(const IncomingRecord& r) const {
    if (!r.externalId.isEmpty())
        if (const qint64 id = byExternalId.value(r.externalId)) return id;
    if (table == QStringLiteral("contacts")) {
        for (const QString& k :
             contactKeys(r.columns.value(QStringLiteral("con_lastname")).toString(),
                         texts(r.columns, kMobiles), texts(r.columns, kEmails)))
            if (const qint64 id = byKey.value(k)) return id;
    } else if (table == QStringLiteral("accounts")) {
        const QString name = normalisedName(r.columns.value(QStringLiteral("acc_name")).toString());
        if (!name.isEmpty()) return byKey.value(name);
    }
    return 0;
}

void ImportSession::Impl::remember(qint64 id, const QHash<QString, QVariant>& columns) {
    if (table == QStringLiteral("contacts")) {
        for (const QString& k :
             contactKeys(columns.value(QStringLiteral("con_lastname")).toString(),
                         texts(columns, kMobiles), texts(columns, kEmails)))
            byKey.insert(k, id);
    } else if (table == QStringLiteral("accounts")) {
        const QString name = normalisedName(columns.value(QStringLiteral("acc_name")).toString());
        if (!name.isEmpty()) byKey.insert(name, id);
    }
}

bool ImportSession::Impl::linkAccount(qint64 contactId, const IncomingRecord& r, bool onlyWhenNone,
                                      QString* err) {
    if (!linker || r.organisation.trimmed().isEmpty()) return true;
    // A contact has one account; the one the user gave it stays.
    if (onlyWhenNone && withAccount.contains(contactId)) return true;
    qint64 accountId = 0;
    bool accountAdded = false;
    if (!linker->link(contactId, r.organisation, err, &accountId, &accountAdded, r.accountColumns))
        return false;
    withAccount.insert(contactId);
    if (accountAdded) journal.added(QStringLiteral("accounts"), accountId);
    journal.linked(QStringLiteral("accounts_contacts"), accountId, contactId);
    return true;
}

bool ImportSession::Impl::bringUpToDate(qint64 id, const IncomingRecord& r, QString* err) {
    tarveldatabase db;
    const auto rs =
        db.GetWriteRs(QStringLiteral("SELECT * FROM %1 WHERE %2=%3").arg(table, key).arg(id));
    if (!rs || rs->State() != adStateOpen || rs->Eof())
        return (*err = db.ErrMsg().isEmpty() ? QStringLiteral("找不到要更新的记录") : db.ErrMsg(),
                false);
    bool changed = false;
    for (auto it = r.columns.cbegin(); it != r.columns.cend(); ++it) {
        const int index = rs->fieldIndex(it.key());
        if (index < 0 || isEmptyValue(it.value())) continue;
        const QVariant old = rs->value(index);
        if (sameValue(it.key(), old, it.value())) continue;
        if (onMatch == OnMatch::FillEmpty && !isEmptyValue(old)) {
            ++tally.kept;
            continue;
        }
        if (!rs->setValue(index, it.value())) {
            *err = rs->ErrorDescription();
            rs->CancelUpdate();
            return false;
        }
        // What the table stores, so that taking the import back compares alike.
        journal.changed(table, id, rs->fieldName(index), old, rs->value(index));
        changed = true;
    }
    if (changed && !rs->Update()) {
        *err = rs->ErrorDescription();
        rs->CancelUpdate();
        return false;
    }
    bool linked = false;
    if (table == QStringLiteral("contacts")) {
        const int before = journal.size();
        if (!linkAccount(id, r, true, err)) return false;
        linked = journal.size() != before;
    }
    if (changed || linked)
        ++tally.updated;
    else
        ++tally.skipped;
    return true;
}

ImportSession::ImportSession(const QString& table, const QString& source, const QString& file,
                             OnMatch onMatch)
    : d(std::make_unique<Impl>(table, source, file, onMatch)) {
    if (!d->transaction.isActive()) {
        d->error = d->transaction.error();
        return;
    }
    if (!ImportJournal::ensureTables(&d->error) ||
        !d->journal.begin(source, QFileInfo(file).absoluteFilePath(), &d->error))
        return;
    d->writer.emplace(table);
    if (!d->writer->isOpen()) {
        d->error = d->writer->ErrMsg();
        return;
    }
    if (table == QStringLiteral("contacts")) d->linker.emplace();
    d->load();
}

ImportSession::~ImportSession() = default;

bool ImportSession::isOpen() const {
    return d->error.isEmpty();
}

QString ImportSession::ErrMsg() const {
    return d->error;
}

qint64 ImportSession::put(const IncomingRecord& incoming, QString* error) {
    if (!isOpen()) return (*error = d->error, 0);
    const IncomingRecord record = d->fitted(incoming);
    qint64 id = d->match(record);
    if (id) {
        if (!d->bringUpToDate(id, record, error)) return 0;
    } else {
        id = d->writer->add(record.columns, error);
        if (!id) return 0;
        d->journal.added(d->table, id);
        d->added.insert(id);
        d->existing.insert(id);
        if (d->table == QStringLiteral("contacts") && !d->linkAccount(id, record, false, error))
            return 0;
        ++d->tally.added;
    }
    d->remember(id, record.columns);
    if (!record.externalId.isEmpty() && d->byExternalId.value(record.externalId) != id) {
        if (!d->journal.externalId(d->source, record.externalId, d->table, id, error)) return 0;
        d->byExternalId.insert(record.externalId, id);
    }
    return id;
}

void ImportSession::noteAdded(const QString& table, qint64 key) {
    d->journal.added(table, key);
}

bool ImportSession::commit(QString* error) {
    if (!isOpen()) return (*error = d->error, false);
    if (d->linker) d->tally.accountsAdded = d->linker->accountsAdded();
    if (!d->journal.finish(d->tally.summary(), error)) return false;
    if (!d->transaction.commit()) return (*error = d->transaction.error(), false);
    // An import that changed nothing left the journal of the one before it.
    if (d->journal.size() > 0)
        LastAction::instance().noteImport(d->journal.id(), d->tally.summary());
    return true;
}

const ImportTally& ImportSession::tally() const {
    return d->tally;
}

}  // namespace tarvel::exchange
