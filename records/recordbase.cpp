#include "records/recordbase.h"

#include "records/columnlimit.h"
#include "store/clock.h"
#include "store/connectionstring.h"
#include "store/jetdate.h"
#include "store/likecontains.h"
#include "store/tarveldatabase.h"
#include "store/trace.h"

namespace tarvel {

namespace panel {
qint16 kindOf(const QString& formName) {
    const RecordKindInfo* k = kindByPanelForm(formName);
    return k ? k->code : qint16(0);
}

const char* formName(qint16 recordKind) {
    const RecordKindInfo* k = kindByCode(recordKind);
    return k ? k->panelForm : "";
}
}  // namespace panel

QString stampStatement(qint16 recordKind, int id) {
    const RecordKindInfo* k = kindByCode(recordKind);
    return k ? QLatin1String(k->stampPrefix) + QString::number(id) : QString();
}

QString panelStampStatement(qint16 recordKind, int id) {
    if (recordKind == kind::Contact)
        return QStringLiteral("UPDATE contacts SET con_recent_contact_date=now WHERE con_id= ") +
               QString::number(id);
    return stampStatement(recordKind, id);
}

const char* keyColumn(qint16 recordKind) {
    const RecordKindInfo* k = kindByCode(recordKind);
    return k ? k->key : nullptr;
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
    return columnlimit::cut(text, count);
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

// Why a recordset did not open: its own error, else the access object's (the
// connection's, when the data file itself could not be opened).
QString failureText(const tarveldatabase& db, const RecordsetPtr& rs) {
    if (rs && !rs->ErrorDescription().isEmpty()) return rs->ErrorDescription();
    return db.ErrMsg();
}

// A link statement with this id (%1), the other id (%2) and the text (%3) in
// place, in one pass so a text holding "%1" stays as typed.
QString linkStatement(const char* pattern, int id, int otherId, const QString& text = QString()) {
    const QString p = QLatin1String(pattern);
    QString out;
    for (qsizetype i = 0; i < p.size(); ++i) {
        const QChar next = i + 1 < p.size() ? p[i + 1] : QChar();
        if (p[i] != QLatin1Char('%') || next < QLatin1Char('1') || next > QLatin1Char('3')) {
            out += p[i];
            continue;
        }
        out += next == QLatin1Char('1')   ? QString::number(id)
               : next == QLatin1Char('2') ? QString::number(otherId)
                                          : tarveldatabase::SafeSql(text);
        ++i;
    }
    return out;
}
}  // namespace

QVector<QVariant> ColumnSlots::read(const Recordset& rs) const {
    const QString source = rs.Source();
    if (fields_ != rs.FieldCount() || source.isEmpty() || !sameShape(source, source_)) {
        index_.clear();
        for (const QString& column : columns_) index_ << rs.fieldIndex(column);
        source_ = source;
        fields_ = rs.FieldCount();
    }
    QVector<QVariant> values(columns_.size());
    for (int i = 0; i < columns_.size(); ++i)
        if (index_[i] >= 0) values[i] = rs.value(index_[i]);
    return values;
}

const RecordLink* RecordLinks::find(qint16 relationKind) const {
    for (const RecordLink& link : links)
        if (link.kind == relationKind) return &link;
    return nullptr;
}

bool RecordBase::report(const char* operation, bool ok) {
    if (!ok && failed_) {
        lastError_ = QLatin1String(operation) + QStringLiteral("出错，原因可能是") +
                     (reason_.isEmpty() ? QStringLiteral("未知错误") : reason_);
        appendText(lastError_);
    }
    failed_ = false;
    reason_.clear();
    return ok;
}

bool RecordBase::fail(const QString& reason) const {
    failed_ = true;
    reason_ = reason;
    return false;
}

void RecordBase::appendText(const QString& text) {
    errMsg_ = errMsg_.isEmpty() ? text : errMsg_ + QStringLiteral(" ; ") + text;
}

bool RecordBase::execute(const QString& sql) const {
    tarveldatabase db;
    db.Execute(sql);
    return db.ErrMsg().isEmpty() || fail(db.ErrMsg());
}

RecordsetPtr RecordBase::open(const QString& sql, bool writable) const {
    tarveldatabase db;
    RecordsetPtr rs = writable ? db.GetWriteRs(sql) : db.GetReadRs(sql);
    if (rs && rs->State() == adStateOpen) return rs;
    fail(failureText(db, rs));
    return nullptr;
}

bool RecordBase::check(Recordset& rs, bool ok) const {
    return ok || fail(rs.ErrorDescription());
}

bool RecordBase::readText(const QString& sql, const QString& column, QString& out) const {
    const RecordsetPtr rs = read(sql);
    if (!rs) return false;
    out = rs->Eof() ? QString() : recordvalue::text(rs->value(column));
    return true;
}

bool RecordBase::findKey(Recordset& rs, const char* keyColumn, int id) const {
    const int index = rs.fieldIndex(QLatin1String(keyColumn));
    if (index < 0) return fail(QStringLiteral("找不到字段 %1").arg(QLatin1String(keyColumn)));
    return check(rs, rs.Find(rs.fieldName(index) + QLatin1Char('=') + QString::number(id)));
}

bool RecordBase::setField(Recordset& rs, const char* column, const QVariant& value) const {
    const int index = rs.fieldIndex(QLatin1String(column));
    if (index < 0) return fail(QStringLiteral("找不到字段 %1").arg(QLatin1String(column)));
    return check(rs, rs.setValue(index, value));
}

bool RecordBase::storeNewRow(Recordset& rs) const {
    return check(rs, rs.Update()) && check(rs, rs.MovePrevious()) && check(rs, rs.MoveNext());
}

bool RecordBase::gridRowHolds(const char* keyColumn, int id) const {
    const RecordsetPtr rs = oAdodc_ ? oAdodc_->Recordset : nullptr;
    if (!rs || rs->State() != adStateOpen || rs->Eof() || rs->Bof()) return false;
    const QVariant key = rs->value(QLatin1String(keyColumn));
    return !key.isNull() && key.toInt() == id;
}

bool RecordBase::executeLink(const QString& sql) const {
    if (sql.trimmed().isEmpty()) return true;
    const ConnectionPtr connection = oAdodc_ ? oAdodc_->ActiveConnection() : nullptr;
    // No grid connection yet (the grid was never refreshed): the file's own will do.
    if (!connection || connection->State() != adStateOpen) return execute(sql);
    trace::record(sql);
    connection->Execute(sql);
    return connection->ErrorDescription().isEmpty() || fail(connection->ErrorDescription());
}

bool RecordBase::addRelative(const RecordLinks& links, int id, qint16 relationKind, int otherId,
                             const QString& text) {
    if (otherId == 0 || id == 0) return true;
    if (!execute(stampStatement(links.own, id))) return false;
    const RecordLink* link = links.find(relationKind);
    if (!link || !link->probe) return true;
    const RecordsetPtr probed = read(linkStatement(link->probe, id, otherId));
    if (!probed) return false;
    const bool exists = !probed->Eof();
    if (link->replaces && exists && !execute(linkStatement(link->remove, id, otherId)))
        return false;
    QString sql;
    if (link->replaces || !exists)
        sql = linkStatement(link->insert, id, otherId, text);
    else if (link->update)
        sql = linkStatement(link->update, id, otherId, text);
    return execute(stampStatement(relationKind, otherId)) && executeLink(sql) &&
           (!link->reread || read(linkStatement(link->reread, id, otherId)));
}

bool RecordBase::deleteRelative(const RecordLinks& links, int id, qint16 relationKind,
                                int otherId) {
    if (otherId == 0 || id == 0) return true;
    auto run = [&](const QString& sql) {
        if (links.tracesRemoval) appendText(sql);
        return execute(sql);
    };
    if (links.stampsRemoval && !run(stampStatement(links.own, id))) return false;
    const RecordLink* link = links.find(relationKind);
    if (!link || !link->remove) return true;
    if (links.stampsRemoval && !run(stampStatement(relationKind, otherId))) return false;
    const QString sql = linkStatement(link->remove, id, otherId);
    if (links.tracesRemoval) appendText(sql);
    return executeLink(sql) &&
           (!link->rereadRemoved || read(linkStatement(link->rereadRemoved, id, otherId)));
}

bool RecordBase::deleteRelation(const RecordLinks& links, int id) {
    for (const char* statement : links.cascade)
        if (!execute(linkStatement(statement, id, 0))) return false;
    return true;
}

bool RecordBase::groupedCounts(const QString& sql, const char* labelColumn) {
    RecordsetPtr rs = read(sql);
    if (!rs) return false;
    const int rows = rs->RecordCount();
    arrDesc_ = QVariantList(rows + 1);
    arrValue_ = QVariantList(rows + 1);
    const QString label = QLatin1String(labelColumn);
    for (int i = 0; !rs->Eof(); ++i, rs->MoveNext()) {
        arrDesc_[i] = recordvalue::text(rs->value(label)).trimmed();
        arrValue_[i] = recordvalue::int32(rs->value(QStringLiteral("option_count")));
    }
    return true;
}

bool RecordBase::tagCounts(const char* object, const QString& countPrefix) {
    RecordsetPtr tags = read(
        QStringLiteral("SELECT opt_description FROM  options WHERE opt_object= '") +
        QLatin1String(object) + QStringLiteral("'  AND  opt_name='tag' ORDER BY  opt_description"));
    if (!tags) return false;
    const int rows = tags->RecordCount();
    QVariantList desc(rows + 1);
    QVariantList value(rows + 1);
    for (int i = 0; !tags->Eof(); ++i, tags->MoveNext()) {
        const QString tag = recordvalue::text(tags->value(0));
        desc[i] = tag.trimmed();
        RecordsetPtr count = read(countPrefix + likeContains(tag) + QLatin1Char(' '));
        if (!count) return false;
        value[i] = recordvalue::int32(count->value(QStringLiteral("option_count")));
    }
    arrDesc_ = desc;
    arrValue_ = value;
    return true;
}

bool RecordBase::participationCounts(const QString& prefix, const QString& table) {
    const QString column = prefix + QStringLiteral("_count");
    const QString key = prefix + QStringLiteral("_id");
    const auto count = [&](const char* in) {
        return read(QStringLiteral("SELECT COUNT(*) AS ") + column + QStringLiteral(" FROM ") +
                    table + QStringLiteral(" WHERE ") + key + QLatin1String(in) +
                    QStringLiteral("IN (SELECT DISTINCT ") + key +
                    QStringLiteral(" FROM opportunities_") + table + QLatin1Char(')'));
    };
    const RecordsetPtr in = count(" ");
    const RecordsetPtr notIn = in ? count(" NOT ") : nullptr;
    if (!notIn) return false;
    arrDesc_ = {QStringLiteral("有"), QStringLiteral("无")};
    arrValue_ = {recordvalue::int32(in->value(column)), recordvalue::int32(notIn->value(column))};
    return true;
}

bool RecordBase::needForm() const {
    return oForm_ || fail(QStringLiteral("没有设置面板窗体"));
}

bool RecordBase::needGrid() const {
    if (!oAdodc_) return fail(QStringLiteral("没有设置表格的数据控件"));
    if (!oAdodc_->Recordset || oAdodc_->Recordset->State() != adStateOpen)
        return fail(QStringLiteral("表格的记录集没有打开"));
    return true;
}

int RecordBase::panelRecordId() const {
    return recordvalue::int32(formProperty(panel::RecordId));
}

QVariant RecordBase::formProperty(const char* name) const {
    return oForm_ ? oForm_->property(QLatin1String(name)) : QVariant();
}

QString RecordBase::formText(const char* control) const {
    return oForm_ ? recordvalue::text(oForm_->controlValue(QLatin1String(control))) : QString();
}

void RecordBase::setFormValue(const char* control, const QVariant& value) const {
    if (oForm_) oForm_->setControlValue(QLatin1String(control), value);
}

void RecordBase::setNameBox(const char* control, const char* flag, const QString& text) const {
    setFormProperty(flag, true);
    setFormValue(control, text);
    setFormProperty(flag, false);
}

void RecordBase::setFormProperty(const char* name, const QVariant& value) const {
    if (oForm_) oForm_->setProperty(QLatin1String(name), value);
}

void RecordBase::setPanelFlags() const {
    const qint16 own = panel::kindOf(panelName());
    const char* const flags[] = {"iShowOpp", "iShowAcc", "iShowCon", "iShowTas", "iShowDoc"};
    for (qint16 k = kind::Opportunity; k <= kind::Document; ++k)
        setFormProperty(flags[k - 1], own == k ? 0 : 1);
}

bool RecordBase::showInGrid(const QString& source, const char* gridControl,
                            const char* captions) const {
    if (!oAdodc_) return fail(QStringLiteral("没有设置表格的数据控件"));
    if (!needForm()) return false;
    DataControl& control = *oAdodc_;
    control.ConnectionString = globalConnectionString();
    control.RecordSource = source;
    setPanelFlags();
    if (!control.Refresh()) return fail(control.ErrorDescription());
    oForm_->setControlItems(QLatin1String(gridControl),
                            QString::fromUtf8(captions).split(QLatin1Char(',')));
    return true;
}

bool RecordBase::showRelated(const QString& select, std::initializer_list<PanelLink> links,
                             int otherId, const char* gridControl, const char* captions,
                             const char* close) const {
    const qint16 panelKind = panel::kindOf(panelName());
    for (const PanelLink& l : links)
        if (l.panel == panelKind)
            return showInGrid(
                select + QLatin1String(l.link) + QString::number(otherId) + QLatin1String(close),
                gridControl, captions);
    return true;
}

bool RecordBase::showTaskDigest(const char* control, const char* from, int id) const {
    const RecordsetPtr rs =
        read(QStringLiteral("SELECT tas_date,tas_time,tas_tag,tas_subject,tas_description") +
             QLatin1String(from) + QString::number(id) +
             QStringLiteral(") ORDER BY tas_date DESC,tas_time DESC"));
    if (rs) setFormValue(control, taskDigest(*rs, false));
    return rs != nullptr;
}

QString RecordBase::taskDigest(Recordset& rs, bool withDone) {
    const QString lineBreak = QStringLiteral("\r\n");
    // The columns are found once; a panel's digest may run to hundreds of tasks.
    const int date = rs.fieldIndex(QStringLiteral("tas_date"));
    const int time = rs.fieldIndex(QStringLiteral("tas_time"));
    const int closed = rs.fieldIndex(QStringLiteral("tas_closed"));
    const int tag = rs.fieldIndex(QStringLiteral("tas_tag"));
    const int subject = rs.fieldIndex(QStringLiteral("tas_subject"));
    const int description = rs.fieldIndex(QStringLiteral("tas_description"));
    auto text = [&](int column) {
        return column < 0 ? QString() : recordvalue::text(rs.value(column));
    };
    QString digest;
    for (rs.MoveFirst(); !rs.Eof(); rs.MoveNext()) {
        const bool done = closed >= 0 && recordvalue::int16(rs.value(closed)) != 0;
        digest += text(date) + QLatin1Char(',') + text(time) + QLatin1Char(',') +
                  (!withDone ? QString()
                   : done    ? QStringLiteral("完成,")
                             : QStringLiteral("未完成,")) +
                  text(tag) + lineBreak + text(subject) + lineBreak + text(description) +
                  lineBreak + QStringLiteral("===================") + lineBreak;
    }
    return digest;
}

}  // namespace tarvel
