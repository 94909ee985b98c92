#include "shell/pagefactory.h"

#include <QHash>
#include <QLayout>

#include "shell/pagehistory.h"
#include "views/details/formaccdetail.h"
#include "views/details/formcondetail.h"
#include "views/details/formdocdetail.h"
#include "views/details/formoppdetail.h"
#include "views/exchange/formdataio.h"
#include "views/exchange/reportexportflow.h"
#include "views/home/formhome.h"
#include "views/lists/formemail.h"
#include "views/lists/formlist.h"
#include "views/related/formrelated.h"
#include "views/schedule/formschall.h"
#include "views/schedule/formschdetail.h"
#include "views/schedule/formschstat.h"

namespace tarvel {

namespace {

using Maker = PageWidget* (*)(qint16 code, const PageServices& s);

// Changes made on a page in place (dates, filters, the record shown) keep the
// page's history entry current rather than adding entries.
void updateHistory(PageHistory& history, const QString& condition, int id = -1) {
    history.setC_StrCondition(condition);
    if (id >= 0) history.setC_RecordID(id);
    history.Update();
}

PageWidget* settingsPage(qint16, const PageServices& s) {
    auto* form = new FormAppSetting;
    form->setDialogs(s.dialogs);
    form->setFileDialogs(s.files);
    form->setLayoutHost(s.layoutHost);
    return form;
}

PageWidget* homePage(qint16, const PageServices& s) {
    auto* home = new FormHome(*s.today);
    home->setPageSwitch(s.openPage);
    return home;
}

PageWidget* statisticsPage(qint16, const PageServices& s) {
    auto* form = new FormSchStat;
    form->setDialogs(s.dialogs);
    form->setPageSwitch(s.openPage);
    return form;
}

PageWidget* calendarPage(qint16, const PageServices& s) {
    auto* form = new FormSchAll;
    form->setDialogs(s.dialogs);
    form->setFileDialogs(s.files);
    form->setPageSwitch(s.openPage);
    form->setTaskOpener(s.openTask);
    QObject::connect(form, &FormSchAll::tasksImported, form, s.todayChanged);
    PageHistory* history = s.history;
    form->setHistoryUpdate([history](const QDate& day, qint16 pageNo, const QString& condition) {
        if (history->c_RelatedPage() != page::Schedule) return;
        history->setC_Date(day);
        history->setC_PageNo(pageNo);
        updateHistory(*history, condition);
    });
    return form;
}

PageWidget* taskPage(qint16, const PageServices& s) {
    auto* form = new FormSchDetail;
    form->setDialogs(s.dialogs);
    // Its own links leave an edit that the page has just saved.
    auto show = s.showPage;
    form->setPageSwitch([show](qint16 code, const QString& condition, qint32 recordId) {
        show(code, condition, recordId, -1);
    });
    // A task saved for today belongs on the home page's list at once, so its
    // reminder fires without waiting for the next day.
    QObject::connect(form, &FormSchDetail::todayChanged, form, s.todayChanged);
    return form;
}

PageWidget* dataExchangePage(qint16, const PageServices& s) {
    auto* form = new FormDataIO;
    form->setDialogs(s.dialogs);
    form->setPageSwitch(s.openPage);
    QObject::connect(form, &FormDataIO::dataReplaced, form, s.dataReplaced);
    return form;
}

PageWidget* emailPage(qint16, const PageServices& s) {
    auto* email = new lists::FormEmail;
    email->setDialogs(s.dialogs);
    email->setShellOpener(s.opener);
    return email;
}

PageWidget* listPage(qint16 code, const PageServices& s) {
    const lists::ListKind* kind = lists::listKindForPage(code);
    if (!kind) return nullptr;
    auto* form = new lists::FormList(*kind);
    form->setDialogs(s.dialogs);
    form->setFileDialogs(s.files);
    form->setPageSwitch(s.openPage);
    PageHistory* history = s.history;
    form->setHistoryUpdate(
        [history](const QString& condition) { updateHistory(*history, condition); });
    // The related button opens the record's page with its related panel in view.
    auto show = s.showPage;
    form->setRelatedOpener([show, kind](int id) {
        show(kind->detailPage, recordCondition(kind->fieldType, id), id, 1);
    });
    auto files = std::make_shared<QtFileDialogs>(form, QtFileDialogs::Overwrite::CallerAsks);
    auto dialogs = s.dialogs;
    auto openPage = s.openPage;
    form->setReportExport([form, files, dialogs, openPage](qint16 recordKind) {
        return exportReportFromList(recordKind, form, *dialogs, *files, openPage);
    });
    return form;
}

// The related panel below a detail page, wired to the page and the main window.
void addRelatedPanel(FormDetail* form, qint16 owner, const PageServices& s) {
    auto* panel = new FormRelated(owner, form->relatedArea());
    form->relatedArea()->layout()->addWidget(panel);
    panel->setDialogs(s.dialogs);
    panel->setFileDialogs(s.files);
    panel->setShellOpener(s.opener);
    panel->setRecordOpener(s.openRecord);
    panel->setNewTaskOpener(s.openTaskFor);
    QObject::connect(form, &FormDetail::recordShown, panel, &FormRelated::showRecord);
    // A link changed from the panel may change the page's own record (a
    // contact's account); an edit in progress is not thrown away for it.
    QObject::connect(panel, &FormRelated::linksChanged, form, [form] {
        if (!form->isModified()) form->reload();
    });
}

template <typename Detail>
PageWidget* detailPage(qint16 code, const PageServices& s) {
    auto* form = new Detail;
    if constexpr (std::is_same_v<Detail, FormDocDetail>) form->setFileDialogs(s.files);
    form->setDialogs(s.dialogs);
    form->setShellOpener(s.opener);
    auto opened = s.openedPage;
    form->setRows([opened, listCode = form->listPage()]() -> lists::ListRows* {
        auto* list = qobject_cast<lists::FormList*>(opened(listCode));
        return list ? &list->rows() : nullptr;
    });
    PageHistory* history = s.history;
    form->setHistoryUpdate([history, code](const QString& condition, int id) {
        if (history->c_RelatedPage() == code) updateHistory(*history, condition, id);
    });
    addRelatedPanel(form, lists::listKindForPage(form->listPage())->fieldType, s);
    return form;
}

}  // namespace

PageWidget* makePage(qint16 code, const PageServices& services) {
    static const QHash<qint16, Maker> makers = {
        {page::Settings, &settingsPage},
        {page::Home, &homePage},
        {page::ScheduleStatistics, &statisticsPage},
        {page::Schedule, &calendarPage},
        {page::TaskDetail, &taskPage},
        {page::DataExchange, &dataExchangePage},
        {page::Email, &emailPage},
        {page::ContactDetail, &detailPage<FormConDetail>},
        {page::AccountDetail, &detailPage<FormAccDetail>},
        {page::OpportunityDetail, &detailPage<FormOppDetail>},
        {page::DocumentDetail, &detailPage<FormDocDetail>},
    };
    const Maker maker = makers.value(code, &listPage);
    return maker(code, services);
}

}  // namespace tarvel
