#pragma once

#include <QList>
#include <QString>
#include <QStringList>

#include "exchange/progress.h"

namespace tarvel::exchange {

// Records that look like the same person or organisation, with why.
struct DuplicateGroup {
    QList<qint64> keys;   // ascending
    QStringList reasons;  // "相同手机：13800138000", one per shared value
};

// Contacts (kind::Contact) with the same mobile in any slot, the same e-mail in
// any slot, or the same whole name with the same account; accounts
// (kind::Account) with the same name once company words, punctuation, blanks
// and case are set aside. Groups that share a record are one group. Ordered
// by their first key.
Outcome findDuplicates(qint16 kindCode, QList<DuplicateGroup>* groups);

// An account name as duplicates are compared: "华为技术（中国）有限公司" and
// "华为技术有限公司" both give "华为技术"; empty when nothing else is left.
QString companyNameCore(const QString& name);

}  // namespace tarvel::exchange
