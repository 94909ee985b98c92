#include "shell/mainwindow.h"

#include <QApplication>
#include <QCloseEvent>
#include <QMdiSubWindow>
#include <QMenu>
#include <QPainter>
#include <QStatusBar>
#include <QStyle>

#include "browse/unsaved.h"
#include "custom/appsettings.h"
#include "schedule/labels.h"
#include "shell/globals.h"
#include "shell/updatecheck.h"
#include "shell/windowmemory.h"
#include "store/clock.h"
#include "views/home/formhome.h"
#include "views/lists/formlist.h"
#include "views/related/formrelated.h"
#include "views/schedule/formschdetail.h"
#include "views/schedule/formschremind.h"

namespace tarvel {

namespace {

bool isSeparatorKey(const QString& key) {
    return key == QLatin1String("sepline1") || key == QLatin1String("sepline2") ||
           key == QLatin1String("sepline3");
}

QColor colorFor(const QString& key) {
    static const QHash<QString, QColor> colors = {
        {QStringLiteral("pp"), QColor(0x1a, 0x73, 0xe8)},
        {QStringLiteral("contact"), QColor(0x0b, 0x80, 0x43)},
        {QStringLiteral("account"), QColor(0x8e, 0x24, 0xaa)},
        {QStringLiteral("opportunity"), QColor(0xe3, 0x74, 0x00)},
        {QStringLiteral("schedule"), QColor(0xd9, 0x30, 0x25)},
        {QStringLiteral("document"), QColor(0x00, 0x7b, 0x83)},
        {QStringLiteral("email"), QColor(0x3f, 0x51, 0xb5)},
        {QStringLiteral("inout"), QColor(0x5d, 0x40, 0x37)},
        {QStringLiteral("setting"), QColor(0x54, 0x6e, 0x7a)},
        {QStringLiteral("help"), QColor(0x00, 0x89, 0x7b)},
        {QStringLiteral("bbs"), QColor(0x6d, 0x4c, 0x41)},
    };
    return colors.value(key, QColor(0x60, 0x60, 0x60));
}

// A round badge with the caption's first character: no image files to ship.
QIcon badgeIcon(const QString& text, const QColor& color) {
    QIcon icon;
    for (int size : {16, 24, 32, 48}) {
        QPixmap pm(size, size);
        pm.fill(Qt::transparent);
        QPainter p(&pm);
        p.setRenderHint(QPainter::Antialiasing);
        p.setPen(Qt::NoPen);
        p.setBrush(color);
        p.drawEllipse(QRectF(0.5, 0.5, size - 1, size - 1));
        QFont f = QApplication::font();
        f.setPixelSize(int(size * 0.58));
        f.setBold(true);
        p.setFont(f);
        p.setPen(Qt::white);
        p.drawText(QRect(0, 0, size, size), Qt::AlignCenter, text.left(1));
        p.end();
        icon.addPixmap(pm);
    }
    return icon;
}

}  // namespace

TarvelMain::TarvelMain(MainWindowOptions options, QWidget* parent)
    : QMainWindow(parent),
      options_(std::move(options)),
      dialogs_(options_.dialogs ? options_.dialogs : std::make_shared<MessageBoxDialogs>(this)),
      opener_(options_.opener ? options_.opener : std::make_shared<DesktopShellOpener>()),
      files_(options_.files ? options_.files : std::make_shared<QtFileDialogs>(this)) {
    setObjectName(QStringLiteral("tarvel_main"));

    mdi_ = new QMdiArea(this);
    mdi_->setObjectName(QStringLiteral("MDIForm"));
    setCentralWidget(mdi_);

    toolbar_ = new QToolBar(QStringLiteral("工具栏"), this);
    toolbar_->setObjectName(QStringLiteral("Toolbar1"));
    toolbar_->setMovable(false);
    toolbar_->setToolButtonStyle(Qt::ToolButtonTextUnderIcon);
    toolbar_->setIconSize(QSize(24, 24));
    addToolBar(Qt::TopToolBarArea, toolbar_);

    statusPage_ = new QLabel(this);
    statusPage_->setObjectName(QStringLiteral("lbl_status_page"));
    statusDate_ = new QLabel(this);
    statusDate_->setObjectName(QStringLiteral("lbl_status_date"));
    statusBar()->setObjectName(QStringLiteral("StatusBar1"));
    statusBar()->addPermanentWidget(statusPage_);
    statusBar()->addPermanentWidget(statusDate_);
    // After an undo every open screen reads the records again, as after a restore.
    undo_ = new UndoOffer(
        this, dialogs_,
        [this] {
            for (PageWidget* page : std::as_const(pages_)) page->refresh();
            refreshHomePage();
        },
        options_.undoTimer);

    timer_ = new QTimer(this);
    timer_->setObjectName(QStringLiteral("Timer1"));
    timer_->setInterval(options_.timerInterval);
    connect(timer_, &QTimer::timeout, this, &TarvelMain::Timer1Timer);

    update_ = new UpdateCheck(this);
    connect(update_, &UpdateCheck::finished, this, [this](bool newer, const QDate& date) {
        if (newer)
            statusBar()->showMessage(QStringLiteral("Tarvel有新版本（%1），请到Tarvel网站下载。")
                                         .arg(date.toString(QStringLiteral("yyyy-MM-dd"))));
        emit updateChecked(newer, date);
    });

    reminders_ = new ReminderWindows(today_, this);
    reminders_->setPageSwitch([this](qint16 code, const QString& condition, qint32 recordId) {
        if (!OpenPage(code, condition, recordId)) return;
        // The task shows in the main window, which may sit in the tray.
        if (isMinimized()) showNormal();
        show();
        raise();
        activateWindow();
    });
    connect(reminders_, &ReminderWindows::entryChanged, this, [this] {
        if (FormHome* home = homePage()) home->showToday();
    });

    // Loading.
    history_.Init();
    lastDay_ = Clock::today();
    setWindowTitle(productCaption());
    setWindowIcon(badgeIcon(QStringLiteral("T"), QColor(0x1a, 0x5f, 0xb4)));
    RebuildToolbar();
    buildTray();
    reminders_->setTray(tray_);
    statusDate_->setText(longDate(lastDay_));
    statusBar()->showMessage(QStringLiteral("就绪"));
    showHistoryEntry();
    place_ = startingPlace();
    setGeometry(place_.rect);

    timer_->start();
    if (options_.checkForUpdate) update_->start();
}

TarvelMain::~TarvelMain() {
    if (tray_) tray_->hide();
}

QString TarvelMain::moduleCaption(const QString& key) const {
    if (const QString stored = captions_.value(key); !stored.isEmpty()) return stored;
    const QString fallback = defaultToolbarCaption(key);
    return fallback.isEmpty() ? key : fallback;
}

QString TarvelMain::pageCaption(const PageInfo& info) const {
    const QString caption = moduleCaption(QLatin1String(info.moduleKey));
    if (!info.captionSuffix) return caption;
    return caption + QString::fromUtf8(info.captionSuffix);
}

QIcon TarvelMain::iconFor(const QString& key, const QString& caption) const {
    if (key == QLatin1String("back")) return style()->standardIcon(QStyle::SP_ArrowBack);
    if (key == QLatin1String("forward")) return style()->standardIcon(QStyle::SP_ArrowForward);
    return badgeIcon(caption, colorFor(key));
}

void TarvelMain::RebuildToolbar() {
    AppSettings set;
    set.GetToolbarIndex(0);
    // Module captions come from the same rows, hidden buttons included.
    captions_.clear();
    QList<AppSetting> shown;
    for (const AppSetting& e : set) {
        if (!e.ObjDesc().trimmed().isEmpty()) captions_.insert(e.ObjName(), e.ObjDesc().trimmed());
        if (e.ObjVisible() != 0) shown << e;
    }
    buildToolbar(shown);
}

void TarvelMain::PreviewToolbar(const QList<AppSetting>& entries) {
    buildToolbar(entries);
}

void TarvelMain::buildToolbar(const QList<AppSetting>& entries) {
    toolbar_->clear();
    for (const AppSetting& e : entries) {
        const QString key = e.ObjName();
        if (isSeparatorKey(key)) {
            toolbar_->addSeparator()->setObjectName(key);
            continue;
        }
        const QString caption = moduleCaption(key);
        QAction* action = toolbar_->addAction(iconFor(key, caption), caption);
        action->setObjectName(key);
        action->setData(key);
        connect(action, &QAction::triggered, this, [this, key] { Toolbar1ButtonClick(key); });
    }
}

void TarvelMain::ApplyLayout() {
    RebuildToolbar();
    for (auto it = pages_.cbegin(); it != pages_.cend(); ++it) {
        const PageInfo* info = pageInfo(it.key());
        const QString caption = pageCaption(*info);
        it.value()->setWindowTitle(caption);
        it.value()->rebuildLayout();
        for (FormRelated* panel : it.value()->findChildren<FormRelated*>()) panel->rebuildLayout();
    }
    if (const PageInfo* info = pageInfo(currentCode_)) statusPage_->setText(pageCaption(*info));
}

PageServices TarvelMain::pageServices() {
    PageServices s;
    s.dialogs = dialogs_;
    s.opener = opener_;
    s.files = files_;
    s.history = &history_;
    s.today = &today_;
    s.openPage = [this](qint16 code, const QString& condition, qint32 recordId) {
        OpenPage(code, condition, recordId);
    };
    s.showPage = [this](qint16 code, const QString& condition, qint32 recordId, qint16 pageNo) {
        ShowPage(code, condition, recordId, Clock::today(), pageNo, PageMode::Normal);
    };
    s.openTask = [this](int taskId, const QDate& day, const QTime& time) {
        OpenTask(taskId, day, time);
    };
    s.openTaskFor = [this](qint16 recordKind, int recordId) { OpenTaskFor(recordKind, recordId); };
    s.openRecord = [this](qint16 relationKind, int id) { OpenRecord(relationKind, id); };
    s.openedPage = [this](qint16 code) { return pages_.value(code); };
    s.todayChanged = [this] { refreshHomePage(); };
    s.dataReplaced = [this] {
        for (PageWidget* page : std::as_const(pages_)) page->refresh();
    };
    s.layoutHost.previewToolbar = [this](const QList<AppSetting>& entries) {
        PreviewToolbar(entries);
    };
    s.layoutHost.rebuildScreens = [this] { ApplyLayout(); };
    return s;
}

bool TarvelMain::OpenRecord(qint16 relationKind, int id) {
    if (relationKind == kind::Task) return OpenTask(id);
    const lists::ListKind* list = lists::listKindForRecord(relationKind);
    return list && OpenPage(list->detailPage, recordCondition(list->fieldType, id), id);
}

bool TarvelMain::OpenTask(int taskId, const QDate& day, const QTime& time) {
    if (keepUnsavedEdits()) return false;
    // A new task's half hour travels as the page number, so history restores it.
    const qint16 slot =
        taskId == 0 && time.isValid() ? qint16(time.hour() * 2 + time.minute() / 30) : qint16(-1);
    return ShowPage(page::TaskDetail, QString(), taskId, day.isValid() ? day : Clock::today(), slot,
                    PageMode::Normal) != nullptr;
}

bool TarvelMain::OpenTaskFor(qint16 recordKind, int recordId) {
    if (!OpenTask(0)) return false;
    if (auto* task = qobject_cast<FormSchDetail*>(pages_.value(page::TaskDetail)))
        task->newTaskFor(recordKind, recordId);
    return true;
}

FormHome* TarvelMain::homePage() const {
    return qobject_cast<FormHome*>(pages_.value(page::Home));
}

QAction* TarvelMain::toolbarAction(const QString& key) const {
    for (QAction* a : toolbar_->actions())
        if (!a->isSeparator() && a->data().toString() == key) return a;
    return nullptr;
}

QStringList TarvelMain::toolbarKeys() const {
    QStringList keys;
    for (QAction* a : toolbar_->actions())
        keys << (a->isSeparator() ? QStringLiteral("|") : a->data().toString());
    return keys;
}

void TarvelMain::buildTray() {
    if (!options_.trayAvailable || !options_.trayAvailable()) return;
    tray_ = new QSystemTrayIcon(windowIcon(), this);
    tray_->setObjectName(QStringLiteral("tray_icon"));
    auto* menu = new QMenu(this);
    menu->setObjectName(QStringLiteral("m_tray"));
    QAction* show = menu->addAction(QStringLiteral("显示主窗口"));
    show->setObjectName(QStringLiteral("m_tray_show"));
    QAction* hide = menu->addAction(QStringLiteral("隐藏到通知区域"));
    hide->setObjectName(QStringLiteral("m_tray_hide"));
    menu->addSeparator();
    QAction* exit = menu->addAction(QStringLiteral("退出"));
    exit->setObjectName(QStringLiteral("m_tray_exit"));
    connect(show, &QAction::triggered, this, [this] {
        if (isMinimized())
            showNormal();
        else
            this->show();
        raise();
        activateWindow();
    });
    connect(hide, &QAction::triggered, this, &QWidget::hide);
    connect(exit, &QAction::triggered, this, [this] {
        // A window hidden in the tray closes without ending the event loop by itself.
        if (close()) QCoreApplication::quit();
    });
    connect(tray_, &QSystemTrayIcon::activated, this,
            [show](QSystemTrayIcon::ActivationReason reason) {
                if (reason == QSystemTrayIcon::DoubleClick || reason == QSystemTrayIcon::Trigger)
                    show->trigger();
            });
    tray_->setContextMenu(menu);
    tray_->setToolTip(productCaption());
    tray_->show();
}

PageWidget* TarvelMain::ShowPage(qint16 code, const QString& condition, qint32 recordId,
                                 const QDate& date, qint16 pageNo, PageMode mode) {
    const PageInfo* info = pageInfo(code);
    if (!info) return nullptr;
    const QString caption = pageCaption(*info);
    PageWidget* page = pages_.value(code);
    if (!page) {
        page = makePage(code, pageServices());
        if (!page) return nullptr;
        if (page->objectName().isEmpty()) page->setObjectName(QLatin1String(info->formName));
        page->setWindowTitle(caption);
        // Frameless and maximized, the child windows read as pages of one window.
        QMdiSubWindow* sub = mdi_->addSubWindow(page, Qt::FramelessWindowHint);
        sub->setObjectName(QLatin1String(info->formName) + QStringLiteral("_window"));
        pages_.insert(code, page);
    }

    PageRequest request;
    request.page = code;
    request.condition = condition;
    request.recordId = recordId;
    request.date = date.isValid() ? date : Clock::today();
    request.pageNo = pageNo;
    page->fill(request);

    auto* sub = qobject_cast<QMdiSubWindow*>(page->parentWidget());
    for (QMdiSubWindow* other : mdi_->subWindowList())
        if (other != sub) other->hide();
    if (sub) {
        sub->showMaximized();
        mdi_->setActiveSubWindow(sub);
    }
    currentCode_ = code;
    statusPage_->setText(caption);

    if (mode == PageMode::Normal) history_.AddItem(code, condition, recordId, request.date, pageNo);
    return page;
}

bool TarvelMain::keepUnsavedEdits() {
    if (!anyUnsaved()) return false;
    if (!dialogs_->ask(messageTitle(), unsavedQuestion())) return true;
    // Yes abandons the edits; the flags must not ask again for them.
    clearUnsaved();
    return false;
}

bool TarvelMain::OpenPage(qint16 code, const QString& condition, qint32 recordId) {
    if (keepUnsavedEdits()) return false;
    return ShowPage(code, condition, recordId, Clock::today(), -1, PageMode::Normal) != nullptr;
}

PageWidget* TarvelMain::currentPage() const {
    return pages_.value(currentCode_);
}

void TarvelMain::showHistoryEntry() {
    ShowPage(history_.c_RelatedPage(), history_.c_StrCondition(), history_.c_RecordID(),
             history_.c_Date(), history_.c_PageNo(), PageMode::History);
}

void TarvelMain::Toolbar1ButtonClick(const QString& key) {
    try {
        if (keepUnsavedEdits()) return;
        if (key == QLatin1String("back")) {
            history_.MovePrevious();
            showHistoryEntry();
        } else if (key == QLatin1String("forward")) {
            history_.MoveNext();
            showHistoryEntry();
        } else if (key == QLatin1String("help") || key == QLatin1String("bbs")) {
            const QString address = settingValue(QStringLiteral("website"), key);
            if (!address.isEmpty()) opener_->open(QUrl::fromUserInput(address));
        } else if (const qint16 code = pageForKey(key)) {
            ShowPage(code, QString(), 0, Clock::today(), -1, PageMode::Normal);
        }
    } catch (...) {
        statusBar()->showMessage(QStringLiteral("操作没有完成。"));
    }
}

void TarvelMain::Timer1Timer() {
    if (Clock::today() != lastDay_) {
        // Yesterday's reminders are over; answered now, they would act on
        // today's entries (a repeating one would be stamped as seen today).
        reminders_->closeAll();
        refreshHomePage();
        lastDay_ = Clock::today();
    }
    fireReminders();
}

void TarvelMain::refreshHomePage() {
    ++homeRefreshes_;
    if (FormHome* home = homePage())
        home->refresh();
    else
        today_.load();
    statusDate_->setText(longDate(Clock::today()));
    emit homePageRefreshed(Clock::today());
}

void TarvelMain::fireReminders() {
    if (!reminders_->fireDue()) return;
    if (FormHome* home = homePage()) home->showToday();
}

void TarvelMain::showPlaced() {
    if (place_.maximised)
        showMaximized();
    else
        show();
}

QList<FormSchRemind*> TarvelMain::reminderWindows() const {
    return reminders_->windows();
}

void TarvelMain::closeEvent(QCloseEvent* event) {
    if (anyUnsaved() &&
        !dialogs_->ask(messageTitle(), unsavedQuestion(), Messages::Icon::Information)) {
        event->ignore();
        return;
    }
    timer_->stop();
    if (QString error; !keepPlace(*this, &error))
        dialogs_->info(messageTitle(),
                       QStringLiteral("窗口的大小和位置没有保存，下次将按默认大小打开：") + error);
    if (tray_) tray_->hide();
    reminders_->closeAll();
    event->accept();
}

}  // namespace tarvel
