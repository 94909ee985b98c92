#pragma once

#include <QString>

#include "store/datacontrol.h"
#include "store/form.h"

namespace tarvel {

// The record classes' panel operations, chosen by relation kind, for the
// related panels: each hands the record object the panel form and the
// kind's grid, and returns false with the record's ErrMsg in `error`.
namespace relatedrecords {

// The kind's SetQuery: the grid lists the records linked to `ownerId`.
bool setQuery(qint16 kind, Form& form, DataControl& grid, int ownerId, QString& error);
// Show…(id): the record in the kind's quick-edit section; for a task, id 0
// begins a new one.
bool show(qint16 kind, Form& form, DataControl& grid, int id, QString& error);

// What the user answered to the account questions of a contact's save.
struct AccountChoice {
    bool rename = false;      // the same account takes the typed name
    bool newAccount = false;  // a new account is made and the contact moves to it
    int chosen = 0;           // an existing account picked from the search list
};

// Saves the section in one transaction: first the owner's stamp, then
// Add…+AddToList for a new record (id 0) or Init…+Change…+UpdateIndex.
// `refused` tells a failure of the data file from a section that cannot
// be read (an amount that is no number, say).
bool save(qint16 kind, Form& form, DataControl& grid, qint16 ownerKind, int ownerId, int id,
          const AccountChoice& account, QString& error, bool& refused);

// The grid's rows again, ordered by `field` (instead of any order it had).
bool sort(DataControl& grid, const QString& field, bool ascending, QString& error);

// Removes the link of `otherId` (of `kind`) to the owner; the record stays.
bool unlink(qint16 ownerKind, int ownerId, qint16 kind, int otherId, QString& error);
// Links the records in one transaction, each from the side whose class
// writes that link: a contact joins an account from the contact's side.
bool link(qint16 ownerKind, int ownerId, qint16 kind, const QList<int>& otherIds, QString& error);

}  // namespace relatedrecords
}  // namespace tarvel
