#include "views/related/formrelated.h"

#include <QDir>
#include <QEvent>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QScrollArea>
#include <QStyledItemDelegate>
#include <QTableView>
#include <QVBoxLayout>

#include "browse/memocolumn.h"
#include "browse/recordsetmodel.h"
#include "browse/relatedkind.h"
#include "browse/savefailure.h"
#include "browse/shownrow.h"
#include "browse/tickmodel.h"
#include "exchange/tableexport.h"
#include "records/account.h"
#include "records/recordsearch.h"
#include "records/relatedcounts.h"
#include "store/jetdate.h"
#include "views/common/accountquestion.h"
#include "views/common/buttons.h"
#include "views/common/namesearch.h"
#include "views/common/overwritequestion.h"
#include "views/related/formaddrelated.h"
#include "views/related/quickedit.h"

namespace tarvel {

namespace {

// The document's file: its folder and name joined with the native separator.
QString documentFile(const QString& folder, const QString& name) {
    if (folder.isEmpty()) return name;
    const QString sep = QDir::separator();
    return QDir::toNativeSeparators(folder).endsWith(sep)
               ? QDir::toNativeSeparators(folder) + name
               : QDir::toNativeSeparators(folder) + sep + name;
}

// Grid cells as the lists show them; a time of day alone (on the time base
// day) shows as the time.
class CellText : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;
    QString displayText(const QVariant& value, const QLocale&) const override {
        if (value.typeId() == QMetaType::QDateTime &&
            value.toDateTime().date() == jetdate::timeBaseDate())
            return value.toDateTime().time().toString(QStringLiteral("HH:mm"));
        return exchange::cellText(value);
    }
};

}  // namespace

QString refusedText(const QString& what, const QString& reason) {
    return saveFailedText(what) + QStringLiteral("\n\n原因：") + reason;
}

struct FormRelated::Section {
    qint16 kind = 0;
    PanelTab tab;
    QWidget* page = nullptr;
    QTableView* grid = nullptr;
    RecordsetModel* model = nullptr;
    DataControl data;
    QuickEdit edit;
    QList<QPushButton*> editing;  // disabled where links may not be edited
    int count = 0;
    QString sortColumn;
    bool ascending = false;
    lists::ShownRow shown;  // the record the quick-edit fields show, as read
};

FormRelated::FormRelated(qint16 ownerKind, QWidget* parent)
    : QWidget(parent),
      ownerKind_(ownerKind),
      form_(this),
      dialogs_(std::make_shared<MessageBoxDialogs>(this)),
      files_(std::make_shared<QtFileDialogs>(this)),
      opener_(std::make_shared<DesktopShellOpener>()) {
    setObjectName(QStringLiteral("form_%1_related").arg(relatedKind(ownerKind).word));
    tabs_ = new QTabWidget(this);
    tabs_->setObjectName(QStringLiteral("tab_related"));
    hint_ = new QLabel(QStringLiteral("保存记录后才能添加和查看相关信息。"), this);
    hint_->setObjectName(QStringLiteral("lbl_hint"));
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(hint_);
    layout->addWidget(tabs_, 1);
    for (qint16 k : relatedKindsOf(ownerKind)) {
        auto s = std::make_unique<Section>();
        s->kind = k;
        buildSection(*s);
        sections_.push_back(std::move(s));
    }
    rebuildLayout();
}

FormRelated::~FormRelated() = default;

void FormRelated::buildSection(Section& s) {
    const RelatedKind& rk = relatedKind(s.kind);
    const QString word = QLatin1String(rk.word);
    s.page = new QWidget(tabs_);
    s.page->setObjectName(QStringLiteral("tab_") + word);
    s.grid = new QTableView(s.page);
    s.grid->setObjectName(QStringLiteral("dgrid_") + word);
    s.grid->setAccessibleName(QString::fromUtf8(rk.caption));
    s.grid->setSelectionBehavior(QAbstractItemView::SelectRows);
    s.grid->setSelectionMode(QAbstractItemView::SingleSelection);
    s.grid->setEditTriggers(QAbstractItemView::NoEditTriggers);
    s.grid->verticalHeader()->hide();
    s.grid->horizontalHeader()->setSectionsClickable(true);
    s.model = new RecordsetModel(s.grid);
    s.grid->setModel(s.model);
    s.grid->setItemDelegate(new CellText(s.grid));
    s.edit = buildQuickEdit(s.kind, ownerKind_, s.page);

    Section* sp = &s;
    s.data.onRefreshed = [sp] { sp->model->setRecordset(sp->data.Recordset); };
    connect(s.grid->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            [this, sp](const QModelIndex& current) {
                if (current.isValid()) chooseRow(*sp, current.row());
            });
    // Clicking the row already current shows it again (after "new", say).
    connect(s.grid, &QTableView::clicked, this, [this, sp](const QModelIndex& index) {
        if (sp->model->moveTo(index.row()) &&
            sp->model->recordset()->value(0).toInt() != shownId(*sp))
            chooseRow(*sp, index.row());
    });
    connect(s.grid, &QTableView::doubleClicked, this, [this, sp](const QModelIndex& index) {
        chooseRow(*sp, index.row());
        if (recordOpener_ && shownId(*sp) != 0) recordOpener_(sp->kind, shownId(*sp));
    });
    connect(s.grid->horizontalHeader(), &QHeaderView::sectionClicked, this,
            [this, sp](int column) { sortBy(*sp, column); });

    auto* editArea = new QScrollArea(s.page);
    editArea->setWidgetResizable(true);
    editArea->setFrameShape(QFrame::NoFrame);
    auto* editPane = new QWidget(editArea);
    auto* editLayout = new QVBoxLayout(editPane);
    editLayout->setContentsMargins(0, 0, 0, 0);
    editLayout->addWidget(s.edit.box);
    editLayout->addWidget(buildButtons(s));
    editLayout->addStretch(1);
    editArea->setWidget(editPane);

    auto* row = new QHBoxLayout(s.page);
    row->addWidget(s.grid, 3);
    row->addWidget(editArea, 2);
    QWidget* previous = s.grid;
    for (QWidget* w : s.edit.inputs) {
        setTabOrder(previous, w);
        previous = w;
    }
    for (QPushButton* b : editPane->findChildren<QPushButton*>()) {
        setTabOrder(previous, b);
        previous = b;
    }
    connectSearches(s);
    tabs_->addTab(s.page, QString::fromUtf8(rk.caption));
}

QWidget* FormRelated::buildButtons(Section& s) {
    const QString word = QLatin1String(relatedKind(s.kind).word);
    auto* bar = new QWidget(s.page);
    auto* rows = new QVBoxLayout(bar);
    rows->setContentsMargins(0, 0, 0, 0);
    auto* row = new QHBoxLayout;
    // The kind's own actions go on a second row, so a narrow panel keeps them in view.
    auto* extra = new QHBoxLayout;
    rows->addLayout(row);
    rows->addLayout(extra);
    Section* sp = &s;
    auto* cmdNew =
        namedButton(bar, QStringLiteral("cmd_%1_new").arg(word), QStringLiteral("新建(&W)"));
    auto* cmdSave =
        namedButton(bar, QStringLiteral("cmd_%1_save").arg(word), QStringLiteral("保存(&S)"));
    auto* cmdDelete = namedButton(bar, QStringLiteral("cmd_%1_delete").arg(word),
                                  QStringLiteral("删除相关性(&L)"));
    auto* cmdAdd = namedButton(
        bar, QStringLiteral("cmd_%1_addrelated").arg(word),
        QStringLiteral("添加已有%1(&A)…").arg(QString::fromUtf8(relatedKind(s.kind).caption)));
    s.editing = {cmdNew, cmdSave, cmdDelete, cmdAdd};
    connect(cmdNew, &QPushButton::clicked, this, [this, sp] { newEntry(*sp); });
    connect(cmdSave, &QPushButton::clicked, this, [this, sp] { save(*sp); });
    connect(cmdDelete, &QPushButton::clicked, this, [this, sp] { unlink(*sp); });
    connect(cmdAdd, &QPushButton::clicked, this, [this, sp] { openAddRelated(sp->kind); });
    for (QPushButton* b : s.editing) row->addWidget(b);
    if (s.kind == kind::Document) {
        auto* choose =
            namedButton(bar, QStringLiteral("cmd_doc_add"), QStringLiteral("选择文件(&F)…"));
        auto* open =
            namedButton(bar, QStringLiteral("img_doc_open"), QStringLiteral("打开文件(&O)"));
        s.editing << choose;
        connect(choose, &QPushButton::clicked, this, [this] { chooseDocumentFile(); });
        connect(open, &QPushButton::clicked, this, [this] { openDocument(); });
        extra->addWidget(choose);
        extra->addWidget(open);
        for (const char* name : {"txt_doc_name", "txt_doc_path"})
            control(name)->installEventFilter(this);
    }
    if (s.kind == kind::Task) {
        auto* refresh =
            namedButton(bar, QStringLiteral("lbl_refresh"), QStringLiteral("刷新摘要(&R)"));
        refresh->setFlat(true);
        auto* newTask =
            namedButton(bar, QStringLiteral("cmd_sch_newtask"), QStringLiteral("在日程页新建(&T)"));
        s.editing << newTask;
        connect(refresh, &QPushButton::clicked, this, [this, sp] { refreshSection(*sp); });
        connect(newTask, &QPushButton::clicked, this, [this] {
            if (newTaskOpener_ && ownerId_ != 0) newTaskOpener_(ownerKind_, ownerId_);
        });
        extra->addWidget(refresh);
        extra->addWidget(newTask);
    }
    row->addStretch(1);
    extra->addStretch(1);
    return bar;
}

// The name boxes offer matching records while the user types: a contact or
// a deal is shown in its section, an account taken into the contact's.
void FormRelated::connectSearches(Section& s) {
    auto listOf = [this](const char* name) {
        auto* list = static_cast<QListWidget*>(control(name));
        return std::make_pair(
            list, qobject_cast<QWidget*>(list->property("buddyLabel").value<QObject*>()));
    };
    auto box = [this](const char* name) { return static_cast<QLineEdit*>(control(name)); };
    Section* sp = &s;
    auto showChosen = [this, sp](int id) { showInSection(*sp, id); };
    if (s.kind == kind::Contact) {
        const auto [contacts, contactsLabel] = listOf("lst_contacts");
        auto* names = new NameSearch(
            box("txt_con_name"), contacts,
            [this](const QString& text) {
                return recordsearch::panelContacts(text,
                                                   ownerKind_ == kind::Contact ? ownerId_ : 0);
            },
            QStringLiteral(" - "), this);
        names->setListLabel(contactsLabel);
        connect(names, &NameSearch::chosen, this, showChosen);
        const auto [accounts, accountsLabel] = listOf("lst_accounts");
        auto* accountNames = new NameSearch(
            box("txt_con_account"), accounts,
            [](const QString& text) { return recordsearch::accountsByName(text); }, QString(),
            this);
        accountNames->setListLabel(accountsLabel);
        connect(accountNames, &NameSearch::chosen, this, &FormRelated::takeAccount);
        // A typed name is no longer the account chosen from the list.
        connect(box("txt_con_account"), &QLineEdit::textEdited, this,
                [this] { chosenAccount_ = 0; });
    }
    if (s.kind == kind::Opportunity) {
        const auto [deals, dealsLabel] = listOf("lst_opportunities");
        auto* subjects = new NameSearch(
            box("txt_opp_name"), deals,
            [](const QString& text) { return recordsearch::opportunitiesBySubject(text); },
            QString(), this);
        subjects->setListLabel(dealsLabel);
        connect(subjects, &NameSearch::chosen, this, showChosen);
    }
}

// An existing account chosen for the contact: its name and address, and its
// key for the save.
void FormRelated::takeAccount(int id) {
    Account account;
    account.setID(id);
    if (!account.GetById()) {
        tell(account.ErrMsg());
        return;
    }
    chosenAccount_ = id;
    form_.setProperty(QStringLiteral("bCantChgFlag_AccName"), true);
    form_.setControlValue(QStringLiteral("txt_con_account"), account.AccName());
    form_.setProperty(QStringLiteral("bCantChgFlag_AccName"), false);
    form_.setControlValue(QStringLiteral("txt_con_accaddr"), account.Address());
}

void FormRelated::rebuildLayout() {
    const QList<PanelTab> layout = readPanelLayout(ownerKind_);
    for (const PanelTab& tab : layout)
        if (Section* s = section(tab.kind)) {
            s->tab = tab;
            tabs_->setTabVisible(tabs_->indexOf(s->page), tab.visible);
            for (QPushButton* b : s->editing) b->setEnabled(tab.editable);
        }
    showRecord(ownerId_);
}

void FormRelated::showRecord(int id) {
    ownerId_ = id;
    form_.setProperty(QLatin1String(panel::RecordId), id);
    hint_->setVisible(id == 0);
    for (auto& s : sections_) {
        s->page->setEnabled(id != 0);
        s->sortColumn.clear();
        if (id == 0) {
            s->data.Recordset.reset();
            s->model->setRecordset(nullptr);
        } else {
            refreshSection(*s);
        }
        newEntry(*s);
    }
    refreshCounts();
}

void FormRelated::refreshSection(Section& s) {
    if (ownerId_ == 0) return;
    QString error;
    if (!relatedrecords::setQuery(s.kind, form_, s.data, ownerId_, error))
        tell(error);
    else
        keepSortOrder(s);
    applyCaptions(s);
    clearChoice(s);
}

// A grid read again keeps the order the user chose, with the record of the
// section still its current row.
void FormRelated::keepSortOrder(Section& s) {
    if (s.sortColumn.isEmpty()) return;
    QString error;
    if (!relatedrecords::sort(s.data, s.sortColumn, s.ascending, error)) return tell(error);
    Recordset& rs = *s.data.Recordset;
    if (const int id = shownId(s); id != 0 && rs.MoveFirst())
        rs.Find(rs.fieldName(0) + QStringLiteral(" = ") + QString::number(id));
}

void FormRelated::refreshCounts() {
    RelatedCounts counts;
    const bool ok = ownerId_ == 0 || counts.read(ownerKind_, ownerId_);
    if (!ok) tell(counts.ErrMsg());
    for (auto& s : sections_) {
        s->count = counts.count(s->kind);
        const int at = tabs_->indexOf(s->page);
        tabs_->setTabText(at, ownerId_ == 0 || !ok
                                  ? s->tab.caption
                                  : s->tab.caption + QStringLiteral("(%1)").arg(s->count));
    }
}

// The record classes caption every column but the hidden key.
void FormRelated::applyCaptions(Section& s) {
    const QStringList captions = form_.controlItems(s.grid->objectName());
    for (int i = 0; i < captions.size(); ++i) s.model->setCaption(i + 1, captions[i]);
    if (s.model->columnCount() > 1) {
        s.grid->setColumnHidden(0, true);
        // The name column shows whole names.
        s.grid->resizeColumnToContents(1);
    }
}

// The grid follows the record the record class positioned its rows on.
void FormRelated::selectCurrentRow(Section& s) {
    const int row = s.model->currentRow();
    const QSignalBlocker block(s.grid->selectionModel());
    if (row < 0) {
        s.grid->selectionModel()->clearCurrentIndex();
        s.grid->clearSelection();
    } else {
        s.grid->selectRow(row);
    }
}

// A fresh list shows no row as chosen until the user chooses one.
void FormRelated::clearChoice(Section& s) {
    const QSignalBlocker block(s.grid->selectionModel());
    s.grid->selectionModel()->clearCurrentIndex();
    s.grid->clearSelection();
}

void FormRelated::chooseRow(Section& s, int row) {
    if (!s.model->moveTo(row)) return;
    showInSection(s, s.model->recordset()->value(0).toInt());
}

void FormRelated::showInSection(Section& s, int id) {
    QString error;
    if (!relatedrecords::show(s.kind, form_, s.data, id, error)) tell(error);
    s.shown.remember(s.kind, shownId(s));
    if (s.kind == kind::Contact) {
        shownAccount_ = form_.controlValue(QStringLiteral("txt_con_account")).toString();
        chosenAccount_ = 0;
    }
}

void FormRelated::newEntry(Section& s) {
    if (s.kind == kind::Task) {
        if (ownerId_ != 0) showInSection(s, 0);
    } else {
        for (QWidget* w : s.edit.inputs)
            if (!qobject_cast<QListWidget*>(w)) form_.setControlValue(w->objectName(), QVariant());
    }
    form_.setProperty(QLatin1String(relatedKind(s.kind).shownId), 0);
    form_.setProperty(QStringLiteral("OldAccountID"), 0);
    shownAccount_.clear();
    chosenAccount_ = 0;
    clearChoice(s);
}

int FormRelated::shownId(const Section& s) const {
    return form_.property(QLatin1String(relatedKind(s.kind).shownId)).toInt();
}

bool FormRelated::askAccountQuestions(int contactId, relatedrecords::AccountChoice& choice) {
    const int oldAccount = form_.property(QStringLiteral("OldAccountID")).toInt();
    const AccountEdit edit{
        form_.controlValue(QStringLiteral("txt_con_account")).toString(),
        !form_.controlValue(QStringLiteral("txt_con_accaddr")).toString().trimmed().isEmpty(),
        contactId == 0 || chosenAccount_ != 0 ? 0 : oldAccount, shownAccount_};
    const AccountAnswer answer = tarvel::askAccountQuestions(
        *dialogs_, edit,
        QStringLiteral("您没有填写客户单位名称，是否要放弃填写客户信息？\n"
                       "提示：点击[是]，系统只会放弃保存客户信息，联系人其他信息仍会保存！"));
    if (!answer.proceed && accountQuestion(edit) == AccountQuestion::DropAccountData)
        control("txt_con_account")->setFocus();
    choice.chosen = chosenAccount_;
    choice.rename = answer.rename;
    choice.newAccount = answer.newAccount;
    return answer.proceed;
}

bool FormRelated::mayOverwrite(Section& s, int* id) {
    QString error;
    if (*id == 0 || s.shown.id() != *id) return true;
    if (!s.shown.check(&error)) {
        tell(error);
        return false;
    }
    const SaveAnswer answer =
        askBeforeOverwrite(*dialogs_, s.shown, QString::fromUtf8(relatedKind(s.kind).caption));
    if (answer == SaveAnswer::Stop) return false;
    if (answer == SaveAnswer::SaveAsNew) {
        *id = 0;
        form_.setProperty(QLatin1String(relatedKind(s.kind).shownId), 0);
    }
    return true;
}

void FormRelated::save(Section& s) {
    if (ownerId_ == 0) return;
    int id = shownId(s);
    const char* nameBox = relatedKind(s.kind).nameBox;
    if (form_.controlValue(QLatin1String(nameBox)).toString().trimmed().isEmpty()) {
        tell(QStringLiteral("请先填写名称再保存。"));
        control(nameBox)->setFocus();
        return;
    }
    relatedrecords::AccountChoice choice;
    if (s.kind == kind::Contact && !askAccountQuestions(id, choice)) return;
    // Someone may have changed or deleted the record since the fields showed it.
    if (!mayOverwrite(s, &id)) return;
    QString error;
    bool refused = false;
    if (!relatedrecords::save(s.kind, form_, s.data, ownerKind_, ownerId_, id, choice, error,
                              refused)) {
        tell(refused ? refusedText(s.tab.caption, error) : error);
        refreshSection(s);
        return;
    }
    // A new record was added to the grid's own rows: the grid takes their number again.
    s.model->reload();
    keepSortOrder(s);
    applyCaptions(s);
    selectCurrentRow(s);
    showInSection(s, shownId(s));
    changed();
}

void FormRelated::unlink(Section& s) {
    const QModelIndexList chosen = s.grid->selectionModel()->selectedRows();
    if (ownerId_ == 0 || chosen.isEmpty() || !s.model->moveTo(chosen.first().row())) {
        tell(QStringLiteral("请先在表格中选择要删除相关性的记录。"));
        return;
    }
    const int other = s.model->recordset()->value(0).toInt();
    const QString question = s.kind == kind::Opportunity
                                 ? QStringLiteral("您确定删除和此单位的相关性？")
                                 : QStringLiteral("您确定删除和此记录的相关性？");
    if (!dialogs_->ask(questionTitle(), question)) return;
    QString error;
    if (!relatedrecords::unlink(ownerKind_, ownerId_, s.kind, other, error))
        tell(refusedText(QStringLiteral("删除相关性"), error));
    refreshSection(s);
    newEntry(s);
    changed();
}

void FormRelated::sortBy(Section& s, int column) {
    if (!s.data.Recordset || column < 0 || column >= s.data.Recordset->FieldCount()) return;
    const QString field = s.data.Recordset->fieldName(column);
    if (isMemoColumn(field)) {
        tell(memoSortRefusal());
        return;
    }
    s.ascending = s.sortColumn == field ? !s.ascending : true;
    s.sortColumn = field;
    QString error;
    if (!relatedrecords::sort(s.data, field, s.ascending, error)) tell(error);
    applyCaptions(s);
}

void FormRelated::chooseDocumentFile() {
    const QString file = files_->getOpenFileName(QStringLiteral("选择文档"), QString(),
                                                 QStringLiteral("所有文件 (*)"));
    if (file.isEmpty()) return;
    if (Section* s = section(kind::Document)) newEntry(*s);
    const QFileInfo info(file);
    form_.setControlValue(QStringLiteral("txt_doc_name"), info.fileName());
    form_.setControlValue(QStringLiteral("txt_doc_path"),
                          QDir::toNativeSeparators(info.absolutePath()));
}

void FormRelated::openDocument() {
    const QString name = form_.controlValue(QStringLiteral("txt_doc_name")).toString().trimmed();
    const QString folder = form_.controlValue(QStringLiteral("txt_doc_path")).toString().trimmed();
    if (name.isEmpty()) {
        tell(QStringLiteral("请先选择一个文档。"));
        return;
    }
    const QString file = documentFile(folder, name);
    if (!QFileInfo::exists(file)) {
        tell(QStringLiteral("找不到文件：%1").arg(file));
        return;
    }
    if (!opener_->open(QUrl::fromLocalFile(QDir::fromNativeSeparators(file))))
        tell(QStringLiteral("无法打开文件：%1").arg(file));
}

bool FormRelated::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::MouseButtonDblClick) {
        openDocument();
        return true;
    }
    return QWidget::eventFilter(watched, event);
}

FormAddRelated* FormRelated::openAddRelated(qint16 k) {
    Section* s = section(k);
    if (!s || ownerId_ == 0) return nullptr;
    QSet<int> linked;
    if (const RecordsetPtr rows = s->data.Recordset)
        for (int row = 0; row < rows->RecordCount(); ++row) linked << rows->valueAt(row, 0).toInt();
    auto* dialog =
        new FormAddRelated(ownerKind_, ownerId_, k, s->tab.caption, linked, dialogs_, this);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    connect(dialog, &QDialog::accepted, this, [this, s] {
        refreshSection(*s);
        changed();
    });
    dialog->open();
    return dialog;
}

// After any change of links or related records: counts and the host page.
void FormRelated::changed() {
    refreshCounts();
    emit linksChanged();
}

FormRelated::Section* FormRelated::section(qint16 k) const {
    for (const auto& s : sections_)
        if (s->kind == k) return s.get();
    return nullptr;
}

QWidget* FormRelated::control(const char* name) const {
    return findChild<QWidget*>(QLatin1String(name));
}

void FormRelated::tell(const QString& text) const {
    if (dialogs_) dialogs_->info(messageTitle(), text);
}

}  // namespace tarvel
