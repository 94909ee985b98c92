#pragma once

#include <QList>
#include <QString>
#include <QStringList>
#include <QUrl>

namespace tarvel::lists {

struct MailRecipient {
    qint64 id = 0;
    QString name;
    QString address;  // the first of the contact's three e-mail fields that is filled
};

// The contacts of a mailing, read and stamped through the data file; every
// operation reports failure (false, ErrMsg).
class MailStore {
public:
    // The contacts of `condition` (a WHERE clause over que_contacts_accounts),
    // those with an address and those without, by name.
    bool load(const QString& condition, QList<MailRecipient>* withAddress,
              QList<MailRecipient>* without);
    // Marks each contact as sent to.
    bool stampSent(const QList<qint64>& ids);
    // The signature of setting ("mail", "signature"); empty when there is none.
    QString signature();
    QString ErrMsg() const { return errMsg_; }

private:
    QString errMsg_;
};

// mailto: links that carry the addresses as Bcc, subject and body, split into
// several messages so no link is longer than `maxLength` characters (mail
// programs cut longer command lines).
QList<QUrl> mailtoLinks(const QStringList& addresses, const QString& subject, const QString& body,
                        int maxLength = 2000);

}  // namespace tarvel::lists
