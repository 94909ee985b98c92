#pragma once

#include <array>
#include <variant>
#include <vector>

#include "records/columnlimit.h"
#include "records/currency.h"
#include "records/recordbase.h"
#include "store/jetdate.h"

namespace tarvel {

// The operations that write a record's columns, each in its own order.
enum class Write { Add, Update, ListAdd, ListUpdate };

// How a date property is stored: as it is, as the day alone, or as the time
// of day on the time base day (the task's date and time columns).
enum class DateForm { AsIs, Day, TimeOfDay };

// One column of a record class: where its value lives, how it converts, the
// control that shows it on panels and detail pages, how far the quick-edit
// readers cut it, and its place in each operation that writes it.
template <typename Record>
struct RecordColumn {
    using Member = std::variant<QString Record::*, QDateTime Record::*, qint16 Record::*,
                                int Record::*, Currency Record::*>;
    const char* column;    // null: a property the table does not hold
    const char* property;  // the public property's name
    Member member;
    const char* control = nullptr;
    int cut = 0;                   // characters kept from the control; 0: all
    std::array<qint8, 4> order{};  // 1-based place per Write; 0: not written
    DateForm dateForm = DateForm::AsIs;

    int orderIn(Write op) const { return order[size_t(op)]; }
    // The characters a text read from the control keeps: what the column
    // holds, else (a memo, a property of no column) the described cut.
    int widthLimit() const {
        const int width = column ? columnlimit::width(QLatin1String(column)) : 0;
        return width > 0 ? width : cut;
    }

    // The property as a variant: text, date-time, whole number or amount.
    QVariant get(const Record& r) const {
        return std::visit(
            [&](auto m) -> QVariant {
                using T = std::remove_cvref_t<decltype(r.*m)>;
                if constexpr (std::is_same_v<T, Currency>)
                    return (r.*m).toVariant();
                else if constexpr (std::is_same_v<T, qint16>)
                    return int(r.*m);
                else
                    return QVariant(r.*m);
            },
            member);
    }
    // Sets the property from a field or control value, by the null rule of
    // the loaders (a null text reads as "").
    void set(Record& r, const QVariant& v) const {
        std::visit(
            [&](auto m) {
                using T = std::remove_cvref_t<decltype(r.*m)>;
                if constexpr (std::is_same_v<T, QString>) r.*m = recordvalue::text(v);
                if constexpr (std::is_same_v<T, QDateTime>) r.*m = recordvalue::dateTime(v);
                if constexpr (std::is_same_v<T, qint16>) r.*m = recordvalue::int16(v);
                if constexpr (std::is_same_v<T, int>) r.*m = recordvalue::int32(v);
                if constexpr (std::is_same_v<T, Currency>) r.*m = Currency::fromVariant(v);
            },
            member);
    }
    // The value a write stores: an invalid date as null, dates in their form.
    QVariant field(const Record& r) const {
        const QVariant v = get(r);
        if (v.typeId() != QMetaType::QDateTime) return v;
        const QDateTime d = v.toDateTime();
        if (!d.isValid()) return QVariant();
        if (dateForm == DateForm::Day) return jetdate::naive(d.date());
        if (dateForm == DateForm::TimeOfDay)
            return jetdate::naive(jetdate::timeBaseDate(), d.time());
        return d;
    }
};

// A record class described once: its table, key and columns. The row
// operations, the quick-edit readers and the detail pages all work from it.
template <typename Record>
struct RecordDescription {
    const char* table;                  // "contacts"
    const char* key;                    // "con_id"
    const char* loadFrom;               // what GetById reads: the table or a stored query
    const char* emptyKey;               // the key Add asks for to get an empty recordset
    const char* formId;                 // the form property that receives the key ("g_ConID")
    const char* nameControl = nullptr;  // the panel's name box, written with nameFlag raised
    const char* nameFlag = nullptr;
    std::vector<RecordColumn<Record>> columns;

    // "SELECT * FROM <from> WHERE <key>=<id>"
    QString select(const char* from, const QString& id) const {
        return QStringLiteral("SELECT * FROM ") + QLatin1String(from) + QStringLiteral(" WHERE ") +
               QLatin1String(key) + QLatin1Char('=') + id;
    }
    const RecordColumn<Record>* find(const char* RecordColumn<Record>::*field,
                                     const QString& name) const {
        for (const auto& c : columns)
            if (c.*field && name.compare(QLatin1String(c.*field), Qt::CaseInsensitive) == 0)
                return &c;
        return nullptr;
    }
    const RecordColumn<Record>* byColumn(const QString& name) const {
        return find(&RecordColumn<Record>::column, name);
    }
    const RecordColumn<Record>* byProperty(const QString& name) const {
        return find(&RecordColumn<Record>::property, name);
    }
    const RecordColumn<Record>* byControl(const QString& name) const {
        return find(&RecordColumn<Record>::control, name);
    }
    const RecordColumn<Record>& keyColumn() const { return *byColumn(QLatin1String(key)); }
    // The columns `op` writes, in its order.
    std::vector<const RecordColumn<Record>*> written(Write op) const {
        std::vector<const RecordColumn<Record>*> out;
        for (int place = 1;; ++place) {
            const size_t before = out.size();
            for (const auto& c : columns)
                if (c.orderIn(op) == place) out.push_back(&c);
            if (out.size() == before) return out;
        }
    }
    // Fills the properties from the current row of any recordset over the table.
    void load(Record& record, const Recordset& rs) const {
        static const ColumnSlots names = [this] {
            QStringList list;
            for (const auto& c : columns)
                if (c.column) list << QLatin1String(c.column);
            return ColumnSlots(list);
        }();
        const QVector<QVariant> values = names.read(rs);
        int i = 0;
        for (const auto& c : columns)
            if (c.column) c.set(record, values[i++]);
    }
};

template <typename Record>
bool RecordBase::addRow(Record& record, const RecordDescription<Record>& d) {
    RecordsetPtr rs = openWritable(d.select(d.table, QLatin1String(d.emptyKey)));
    if (!rs || !check(*rs, rs->AddNew())) return false;
    for (const auto* c : d.written(Write::Add))
        if (!setField(*rs, c->column, c->field(record))) return false;
    if (!storeNewRow(*rs)) return false;
    d.keyColumn().set(record, rs->value(QLatin1String(d.key)));
    return true;
}

template <typename Record>
bool RecordBase::updateRow(const Record& record, const RecordDescription<Record>& d) {
    const auto* key = &d.keyColumn();
    RecordsetPtr rs = openWritable(d.select(d.table, key->get(record).toString()));
    if (!rs) return false;
    for (const auto* c : d.written(Write::Update))
        if (!setField(*rs, c->column, c->field(record))) return false;
    return check(*rs, rs->Update());
}

template <typename Record>
bool RecordBase::getRow(Record& record, const RecordDescription<Record>& d) {
    const auto* key = &d.keyColumn();
    RecordsetPtr rs = read(d.select(d.loadFrom, key->get(record).toString()));
    if (!rs) return false;
    if (!rs->Eof()) record.LoadRow(*rs);
    return true;
}

template <typename Record>
bool RecordBase::addListRow(Record& record, const RecordDescription<Record>& d) {
    setPanelFlags();
    if (!needForm() || !needGrid()) return false;
    Recordset& rs = gridRows();
    if (!check(rs, rs.AddNew())) return false;
    for (const auto* c : d.written(Write::ListAdd))
        if (!setField(rs, c->column, c->field(record))) return false;
    if (!storeNewRow(rs)) return false;
    const auto* key = &d.keyColumn();
    key->set(record, rs.value(QLatin1String(d.key)));
    setFormProperty(d.formId, key->get(record));
    return true;
}

template <typename Record>
bool RecordBase::updateListRow(Record& record, const RecordDescription<Record>& d, int id) {
    if (!gridRowHolds(d.key, id)) return record.Update();
    Recordset& rs = gridRows();
    for (const auto* c : d.written(Write::ListUpdate))
        if (!setField(rs, c->column, c->field(record))) return false;
    return check(rs, rs.Update());
}

template <typename Record>
bool RecordBase::readControls(Record& record, const RecordDescription<Record>& d) const {
    if (!needForm()) return false;
    for (const auto& c : d.columns) {
        // Dates, amounts and numbers have readers of their own.
        if (!c.control || !std::holds_alternative<QString Record::*>(c.member)) continue;
        const int width = c.widthLimit();
        c.set(record, columnlimit::cut(formText(c.control), width));
    }
    return true;
}

template <typename Record>
void RecordBase::showControls(const Record& record, const RecordDescription<Record>& d) const {
    for (const auto& c : d.columns) {
        if (!c.control || !std::holds_alternative<QString Record::*>(c.member)) continue;
        if (d.nameControl && qstrcmp(c.control, d.nameControl) == 0)
            setNameBox(c.control, d.nameFlag, c.get(record).toString());
        else
            setFormValue(c.control, c.get(record));
    }
}

// One category count of a record class: the operation's name and the
// statement's label and source ("SELECT first(<label>) ... From <source>");
// no label: one count per defined tag.
struct CategoryCount {
    const char* operation;
    const char* label;
    const char* source;
};

// The row and link operations of a record class, the same for every class
// over its description() and links(); a class declares its own where it
// differs. Each returns its success flag and reports a failure in ErrMsg.
template <typename Self>
class RecordRow : public RecordBase {
public:
    // Inserts a new row from the properties in Add's order; ID receives the key.
    bool Add() { return report("Add", addRow(self(), Self::description())); }
    // Rewrites row ID from the properties in Update's order (no check that it exists).
    bool Update() { return report("Update", updateRow(self(), Self::description())); }
    // Removes the row only; DeleteRelation removes its links.
    bool Delete() {
        const auto& d = Self::description();
        return report("Delete", execute(QStringLiteral("DELETE * FROM %1 WHERE %2=%3")
                                            .arg(QLatin1String(d.table), QLatin1String(d.key),
                                                 QString::number(self().ID()))));
    }
    bool DeleteRelation() {
        return report("DeleteRelation", deleteRelation(Self::links(), self().ID()));
    }
    // Loads row ID; a missing row changes nothing and still succeeds.
    bool GetById() { return report("GetById", getRow(self(), Self::description())); }
    // Fills the properties from the current row of any recordset over the table.
    void LoadRow(const Recordset& rs) { Self::description().load(self(), rs); }
    bool AddRelative(qint16 relationKind, int otherId) {
        return AddRelative(relationKind, otherId, QString());
    }
    bool DeleteRelative(qint16 relationKind, int otherId) {
        return report("DeleteRelative",
                      deleteRelative(Self::links(), self().ID(), relationKind, otherId));
    }
    // Stores the record as a new row of the panel's grid, links it to the
    // panel's record and puts its key into the form.
    bool AddToList() {
        return report("AddToList",
                      addListRow(self(), Self::description()) && self().linkToPanelRecord());
    }
    // Writes the edited record back (the grid's row, else the table), links
    // it to the panel's record again and positions the grid on it.
    bool UpdateIndex(int id) {
        return report("UpdateIndex",
                      updateListRow(self(), Self::description(), id) &&
                          self().linkToPanelRecord() &&
                          showAgain([&](int other) { return self().SetQuery(other); },
                                    Self::description().key, id));
    }

protected:
    // The count of Self::counts() named `operation`.
    bool count(const char* operation) {
        for (const CategoryCount& c : Self::counts())
            if (qstrcmp(c.operation, operation) == 0)
                return c.label ? countBy(operation, c.label, c.source) : countTags(operation);
        return report(operation, fail(QStringLiteral("没有这种统计")));
    }
    // A category count "SELECT first(<label>) AS xxx_option, count(<table>.<key>)
    // AS option_count  From <rest>", xxx being the key's prefix ("con").
    bool countBy(const char* operation, const char* label, const char* rest) {
        const auto& d = Self::description();
        const QString option = QLatin1String(d.key).left(3) + QStringLiteral("_option");
        return report(operation,
                      groupedCounts(QStringLiteral("SELECT first(%1) AS %2, count(%3.%4) AS "
                                                   "option_count  From %5")
                                        .arg(QLatin1String(label), option, QLatin1String(d.table),
                                             QLatin1String(d.key), QLatin1String(rest)),
                                    option.toLatin1().constData()));
    }
    // One count per defined tag, by substring of the xxx_tag column.
    bool countTags(const char* operation) {
        const auto& d = Self::description();
        const QString prefix = QLatin1String(d.key).left(3);
        return report(operation,
                      tagCounts(prefix.toLatin1().constData(),
                                QStringLiteral("SELECT count(%1.%2) AS option_count FROM %1 WHERE  "
                                               "%3_tag LIKE ")
                                    .arg(QLatin1String(d.table), QLatin1String(d.key), prefix)));
    }
    // Links to the record of the panel the form is, unless it is of this kind.
    bool linkToPanelRecord() {
        const qint16 panelKind = panel::kindOf(panelName());
        return panelKind == 0 || panelKind == Self::links().own ||
               AddRelative(panelKind, panelRecordId(), QString());
    }
    // Loads record `id` for a panel when `load` is set.
    bool loadForPanel(const char* operation, int id, bool load) {
        if (!load) return true;
        self().setID(id);
        return report(operation, GetById());
    }
    // With the role or relation text, for the classes whose links carry one.
    bool AddRelative(qint16 relationKind, int otherId, const QString& text) {
        return report("AddRelative",
                      addRelative(Self::links(), self().ID(), relationKind, otherId, text));
    }
    Self& self() { return static_cast<Self&>(*this); }
};

}  // namespace tarvel
