#include "schedule/homelists.h"

#include "records/recordbase.h"
#include "store/jetdate.h"
#include "store/readrows.h"

namespace tarvel {

bool HomeLists::loadEndingOpportunities(const QDate& day) {
    opportunities_.clear();
    errMsg_.clear();
    // A deadline with a time of day still counts on its last day.
    RecordsetPtr rs =
        readRows(QStringLiteral("SELECT opp_id, opp_subject, opp_die_date, opp_phase, "
                                "opp_estimate_sale FROM opportunities WHERE opp_die_date >= ") +
                     jetdate::literal(day) + QStringLiteral(" AND opp_die_date < ") +
                     jetdate::literal(day.addDays(kEndingDays + 1)) +
                     QStringLiteral(" ORDER BY opp_die_date, opp_subject"),
                 errMsg_, "loadEndingOpportunities");
    if (!rs) return false;
    for (; !rs->Eof(); rs->MoveNext())
        opportunities_ << EndingOpportunity{
            recordvalue::int32(rs->value(QStringLiteral("opp_id"))),
            recordvalue::text(rs->value(QStringLiteral("opp_subject"))),
            recordvalue::dateTime(rs->value(QStringLiteral("opp_die_date"))),
            recordvalue::text(rs->value(QStringLiteral("opp_phase"))),
            Currency::fromVariant(rs->value(QStringLiteral("opp_estimate_sale")))};
    return true;
}

bool HomeLists::loadOverdueTasks(const QDate& day) {
    overdue_.clear();
    errMsg_.clear();
    // One-off tasks only: a recurring task's completion covers all its days.
    RecordsetPtr rs = readRows(
        QStringLiteral("SELECT tas_id, tas_date, tas_time, tas_subject FROM tasks WHERE "
                       "tas_cycle = 0 AND (tas_closed IS NULL OR tas_closed = 0) AND "
                       "tas_date >= ") +
            jetdate::literal(day.addDays(-kOverdueDays)) + QStringLiteral(" AND tas_date < ") +
            jetdate::literal(day) + QStringLiteral(" ORDER BY tas_date DESC, tas_time"),
        errMsg_, "loadOverdueTasks");
    if (!rs) return false;
    for (; !rs->Eof(); rs->MoveNext()) {
        const QDateTime time = recordvalue::dateTime(rs->value(QStringLiteral("tas_time")));
        overdue_ << OverdueTask{recordvalue::int32(rs->value(QStringLiteral("tas_id"))),
                                recordvalue::dateTime(rs->value(QStringLiteral("tas_date"))),
                                time.isValid() ? time.time() : QTime(),
                                recordvalue::text(rs->value(QStringLiteral("tas_subject")))};
    }
    return true;
}

}  // namespace tarvel
