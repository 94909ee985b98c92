#include "exchange/vcard.h"

#include <QFile>

#include "exchange/recordwriter.h"
#include "exchange/textfile.h"
#include "exchange/vcardsyntax.h"
#include "store/tarveldatabase.h"

namespace tarvel::exchange {

namespace {

// At most `shown` items, then how many more.
QString listed(const QStringList& items, int shown = 8) {
    QString out = items.mid(0, shown).join(QStringLiteral("；"));
    if (items.size() > shown) out += QStringLiteral(" 等%1处").arg(items.size());
    return out;
}

// The UIDs of the cards contacts were imported from, by contact key. A data
// file that never had an import has none.
QHash<qint64, QString> importedUids() {
    QHash<qint64, QString> uids;
    tarveldatabase db;
    const auto rs = db.GetReadRs(
        QStringLiteral("SELECT ext_key, ext_id FROM external_ids WHERE ext_source='vcard' AND "
                       "ext_table='contacts'"));
    for (bool more = rs && rs->State() == adStateOpen && !rs->Eof(); more;
         more = rs->MoveNext() && !rs->Eof())
        uids.insert(rs->value(0).toLongLong(), rs->value(1).toString());
    return uids;
}

}  // namespace

QString VCardImport::summary() const {
    QStringList lines = {tally.summary()};
    if (!tally.cuts.isEmpty()) lines << tally.cutLines();
    if (!reading.skipped.isEmpty())
        lines << QStringLiteral("损坏、没有导入的名片：") + listed(reading.skipped);
    if (!reading.unreadable.isEmpty())
        lines << QStringLiteral("有无法识别的字节（显示为\uFFFD）：") + listed(reading.unreadable);
    if (!reading.moved.isEmpty()) lines << QStringLiteral("放进备注的：") + listed(reading.moved);
    return lines.join(QLatin1Char('\n'));
}

Outcome exportVCards(const QString& path, VCardVersion version, int* written,
                     const Progress& progress) {
    tarveldatabase db;
    const auto rs =
        db.GetReadRs(QStringLiteral("SELECT * FROM que_contacts_accounts WHERE con_check= true"));
    if (!rs || rs->State() != adStateOpen)
        return Outcome::failure(QStringLiteral("导出没有完成：") + db.ErrMsg());
    const QHash<qint64, QString> uids = importedUids();
    QList<ContactForCard> contacts;
    for (bool more = !rs->Eof(); more; more = rs->MoveNext() && !rs->Eof()) {
        ContactForCard c;
        for (int i = 0; i < rs->FieldCount(); ++i) {
            const QString name = rs->fieldName(i);
            if (name.startsWith(QStringLiteral("con_")))
                c.columns.insert(name, rs->value(i));
            else if (name == QStringLiteral("acc_address") ||
                     name == QStringLiteral("acc_postcode"))
                c.accountColumns.insert(name, rs->value(i));
        }
        c.organisation = rs->value(QStringLiteral("acc_name")).toString();
        c.uid = uids.value(rs->value(QStringLiteral("con_id")).toLongLong());
        contacts << c;
        if (progress && !progress(int(contacts.size() * 90 / qMax(1, rs->RecordCount()))))
            return Outcome::cancel();
    }
    QString error;
    if (!writeTextFile(path, writeVCards(contacts, version), false, &error))
        return Outcome::failure(QStringLiteral("导出没有完成：") + error);
    if (written) *written = int(contacts.size());
    if (progress) progress(100);
    return Outcome{true, false, path, {}};
}

Outcome importVCards(const QString& path, VCardImport* result, const Progress& progress) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return Outcome::failure(
            QStringLiteral("无法读取文件 %1：%2").arg(path, file.errorString()));
    VCardText text = readVCardText(file.readAll());
    file.close();
    VCardReading reading;
    reading.skipped = text.broken;
    if (text.cards.isEmpty()) {
        QString why = QStringLiteral("%1 中没有可以导入的联系人名片").arg(path);
        if (!reading.skipped.isEmpty()) why += QStringLiteral("：") + listed(reading.skipped);
        return Outcome::failure(why);
    }
    ImportSession session(QStringLiteral("contacts"), QStringLiteral("vcard"), path);
    if (!session.isOpen()) return Outcome::failure(importFailed() + session.ErrMsg());
    QString error;
    const qsizetype total = text.cards.size();
    for (qsizetype i = 0; i < total; ++i) {
        // One contact at a time: a large file's records are never all held at once.
        VCardContact c = contactOfCard(text.cards[i]);
        tellAbout(text.cards[i], &c, &reading);
        text.cards[i].properties.clear();
        c.record.origin = QStringLiteral("第%1张名片").arg(text.cards[i].number);
        if (!session.put(c.record, &error))
            return Outcome::failure(importFailed() + QStringLiteral("第%1张名片「%2」：%3")
                                                         .arg(text.cards[i].number)
                                                         .arg(c.name(), error));
        if (progress && !progress(int((i + 1) * 95 / total))) return Outcome::cancel();
    }
    if (!session.commit(&error)) return Outcome::failure(importFailed() + error);
    if (progress) progress(100);
    if (result) *result = VCardImport{session.tally(), reading};
    return Outcome{true, false, path, {}};
}

}  // namespace tarvel::exchange
