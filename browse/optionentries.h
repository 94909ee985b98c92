#pragma once

#include <QString>
#include <QVariant>

#include "store/datacontrol.h"

namespace tarvel {

// The entries of one option list as the option editor edits them: read in
// text order into a writable recordset whose current entry is added to,
// renamed or deleted. Each operation reports: false with ErrMsg.
class OptionEntries {
public:
    // Reads the entries of list `name` of record kind `object`.
    bool open(const QString& object, const QString& name);
    DataControl& dataControl() { return adodc_; }
    RecordsetPtr recordset() const { return adodc_.Recordset; }
    bool isOpen() const;
    // Whether an entry is current (the recordset is not before the first or
    // after the last).
    bool hasCurrent() const;
    // The current entry's text; null for a null entry.
    QVariant currentText() const;
    // Stores `text` as a new entry, or as the current entry's text; a refused
    // write leaves the recordset as it was.
    bool store(const QString& text, bool asNew);
    // Deletes the current entry; the next one becomes current, or the last
    // when it was the last.
    bool removeCurrent();

    QString ErrMsg() const { return errMsg_; }

private:
    bool fail(const QString& error);

    DataControl adodc_;
    QString object_, name_;
    QString errMsg_;
};

}  // namespace tarvel
