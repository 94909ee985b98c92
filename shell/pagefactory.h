#pragma once

#include <QDate>
#include <QTime>
#include <functional>
#include <memory>

#include "views/common/dialogs.h"
#include "views/common/filedialogs.h"
#include "views/common/page.h"
#include "views/settings/formappsetting.h"

namespace tarvel {

class PageHistory;
class TodayList;

// What the main window lends every page it makes: the seams, the page
// history, today's list, and the ways to open other pages.
struct PageServices {
    std::shared_ptr<Messages> dialogs;
    std::shared_ptr<ShellOpener> opener;
    std::shared_ptr<FileDialogs> files;
    PageHistory* history = nullptr;
    TodayList* today = nullptr;
    // A page after the unsaved-changes question.
    PageSwitch openPage;
    // A page at once, recorded in the history (with its page number).
    std::function<void(qint16 page, const QString& condition, qint32 recordId, qint16 pageNo)>
        showPage;
    std::function<void(int taskId, const QDate& day, const QTime& time)> openTask;
    std::function<void(qint16 recordKind, int recordId)> openTaskFor;
    std::function<void(qint16 relationKind, int id)> openRecord;
    // A page already made, or null.
    std::function<PageWidget*(qint16 page)> openedPage;
    // Today's entries changed (the home page reads them again).
    std::function<void()> todayChanged;
    // Records were restored or imported: every open page reads them again.
    std::function<void()> dataReplaced;
    LayoutHost layoutHost;
};

// The window of a page code, wired to the services; null for a code that has none.
PageWidget* makePage(qint16 code, const PageServices& services);

}  // namespace tarvel
