#include "records/recordbase.h"

#include "store/clock.h"
#include "store/connectionstring.h"
#include "store/jetdate.h"
#include "store/tarveldatabase.h"
#include "store/trace.h"

namespace tarvel {

namespace panel {
qint16 kindOf(const QString& formName) {
    if (formName == QLatin1String(Opportunity)) return kind::Opportunity;
    if (formName == QLatin1String(Account)) return kind::Account;
    if (formName == QLatin1String(Contact)) return kind::Contact;
    if (formName == QLatin1String(Task)) return kind::Task;
    if (formName == QLatin1String(Document)) return kind::Document;
    return 0;
}
}  // namespace panel

QString stampStatement(qint16 recordKind, int id) {
    // The doubled blanks belong to the statements as the program has always issued them.
    const char* prefix = nullptr;
    switch (recordKind) {
        case kind::Contact:
            prefix = "UPDATE contacts SET con_recent_contact_date=now WHERE con_id=";
            break;
        case kind::Account:
            prefix = "UPDATE accounts SET acc_recent_contact_date=now  WHERE acc_id= ";
            break;
        case kind::Opportunity:
            prefix = "UPDATE opportunities SET opp_recent_contact_date=now  WHERE opp_id=";
            break;
        case kind::Task:
            prefix = "UPDATE tasks SET tas_recent_contact_date=now WHERE tas_id=";
            break;
        case kind::Document:
            prefix = "UPDATE documents SET doc_recentedit_date=now WHERE doc_id=";
            break;
        default:
            return QString();
    }
    return QLatin1String(prefix) + QString::number(id);
}

namespace recordvalue {

QString text(const QVariant& value) {
    if (value.isNull()) return QString();
    if (value.typeId() == QMetaType::QDateTime) return displayDate(value.toDateTime());
    return value.toString();
}

QDateTime dateTime(const QVariant& value) {
    if (value.isNull()) return QDateTime();
    if (const auto d = jetdate::fromVariant(value)) return *d;
    return QDateTime();
}

QVariant field(const QDateTime& value) {
    return value.isValid() ? QVariant(value) : QVariant();
}

qint16 int16(const QVariant& value) {
    return value.isNull() ? qint16(0) : qint16(value.toInt());
}

int int32(const QVariant& value) {
    return value.isNull() ? 0 : value.toInt();
}

QString leftChars(const QString& text, int count) {
    qsizetype end = 0;
    for (int n = 0; n < count && end < text.size(); ++n) {
        const bool pair =
            text[end].isHighSurrogate() && end + 1 < text.size() && text[end + 1].isLowSurrogate();
        end += pair ? 2 : 1;
    }
    return text.left(end);
}

QString displayDate(const QDateTime& value) {
    if (!value.isValid()) return QString();
    const QString time = value.time().toString(QStringLiteral("H:mm:ss"));
    if (value.date() == jetdate::timeBaseDate()) return time;
    const QString date = value.date().toString(QStringLiteral("yyyy-M-d"));
    return value.time() == QTime(0, 0) ? date : date + QLatin1Char(' ') + time;
}

QDateTime today() {
    return jetdate::naive(Clock::today());
}

QDateTime now() {
    return Clock::now();
}

}  // namespace recordvalue

ColumnSlots::ColumnSlots(const QStringList& columns) : count_(int(columns.size())) {
    for (int i = 0; i < count_; ++i) index_.insert(columns[i], i);
}

namespace {
bool isWordChar(QChar c) {
    return c.isLetterOrNumber() || c == QLatin1Char('_');
}

// Equal but for their number literals: digits that do not continue a name
// ("con_id=12" against "con_id=7", never "con_fax2" against "con_fax3").
bool sameShape(const QString& a, const QString& b) {
    qsizetype i = 0, j = 0;
    auto skipNumber = [](const QString& s, qsizetype& k) {
        if (k < s.size() && s[k].isDigit() && (k == 0 || !isWordChar(s[k - 1])))
            while (k < s.size() && s[k].isDigit()) ++k;
    };
    while (true) {
        skipNumber(a, i);
        skipNumber(b, j);
        if (i == a.size() || j == b.size()) return i == a.size() && j == b.size();
        if (a[i] != b[j]) return false;
        ++i;
        ++j;
    }
}
}  // namespace

QVector<QVariant> ColumnSlots::read(const Recordset& rs) const {
    const int fields = rs.FieldCount();
    const QString source = rs.Source();
    bool same = layout_.size() == fields && !source.isEmpty() && sameShape(source, source_);
    if (!same) {
        same = layout_.size() == fields;
        for (int i = 0; same && i < fields; ++i) same = layout_[i] == rs.fieldName(i);
        source_ = source;
    }
    if (!same) {
        layout_.clear();
        target_.fill(-1, fields);
        QVector<bool> taken(count_, false);
        for (int i = 0; i < fields; ++i) {
            const QString name = rs.fieldName(i);
            layout_ << name;
            auto it = index_.constFind(name);
            if (it == index_.constEnd()) {
                const qsizetype dot = name.lastIndexOf(QLatin1Char('.'));
                it = index_.constFind(dot < 0 ? name.toLower() : name.mid(dot + 1).toLower());
            }
            // The first column of a name wins, as in a look-up by name.
            if (it == index_.constEnd() || taken[*it]) continue;
            taken[*it] = true;
            target_[i] = *it;
        }
    }
    QVector<QVariant> values(count_);
    for (int i = 0; i < fields; ++i)
        if (target_[i] >= 0) values[target_[i]] = rs.value(i);
    return values;
}

namespace {
// Why a recordset did not open: its own error, else the access object's (the
// connection's, when the data file itself could not be opened).
QString failureText(const tarveldatabase& db, const RecordsetPtr& rs) {
    if (rs && !rs->ErrorDescription().isEmpty()) return rs->ErrorDescription();
    return db.ErrMsg();
}
}  // namespace

void RecordBase::fail(const QString& description) {
    throw Failure{description.isEmpty() ? QStringLiteral("未知错误") : description};
}

void RecordBase::failLogged() {
    throw Failure{QString(), true};
}

void RecordBase::failFrom(const RecordBase& other, const QString& errorsBefore) {
    QString added = other.ErrMsg();
    if (added.startsWith(errorsBefore)) added = added.mid(errorsBefore.size());
    if (added.startsWith(QLatin1String(" ; "))) added = added.mid(3);
    fail(added);
}

void RecordBase::appendError(const char* operation, const QString& description) {
    appendText(QLatin1String(operation) + QStringLiteral("出错，原因可能是") + description);
}

void RecordBase::appendText(const QString& text) {
    errMsg_ = errMsg_.isEmpty() ? text : errMsg_ + QStringLiteral(" ; ") + text;
}

void RecordBase::execute(const QString& sql) {
    tarveldatabase db;
    db.Execute(sql);
    if (!db.ErrMsg().isEmpty()) fail(db.ErrMsg());
}

RecordsetPtr RecordBase::read(const QString& sql) {
    tarveldatabase db;
    RecordsetPtr rs = db.GetReadRs(sql);
    if (!rs || rs->State() != adStateOpen) fail(failureText(db, rs));
    return rs;
}

RecordsetPtr RecordBase::openWritable(const QString& sql) {
    tarveldatabase db;
    RecordsetPtr rs = db.GetWriteRs(sql);
    if (!rs || rs->State() != adStateOpen) fail(failureText(db, rs));
    return rs;
}

bool RecordBase::hasRows(const QString& sql) {
    return !read(sql)->Eof();
}

void RecordBase::check(Recordset& rs, bool ok) {
    if (!ok) fail(rs.ErrorDescription());
}

int RecordBase::columnIndex(const Recordset& rs, const char* column) {
    const QLatin1String name(column);
    const int index = rs.fieldIndex(name);
    if (index >= 0) return index;
    const QString suffix = QLatin1Char('.') + name;
    for (int i = 0; i < rs.FieldCount(); ++i)
        if (rs.fieldName(i).endsWith(suffix, Qt::CaseInsensitive)) return i;
    return -1;
}

QVariant RecordBase::columnValue(const Recordset& rs, const char* column) {
    return rs.value(columnIndex(rs, column));
}

void RecordBase::findKey(Recordset& rs, const char* keyColumn, int id) {
    const int index = columnIndex(rs, keyColumn);
    if (index < 0) fail(QStringLiteral("找不到字段 %1").arg(QLatin1String(keyColumn)));
    check(rs, rs.Find(rs.fieldName(index) + QLatin1Char('=') + QString::number(id)));
}

void RecordBase::setField(Recordset& rs, const char* column, const QVariant& value) {
    const int index = columnIndex(rs, column);
    if (index < 0) fail(QStringLiteral("找不到字段 %1").arg(QLatin1String(column)));
    check(rs, rs.setValue(index, value));
}

void RecordBase::storeNewRow(Recordset& rs) {
    check(rs, rs.Update());
    check(rs, rs.MovePrevious());
    check(rs, rs.MoveNext());
}

bool RecordBase::gridRowHolds(const char* keyColumn, int id) const {
    const RecordsetPtr rs = oAdodc_ ? oAdodc_->Recordset : nullptr;
    if (!rs || rs->State() != adStateOpen || rs->Eof() || rs->Bof()) return false;
    const QVariant key = columnValue(*rs, keyColumn);
    return !key.isNull() && key.toInt() == id;
}

void RecordBase::executeLink(const QString& sql) {
    if (sql.trimmed().isEmpty()) return;
    const ConnectionPtr connection = oAdodc_ ? oAdodc_->ActiveConnection() : nullptr;
    if (!connection || connection->State() != adStateOpen) {
        // No grid connection yet (the grid was never refreshed): the file's own will do.
        execute(sql);
        return;
    }
    trace::record(sql);
    connection->Execute(sql);
    if (!connection->ErrorDescription().isEmpty()) fail(connection->ErrorDescription());
}

void RecordBase::groupedCounts(const QString& sql, const char* labelColumn) {
    RecordsetPtr rs = read(sql);
    const int rows = rs->RecordCount();
    arrDesc_ = QVariantList(rows + 1);
    arrValue_ = QVariantList(rows + 1);
    const QString label = QLatin1String(labelColumn);
    for (int i = 0; !rs->Eof(); ++i) {
        arrDesc_[i] = recordvalue::text(rs->value(label)).trimmed();
        arrValue_[i] = recordvalue::int32(rs->value(QStringLiteral("option_count")));
        rs->MoveNext();
    }
}

void RecordBase::tagCounts(const char* object, const QString& countPrefix) {
    RecordsetPtr tags = read(
        QStringLiteral("SELECT opt_description FROM  options WHERE opt_object= '") +
        QLatin1String(object) + QStringLiteral("'  AND  opt_name='tag' ORDER BY  opt_description"));
    const int rows = tags->RecordCount();
    QVariantList desc(rows + 1);
    QVariantList value(rows + 1);
    for (int i = 0; !tags->Eof(); ++i) {
        const QString tag = recordvalue::text(tags->value(0));
        desc[i] = tag.trimmed();
        RecordsetPtr count =
            read(countPrefix + tarveldatabase::SafeSql(tag) + QStringLiteral("%' "));
        value[i] = recordvalue::int32(count->value(QStringLiteral("option_count")));
        tags->MoveNext();
    }
    arrDesc_ = desc;
    arrValue_ = value;
}

void RecordBase::participationCounts(const QString& inSql, const QString& notInSql,
                                     const char* countColumn) {
    const QString column = QLatin1String(countColumn);
    const int in = recordvalue::int32(read(inSql)->value(column));
    const int notIn = recordvalue::int32(read(notInSql)->value(column));
    arrDesc_ = {QStringLiteral("有"), QStringLiteral("无")};
    arrValue_ = {in, notIn};
}

Form& RecordBase::form() const {
    if (!oForm_) fail(QStringLiteral("没有设置面板窗体"));
    return *oForm_;
}

DataControl& RecordBase::grid() const {
    if (!oAdodc_) fail(QStringLiteral("没有设置表格的数据控件"));
    return *oAdodc_;
}

Recordset& RecordBase::gridRows() const {
    DataControl& control = grid();
    if (!control.Recordset || control.Recordset->State() != adStateOpen)
        fail(QStringLiteral("表格的记录集没有打开"));
    return *control.Recordset;
}

int RecordBase::panelRecordId() const {
    return recordvalue::int32(form().property(QLatin1String(panel::RecordId)));
}

QString RecordBase::formText(const char* control) const {
    return recordvalue::text(form().controlValue(QLatin1String(control)));
}

void RecordBase::setFormValue(const char* control, const QVariant& value) const {
    form().setControlValue(QLatin1String(control), value);
}

void RecordBase::setNameBox(const char* control, const char* flag, const QString& text) const {
    Form& f = form();
    f.setProperty(QLatin1String(flag), true);
    f.setControlValue(QLatin1String(control), text);
    f.setProperty(QLatin1String(flag), false);
}

void RecordBase::setFormProperty(const char* name, const QVariant& value) const {
    form().setProperty(QLatin1String(name), value);
}

void RecordBase::setPanelFlags() const {
    const qint16 own = panel::kindOf(form().Name());
    setFormProperty("iShowTas", own == kind::Task ? 0 : 1);
    setFormProperty("iShowCon", own == kind::Contact ? 0 : 1);
    setFormProperty("iShowOpp", own == kind::Opportunity ? 0 : 1);
    setFormProperty("iShowAcc", own == kind::Account ? 0 : 1);
    setFormProperty("iShowDoc", own == kind::Document ? 0 : 1);
}

void RecordBase::showInGrid(const QString& source, const char* gridControl,
                            const QStringList& captions) const {
    DataControl& control = grid();
    control.ConnectionString = globalConnectionString();
    control.RecordSource = source;
    setPanelFlags();
    if (!control.Refresh()) fail(control.ErrorDescription());
    form().setControlItems(QLatin1String(gridControl), captions);
}

QString RecordBase::taskDigest(const QString& sql) {
    RecordsetPtr rs = read(sql);
    QString digest;
    const QString lineBreak = QStringLiteral("\r\n");
    for (; !rs->Eof(); rs->MoveNext()) {
        using recordvalue::text;
        digest += text(rs->value(QStringLiteral("tas_date"))) + QLatin1Char(',') +
                  text(rs->value(QStringLiteral("tas_time"))) + QLatin1Char(',') +
                  text(rs->value(QStringLiteral("tas_tag"))) + lineBreak +
                  text(rs->value(QStringLiteral("tas_subject"))) + lineBreak +
                  text(rs->value(QStringLiteral("tas_description"))) + lineBreak +
                  QStringLiteral("===================") + lineBreak;
    }
    return digest;
}

}  // namespace tarvel
