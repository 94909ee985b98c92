#include "views/lists/formlist.h"

#include <QCheckBox>
#include <QComboBox>
#include <QEvent>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPrintPreviewDialog>
#include <QPrinter>
#include <QPushButton>
#include <QSplitter>
#include <QTableView>
#include <QTimer>
#include <QVBoxLayout>

#include "browse/conditiontext.h"
#include "browse/listsort.h"
#include "browse/listsql.h"
#include "browse/memocolumn.h"
#include "browse/recordsetmodel.h"
#include "browse/tickmodel.h"
#include "browse/unsaved.h"
#include "custom/fsettings.h"
#include "exchange/tableexport.h"
#include "records/kinds.h"
#include "store/clock.h"
#include "views/common/buttons.h"
#include "views/common/filedialogs.h"
#include "views/common/progressrun.h"
#include "views/lists/addresslabels.h"
#include "views/lists/categorypanel.h"
#include "views/lists/duplicatesdialog.h"

namespace tarvel::lists {

namespace {

const char* const kDelete = "删除选定记录";
const char* const kMail = "群发邮件";
const char* const kLabels = "打印标签";
const char* const kRelated = "查看相关";
const char* const kReport = "导出到Tarvel报表";
const char* const kCsv = "导出到Excel/CSV表";
const char* const kSums = "导出预计收益/费用统计表";
const char* const kHtml = "导出到HTML/Word文件";
const char* const kSeparator = "-----";

// Above this many records an export shows its progress and can be cancelled.

QStringList operationsOf(const ListKind& kind) {
    QStringList entries = {QString::fromUtf8(kDelete), QString::fromUtf8(kSeparator)};
    if (kind.number == listno::Contacts)
        entries << QString::fromUtf8(kMail) << QString::fromUtf8(kLabels);
    entries << QString::fromUtf8(kRelated) << QString::fromUtf8(kReport) << QString::fromUtf8(kCsv);
    if (kind.number == listno::Contacts) entries << QString::fromUtf8(kSums);
    entries << QString::fromUtf8(kHtml);
    return entries;
}

}  // namespace

FormList::FormList(const ListKind& kind, QWidget* parent)
    : PageWidget(parent),
      kind_(kind),
      store_(kind),
      rows_(kind),
      dialogs_(std::make_shared<MessageBoxDialogs>(this)),
      files_(std::make_shared<QtFileDialogs>(this)) {
    setObjectName(kind_.formName);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(8, 8, 8, 8);
    layout->setSpacing(6);
    caption_ = new QLabel(this);
    caption_->setObjectName(QStringLiteral("lbl_caption"));
    setHeadingFont(caption_, 1.4);
    auto* heading = new QHBoxLayout;
    heading->addWidget(caption_);
    heading->addSpacing(12);
    buildTopBar(heading);
    layout->addLayout(heading);

    words_ = new QLabel(this);
    words_->setObjectName(QStringLiteral("lbl_condition"));
    words_->setWordWrap(true);
    layout->addWidget(words_);

    auto* splitter = new QSplitter(this);
    panel_ = new CategoryPanel(kind_, splitter);
    connect(panel_, &CategoryPanel::chosen, this,
            [this](const CategoryGroup& group, const QString& label) {
                if (group.match == CategoryGroup::Match::Search) {
                    search_->setFocus();
                    search_->selectAll();
                    return;
                }
                if (keepUnsavedEdits()) return;
                changeCondition(categoryCondition(kind_, group, label, Clock::today()));
            });

    auto* right = new QWidget(splitter);
    auto* rightLayout = new QVBoxLayout(right);
    rightLayout->setContentsMargins(0, 0, 0, 0);
    ticks_ = new TickModel(this);
    ticks_->setSourceModel(rows_.model());
    rows_.setDefaultOrder(keptOrder());
    ticks_->setWriter([this](qint64 id, bool ticked) {
        if (store_.setTick(id, ticked)) return true;
        info(store_.ErrMsg());
        return false;
    });
    grid_ = new QTableView(right);
    grid_->setObjectName(QStringLiteral("dg_listall"));
    grid_->setAccessibleName(kind_.noun + QStringLiteral("列表"));
    grid_->setModel(ticks_);
    grid_->setSelectionBehavior(QAbstractItemView::SelectRows);
    grid_->setSelectionMode(QAbstractItemView::SingleSelection);
    grid_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    grid_->setAlternatingRowColors(true);
    grid_->setWordWrap(false);
    grid_->verticalHeader()->setDefaultSectionSize(grid_->fontMetrics().height() + 8);
    grid_->horizontalHeader()->setSectionsClickable(true);
    grid_->horizontalHeader()->setHighlightSections(false);
    connect(grid_->horizontalHeader(), &QHeaderView::sectionClicked, this, &FormList::sortBy);
    connect(grid_->horizontalHeader(), &QHeaderView::sectionResized, this,
            [this](int column, int, int width) {
                if (applyingColumns_ || column == 0) return;
                pendingWidths_.insert(fieldAt(column), width);
                widthTimer_->start();
            });
    followCurrent();
    connect(grid_, &QTableView::doubleClicked, this,
            [this](const QModelIndex& index) { openRecord(index.row()); });
    rightLayout->addWidget(grid_, 1);
    buildFooter(rightLayout);
    splitter->addWidget(panel_);
    splitter->addWidget(right);
    splitter->setStretchFactor(1, 1);
    splitter->setSizes({200, 800});
    layout->addWidget(splitter, 1);

    searchTimer_ = new QTimer(this);
    searchTimer_->setObjectName(QStringLiteral("tmr_search"));
    searchTimer_->setSingleShot(true);
    searchTimer_->setInterval(300);
    connect(searchTimer_, &QTimer::timeout, this, &FormList::searchNow);
    connect(search_, &QLineEdit::textEdited, searchTimer_, qOverload<>(&QTimer::start));
    connect(search_, &QLineEdit::returnPressed, this, &FormList::searchNow);

    widthTimer_ = new QTimer(this);
    widthTimer_->setObjectName(QStringLiteral("tmr_width"));
    widthTimer_->setSingleShot(true);
    widthTimer_->setInterval(400);
    connect(widthTimer_, &QTimer::timeout, this, &FormList::saveWidths);
}

FormList::~FormList() {
    // A width dragged just before the screen closes is still kept.
    if (widthTimer_->isActive()) saveWidths();
}

void FormList::buildTopBar(QHBoxLayout* bar) {
    auto* label = new QLabel(QStringLiteral("搜索(&S)："), this);
    label->setObjectName(QStringLiteral("lbl_search"));
    search_ = new QLineEdit(this);
    search_->setObjectName(QStringLiteral("txt_search"));
    search_->setClearButtonEnabled(true);
    search_->setPlaceholderText(QStringLiteral("输入文字即时查找") + kind_.noun);
    label->setBuddy(search_);
    auto* find = namedButton(this, QStringLiteral("cmd_search"), QStringLiteral("查找"));
    connect(find, &QPushButton::clicked, this, &FormList::searchNow);
    auto* add = namedButton(this, QStringLiteral("cmd_add"), QStringLiteral("增加"));
    connect(add, &QPushButton::clicked, this, [this] {
        if (keepUnsavedEdits() || !pageSwitch_) return;
        pageSwitch_(kind_.detailPage,
                    QStringLiteral("  WHERE ") + kind_.key + QStringLiteral(" = -1"), 0);
    });
    auto* all = namedButton(this, QStringLiteral("cmd_all"), QStringLiteral("全部") + kind_.noun);
    connect(all, &QPushButton::clicked, this, [this] {
        if (keepUnsavedEdits()) return;
        search_->clear();
        changeCondition(QString());
    });
    bar->addWidget(label);
    bar->addWidget(search_, 1);
    bar->addWidget(find);
    bar->addSpacing(16);
    bar->addWidget(add);
    bar->addWidget(all);
    if (kind_.fieldType == kind::Contact || kind_.fieldType == kind::Account) {
        auto* duplicates =
            namedButton(this, QStringLiteral("cmd_find_duplicates"), QStringLiteral("查找重复"));
        connect(duplicates, &QPushButton::clicked, this, &FormList::findDuplicates);
        bar->addWidget(duplicates);
    }
}

void FormList::findDuplicates() {
    if (keepUnsavedEdits()) return;
    DuplicatesDialog dialog(kind_.fieldType, dialogs_, this);
    if (!dialog.search()) return;
    dialog.exec();
    if (dialog.merged()) refresh();
}

void FormList::changeEvent(QEvent* event) {
    // The main window names the page after the module's toolbar caption.
    if (event->type() == QEvent::WindowTitleChange) caption_->setText(windowTitle());
    PageWidget::changeEvent(event);
}

void FormList::buildFooter(QVBoxLayout* layout) {
    auto* row = new QHBoxLayout;
    selectAll_ = new QCheckBox(this);
    selectAll_->setObjectName(QStringLiteral("chk_select"));
    auto* selectLabel = new QLabel(QStringLiteral("全选(&A)"), this);
    selectLabel->setObjectName(QStringLiteral("lbl_select"));
    selectLabel->setBuddy(selectAll_);
    connect(selectAll_, &QCheckBox::clicked, this, [this](bool on) { tickAll(on ? 0 : 1); });
    auto* invert = flatButton(QStringLiteral("cmd_invert"), QStringLiteral("反选"), this);
    connect(invert, &QPushButton::clicked, this, [this] { tickAll(2); });

    auto* opLabel = new QLabel(QStringLiteral("批量操作(&O)："), this);
    opLabel->setObjectName(QStringLiteral("lbl_operation"));
    operations_ = new QComboBox(this);
    operations_->setObjectName(QStringLiteral("cbo_operation"));
    operations_->addItem(operationCaption());
    operations_->addItems(operationsOf(kind_));
    opLabel->setBuddy(operations_);
    connect(operations_, &QComboBox::activated, this, [this](int index) {
        const QString caption = operations_->itemText(index);
        operations_->setCurrentIndex(0);
        if (index > 0) runOperation(caption);
    });

    const QString prefix = QStringLiteral("lbl_") + kind_.prefix;
    auto* detail = flatButton(prefix + QStringLiteral("detail"), QStringLiteral("详细信息"), this);
    auto* related =
        flatButton(prefix + QStringLiteral("related"), QStringLiteral("相关信息"), this);
    // Both buttons act on the chosen row; without one the user is told so.
    const auto current = [this] {
        const int row = grid_->currentIndex().row();
        if (row < 0)
            info(ticks_->rowCount() == 0
                     ? QStringLiteral("列表中没有%1。").arg(kind_.noun)
                     : QStringLiteral("请先在列表中选择一个%1。").arg(kind_.noun));
        return row;
    };
    connect(detail, &QPushButton::clicked, this, [this, current] { openRecord(current()); });
    connect(related, &QPushButton::clicked, this, [this, current] {
        const int row = current();
        if (!relatedOpener_) return openRecord(row);
        if (row >= 0 && !keepUnsavedEdits()) relatedOpener_(int(ticks_->idAt(row)));
    });

    count_ = new QLabel(this);
    count_->setObjectName(QStringLiteral("lbl_count"));
    row->addWidget(selectAll_);
    row->addWidget(selectLabel);
    row->addWidget(invert);
    row->addSpacing(12);
    row->addWidget(opLabel);
    row->addWidget(operations_);
    row->addSpacing(12);
    row->addWidget(detail);
    row->addWidget(related);
    row->addStretch(1);
    row->addWidget(count_);
    layout->addLayout(row);
}

void FormList::fill(const PageRequest& request) {
    showCondition(request.condition);
    // Back and forward bring a search back with its text.
    search_->setText(searchTextOf(kind_, request.condition));
    // The counts are not needed for the first paint of the grid.
    QTimer::singleShot(0, this, &FormList::recount);
}

void FormList::refresh() {
    rows_.reread();
}

void FormList::rebuildLayout() {
    applyColumns();
}

bool FormList::showCondition(const QString& condition) {
    if (!rows_.show(condition)) return false;
    showConditionText();
    return true;
}

void FormList::followCurrent() {
    connect(&rows_, &ListRows::rowsRead, this, &FormList::applyColumns);
    connect(&rows_, &ListRows::recordsChanged, this, [this] {
        showConditionText();
        recount();
    });
    connect(&rows_, &ListRows::readFailed, this, [this](const QString& error) {
        info(QStringLiteral("列表没有打开，原因可能是") + error);
    });
    connect(&rows_, &ListRows::currentChanged, this, [this](int row) {
        if (grid_->currentIndex().row() != row)
            grid_->setCurrentIndex(row < 0 ? QModelIndex() : ticks_->index(row, 0));
    });
    connect(grid_->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            [this](const QModelIndex& current) {
                rows_.setCurrent(current.isValid() ? current.row() : -1);
            });
}

void FormList::showConditionText() {
    words_->setText(describeCondition(rows_.condition(), &kind_, [this](const QString& column) {
        const FSettings* fields = programFieldSettings(kind_.fieldType);
        return fields ? fields->FindCaption(column) : column;
    }));
    count_->setText(QStringLiteral("共 %1 条").arg(ticks_->rowCount()));
    selectAll_->setChecked(false);
}

void FormList::changeCondition(const QString& condition) {
    if (showCondition(condition) && historyUpdate_) historyUpdate_(rows_.condition());
}

QString FormList::fieldAt(int column) const {
    const RecordsetPtr rs = rows_.model()->recordset();
    QString name = rs ? rs->fieldName(column) : QString();
    // The engine may name a joined column "table.column".
    return name.mid(name.lastIndexOf(QLatin1Char('.')) + 1);
}

void FormList::applyColumns() {
    applyingColumns_ = true;
    const FSettings* fields = programFieldSettings(kind_.fieldType);
    QHeaderView* header = grid_->horizontalHeader();
    for (int c = 0; c < ticks_->columnCount(); ++c) {
        if (c == 0) {
            rows_.model()->setCaption(0, QStringLiteral("选"));
            grid_->setColumnHidden(0, false);
            header->resizeSection(0, 32);
            continue;
        }
        const QString name = fieldAt(c);
        const FSetting* field = nullptr;
        if (fields)
            for (const FSetting& f : *fields)
                if (f.FieldName().compare(name, Qt::CaseInsensitive) == 0) field = &f;
        if (name == kind_.key) ticks_->setKeyColumn(c);
        grid_->setColumnHidden(c, !field || !field->Visible());
        if (!field) continue;
        rows_.model()->setCaption(c, field->Description());
        if (field->FieldWidth() > 0) header->resizeSection(c, field->FieldWidth());
    }
    applyingColumns_ = false;
}

void FormList::saveWidths() {
    widthTimer_->stop();
    for (auto it = pendingWidths_.cbegin(); it != pendingWidths_.cend(); ++it)
        SaveFieldWidth(kind_.fieldType, it.key(), it.value());
    pendingWidths_.clear();
}

void FormList::recount() {
    QString error;
    if (!panel_->recount(&error)) info(QStringLiteral("分类统计没有完成，原因可能是") + error);
}

bool FormList::keepUnsavedEdits() {
    if (!anyUnsaved()) return false;
    if (!dialogs_->ask(messageTitle(), unsavedQuestion())) return true;
    clearUnsaved();
    return false;
}

void FormList::info(const QString& text) {
    dialogs_->info(messageTitle(), text);
}

void FormList::searchNow() {
    searchTimer_->stop();
    const QString text = search_->text();
    const QString condition = searchCondition(kind_.number, text);
    if (condition == splitCondition(rows_.condition()).where) return;
    // Every record's rows are at hand: the search narrows them in memory.
    if (rows_.showSearch(text, condition)) {
        showConditionText();
        if (historyUpdate_) historyUpdate_(condition);
        return;
    }
    changeCondition(condition);
}

void FormList::sortBy(int column) {
    if (column <= 0) return;
    const QString name = fieldAt(column);
    if (isMemoColumn(name)) {
        info(memoSortRefusal());
        return;
    }
    if (keepUnsavedEdits()) return;
    // A list shown in its kept order reverses that order on a click on the
    // same column.
    changeCondition(sortedCondition(withOrder(rows_.condition(), keptOrder()), name));
    // The next start opens the list sorted the same way.
    if (QString error; !keepOrder(kind_.formName, splitCondition(rows_.condition()).order, &error))
        info(QStringLiteral("列表的排序没有记住，原因可能是") + error);
    rows_.setDefaultOrder(keptOrder());
}

QString FormList::keptOrder() const {
    QStringList columns;
    if (const FSettings* fields = programFieldSettings(kind_.fieldType))
        for (const FSetting& f : *fields) columns << f.FieldName();
    return lists::keptOrder(kind_.formName, columns);
}

void FormList::tickAll(int mode) {
    if (!store_.setChecks(mode, rows_.condition())) info(store_.ErrMsg());
    const bool on = mode == 0;
    showCondition(rows_.condition());
    selectAll_->setChecked(on);
}

void FormList::openRecord(int row) {
    if (row < 0 || !pageSwitch_ || keepUnsavedEdits()) return;
    const qint64 id = ticks_->idAt(row);
    pageSwitch_(kind_.detailPage, recordCondition(kind_.fieldType, id), qint32(id));
}

void FormList::runOperation(const QString& caption) {
    if (caption == QString::fromUtf8(kSeparator) || caption == operationCaption()) return;
    if (keepUnsavedEdits() || !requireTicks()) return;
    if (caption == QString::fromUtf8(kDelete))
        deleteTicked();
    else if (caption == QString::fromUtf8(kMail) && pageSwitch_)
        pageSwitch_(page::Email, QStringLiteral(" WHERE con_check=true"), 0);
    else if (caption == QString::fromUtf8(kLabels))
        printLabels();
    else if (caption == QString::fromUtf8(kRelated))
        showRelated();
    else if (caption == QString::fromUtf8(kReport))
        exportReport();
    else if (caption == QString::fromUtf8(kCsv))
        exportCsv(false);
    else if (caption == QString::fromUtf8(kSums))
        exportCsv(true);
    else if (caption == QString::fromUtf8(kHtml))
        exportHtml();
    operations_->setCurrentIndex(0);
}

bool FormList::requireTicks() {
    const QString before = store_.ErrMsg();
    if (store_.anyTicked()) return true;
    info(store_.ErrMsg() != before ? store_.ErrMsg() : noTicksMessage());
    return false;
}

void FormList::deleteTicked() {
    if (!dialogs_->ask(messageTitle(), QStringLiteral("您确定要删除选定的记录吗?"))) return;
    const QList<qint64> ids = store_.tickedIds();
    if (!store_.deleteRecords(ids))
        info(QStringLiteral("删除没有完成，原因可能是") + store_.ErrMsg());
    refresh();
}

void FormList::printLabels() {
    info(QStringLiteral("这个功能是打印您选择的联系人的标签，以便批量发送信函。"));
    QList<AddressLabel> labels;
    QString error;
    if (!readTickedLabels(&labels, &error)) {
        info(QStringLiteral("标签没有读出，原因可能是") + error);
        return;
    }
    if (labelPreview_) {
        labelPreview_(labels);
        return;
    }
    QPrinter printer(QPrinter::HighResolution);
    printer.setPageSize(QPageSize(QPageSize::A4));
    printer.setDocName(QStringLiteral("联系人标签"));
    QPrintPreviewDialog preview(&printer, this);
    preview.setObjectName(QStringLiteral("dlg_labels"));
    preview.setWindowTitle(QStringLiteral("打印标签"));
    connect(&preview, &QPrintPreviewDialog::paintRequested, this,
            [&labels](QPrinter* target) { paintLabels(target, labels); });
    preview.exec();
}

void FormList::showRelated() {
    const RelatedList related = relatedCondition(kind_);
    if (pageSwitch_) pageSwitch_(related.page, related.condition, 0);
}

void FormList::exportReport() {
    // The export tells the user how it ended, success or failure.
    if (reportExport_)
        reportExport_(kind_.fieldType);
    else
        info(QStringLiteral("导出Tarvel报表没有完成!"));
}

void FormList::exportCsv(bool withSums) {
    if (withSums) {
        info(QStringLiteral("这个功能是对每个联系人的费用,预计金额加权总额的统计表,") +
             QStringLiteral("如需要详细内容,请执行导出内容到Word/HTML文档，以查看详细内容"));
        dialogs_->warning(messageTitle(),
                          QStringLiteral("如果您选择的记录比较多,计算速度会比较慢,请耐心等候。"));
    }
    QString path;
    RecordsetPtr rows = tickedForExport(
        QStringLiteral(".xlsx"), QStringLiteral("Excel文件 (*.xlsx);;csv文件 (*.csv)"), &path);
    if (!rows) return;
    ProgressRun progress(this, QStringLiteral("正在导出……"));
    exchange::RowTail tail;
    QString headerTail;
    bool sumsOk = true;
    if (withSums) {
        headerTail = QStringLiteral(
            "总费用(日程活动) , 预计总金额(相关任务/项目), 加权预计总金额(相关任务/项目) ");
        const int key = rows->fieldIndex(kind_.key);
        tail = [this, key, &sumsOk](const Recordset& row) {
            ContactSums sums;
            sumsOk = store_.contactSums(row.value(key).toLongLong(), &sums) && sumsOk;
            return QString::number(sums.outlay) + QStringLiteral(", ") +
                   QString::number(sums.sales) + QStringLiteral(", ") +
                   QString::number(sums.weighted);
        };
    }
    QString error;
    if (!exchange::writeTable(path, exchange::exportColumns(kind_.fieldType, true), *rows,
                              headerTail, tail, progress.callback(), &error))
        info(error);
    else if (!sumsOk)
        info(QStringLiteral("部分统计没有完成，原因可能是") + store_.ErrMsg());
}

void FormList::exportHtml() {
    QString path;
    RecordsetPtr rows =
        tickedForExport(QStringLiteral(".html"), QStringLiteral("HTML文件 (*.html *.htm)"), &path);
    if (!rows) return;
    ProgressRun progress(this, QStringLiteral("正在导出……"));
    QString error;
    if (!exchange::writeHtml(path, QStringLiteral("选定的") + kind_.noun,
                             exchange::exportColumns(kind_.fieldType, false), *rows,
                             progress.callback(), &error))
        info(error);
}

RecordsetPtr FormList::tickedForExport(const QString& suffix, const QString& filter,
                                       QString* path) {
    *path = files_->getSaveFileName(QStringLiteral("请选择要生成的文件名"),
                                    QStringLiteral("output-") + kind_.noun + suffix, filter);
    if (path->isEmpty()) return nullptr;
    RecordsetPtr rows = store_.ticked();
    if (!rows) info(store_.ErrMsg());
    return rows;
}

}  // namespace tarvel::lists
