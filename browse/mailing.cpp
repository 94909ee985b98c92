#include "browse/mailing.h"

#include "custom/softwaresetting.h"
#include "store/tarveldatabase.h"
#include "store/transaction.h"

namespace tarvel::lists {

bool MailStore::load(const QString& condition, QList<MailRecipient>* withAddress,
                     QList<MailRecipient>* without) {
    tarveldatabase db;
    RecordsetPtr rs = db.GetReadRs(
        QStringLiteral("SELECT con_id, con_lastname, con_email, con_email2, con_email3 FROM "
                       "que_contacts_accounts ") +
        condition + QStringLiteral(" ORDER BY con_lastname"));
    if (!rs || rs->State() != adStateOpen || !db.ErrMsg().isEmpty()) {
        errMsg_ = db.ErrMsg();
        return false;
    }
    for (; !rs->Eof(); rs->MoveNext()) {
        MailRecipient r{rs->value(0).toLongLong(), rs->value(1).toString().trimmed(), QString()};
        for (int c = 2; c <= 4 && r.address.isEmpty(); ++c)
            r.address = rs->value(c).toString().trimmed();
        (r.address.isEmpty() ? without : withAddress)->append(r);
    }
    return true;
}

bool MailStore::stampSent(const QList<qint64>& ids) {
    // All recipients are stamped, or none.
    Transaction tx;
    for (qint64 id : ids) {
        tarveldatabase db;
        db.Execute(QStringLiteral("UPDATE contacts SET con_sendmail= 1 WHERE con_id= ") +
                   QString::number(id));
        if (!db.ErrMsg().isEmpty()) {
            errMsg_ = db.ErrMsg();
            return false;
        }
    }
    if (tx.commit()) return true;
    errMsg_ = tx.error();
    return false;
}

QString MailStore::signature() {
    SoftwareSetting setting;
    if (!setting.GetValue(QStringLiteral("mail"), QStringLiteral("signature"))) {
        errMsg_ = setting.ErrMsg();
        return QString();
    }
    return setting.Set_Value().trimmed();
}

QList<QUrl> mailtoLinks(const QStringList& addresses, const QString& subject, const QString& body,
                        int maxLength) {
    const auto encode = [](const QString& text) {
        return QString::fromLatin1(QUrl::toPercentEncoding(text));
    };
    const QString tail = QStringLiteral("&subject=") + encode(subject) + QStringLiteral("&body=") +
                         encode(QString(body).replace(QLatin1Char('\n'), QStringLiteral("\r\n")));
    QList<QUrl> links;
    QString bcc;
    const auto flush = [&] {
        if (!bcc.isEmpty())
            links << QUrl(QStringLiteral("mailto:?bcc=") + bcc + tail, QUrl::StrictMode);
        bcc.clear();
    };
    for (const QString& address : addresses) {
        const QString part = encode(address);
        // Bcc lists only; the body is repeated in each message.
        if (!bcc.isEmpty() && 12 + bcc.size() + 3 + part.size() + tail.size() > maxLength) flush();
        bcc += (bcc.isEmpty() ? QString() : QStringLiteral("%2C")) + part;
    }
    flush();
    return links;
}

}  // namespace tarvel::lists
