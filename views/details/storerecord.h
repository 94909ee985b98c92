#pragma once

#include <QString>

#include "browse/shownrow.h"
#include "records/recordbase.h"
#include "store/transaction.h"
#include "views/details/detaillayout.h"

namespace tarvel {

// Reads record `id` into `record` (0: an empty new one); false with the
// record's error text.
template <typename Record>
bool readRecord(Record& record, int id, QString* error) {
    record.setID(id);
    if (id == 0 || record.GetById()) return true;
    *error = record.ErrMsg();
    return false;
}

// How a detail page stores its record, in one transaction. First, when
// `shown` holds the record as the page showed it, the stored row is compared
// with it: changed or deleted since, nothing is written and shown->found()
// says which, so the page can ask. Record *id is then read, so that whatever
// the page does not show is written back as stored; `read` puts the page's
// fields into it; then Add (a new record, *id 0) or Update and `also` (the
// writes that belong with it). *id receives the new key; a failure leaves
// every text that says why in *error.
template <typename Record, typename Read, typename Also>
bool storeRecord(int* id, QString* error, lists::ShownRow* shown, Read read, Also also) {
    Record record;
    Transaction transaction;
    if (!transaction.isActive()) {
        *error = transaction.error();
        return false;
    }
    if (*id != 0 && shown && shown->id() == *id &&
        (!shown->check(error) || shown->found() != lists::ShownRow::Since::Unchanged))
        return false;
    if (!readRecord(record, *id, error)) return false;
    read(record);
    QString alsoError;
    const bool ok = (*id == 0 ? record.Add() : record.Update()) && also(record, &alsoError) &&
                    transaction.commit();
    if (!ok) {
        *error = errorText({record.ErrMsg(), alsoError, transaction.error()});
        return false;
    }
    *id = record.ID();
    return true;
}

template <typename Record, typename Read>
bool storeRecord(int* id, QString* error, lists::ShownRow* shown, Read read) {
    return storeRecord<Record>(id, error, shown, read, [](Record&, QString*) { return true; });
}

// The dates a save stamps: a new record was made today; each was touched now.
template <typename Record>
void stampDates(Record& record, bool isNew) {
    if (isNew) record.setCreateDate(recordvalue::today());
    record.setRCDate(recordvalue::now());
}

}  // namespace tarvel
