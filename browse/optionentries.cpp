#include "browse/optionentries.h"

#include "store/tarveldatabase.h"

namespace tarvel {

namespace {
const QString kText = QStringLiteral("opt_description");
}

bool OptionEntries::open(const QString& object, const QString& name) {
    object_ = object;
    name_ = name;
    adodc_.RecordSource =
        QStringLiteral(
            "SELECT  opt_id,opt_description,opt_object, opt_name FROM options WHERE opt_object = "
            "'") +
        tarveldatabase::SafeSql(object) + QStringLiteral("'  AND opt_name = '") +
        tarveldatabase::SafeSql(name) + QStringLiteral("'") +
        QStringLiteral(" ORDER BY opt_description");
    return adodc_.Refresh() || fail(adodc_.ErrorDescription());
}

bool OptionEntries::isOpen() const {
    return adodc_.Recordset && adodc_.Recordset->State() == adStateOpen;
}

bool OptionEntries::hasCurrent() const {
    return isOpen() && !adodc_.Recordset->Eof() && !adodc_.Recordset->Bof();
}

QVariant OptionEntries::currentText() const {
    return hasCurrent() ? adodc_.Recordset->value(kText) : QVariant();
}

bool OptionEntries::store(const QString& text, bool asNew) {
    Recordset* rs = adodc_.Recordset.get();
    if (!asNew && !hasCurrent()) return fail(QStringLiteral("没有选中的选项"));
    if (!isOpen() || (asNew && !rs->AddNew()))
        return fail(rs ? rs->ErrorDescription() : adodc_.ErrorDescription());
    rs->Fields(kText) = text;
    rs->Fields(QStringLiteral("opt_object")) = object_;
    rs->Fields(QStringLiteral("opt_name")) = name_;
    if (rs->Update()) return true;
    fail(rs->ErrorDescription());
    rs->CancelUpdate();
    return false;
}

bool OptionEntries::removeCurrent() {
    if (!hasCurrent()) return fail(QStringLiteral("没有选中的选项"));
    Recordset* rs = adodc_.Recordset.get();
    if (!rs->Delete()) return fail(rs->ErrorDescription());
    rs->MoveNext();
    if (rs->Eof() && rs->RecordCount() > 0) rs->MoveLast();
    return true;
}

bool OptionEntries::fail(const QString& error) {
    errMsg_ = error;
    return false;
}

}  // namespace tarvel
