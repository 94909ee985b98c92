#pragma once

#include <QHash>
#include <QString>
#include <QVariant>

namespace tarvel::lists {

// A record's stored row as a page showed it. Before a save overwrites the
// record, the page compares it with what is stored now: tarvel-io, another
// panel or another machine on a shared folder may have changed or deleted
// it since.
class ShownRow {
public:
    enum class Since { Unchanged, Changed, Deleted };

    // Remembers record `id` of kind `code` (kind::Contact, ...) as stored
    // now; 0 (a new record) remembers nothing. False with the reason when it
    // cannot be read.
    bool remember(qint16 code, qint64 id, QString* error = nullptr);
    void forget();
    // Takes the record as stored now for the one shown (the user chose to
    // overwrite what changed).
    bool rememberAgain() { return remember(code_, id_); }
    qint64 id() const { return id_; }

    // What became of the record since it was remembered, read inside the
    // save's transaction; false with the reason when it cannot be read. The
    // answer stays in found() until the next check.
    bool check(QString* error);
    Since found() const { return found_; }
    void clearFound() { found_ = Since::Unchanged; }

    // The questions a page asks when the record changed or went.
    static QString changedQuestion();
    static QString deletedQuestion(const QString& noun);

private:
    bool read(QHash<QString, QVariant>* values, bool* exists, QString* error) const;

    qint16 code_ = 0;
    qint64 id_ = 0;
    QHash<QString, QVariant> values_;
    Since found_ = Since::Unchanged;
};

}  // namespace tarvel::lists
