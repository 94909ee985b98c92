#include "views/details/formdetail.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDateEdit>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScrollArea>
#include <QSplitter>
#include <QTimer>
#include <QVBoxLayout>

#include "browse/listkind.h"
#include "browse/listrows.h"
#include "browse/liststore.h"
#include "browse/unsaved.h"
#include "custom/appsettings.h"
#include "custom/fsettings.h"
#include "custom/softwaresetting.h"
#include "records/columnlimit.h"
#include "records/currency.h"
#include "records/kinds.h"
#include "views/common/buttons.h"
#include "views/common/namesearch.h"
#include "views/common/overwritequestion.h"
#include "views/details/detailcolumns.h"
#include "views/details/detaillayout.h"
#include "views/details/recordfields.h"
#include "views/options/formoption.h"
#include "views/options/optionwidgets.h"

namespace tarvel {

namespace {

// The module key of the interface layout for a list's prefix.
QString moduleKey(const QString& prefix) {
    const RecordKindInfo* k = kindByPrefix(prefix);
    return k ? QLatin1String(k->moduleKey) : QString();
}

// Used when the setting is missing: the text is appended to the address.
QString defaultSearch(const char* key) {
    return qstrcmp(key, "se_map") == 0 ? QStringLiteral("https://map.baidu.com/search/?wd=")
                                       : QStringLiteral("https://www.baidu.com/s?wd=");
}

}  // namespace

FormDetail::FormDetail(int list, const char* objectName, bool contactNavigation, QWidget* parent)
    : PageWidget(parent),
      dialogs_(std::make_shared<MessageBoxDialogs>(this)),
      kind_(lists::listKind(list)),
      moduleCaption_(kind_.noun),
      opener_(std::make_shared<DesktopShellOpener>()) {
    setObjectName(QLatin1String(objectName));

    title_ = new QLabel(this);
    title_->setObjectName(QStringLiteral("lbl_title"));
    setHeadingFont(title_, 1.3);
    position_ = new QLabel(this);
    position_->setObjectName(QStringLiteral("lbl_position"));
    // Says which box is full while the user types into it.
    limitNote_ = new QLabel(this);
    limitNote_->setObjectName(QStringLiteral("lbl_limit_note"));
    limitNote_->setAccessibleName(QStringLiteral("输入提示"));
    limitNote_->setForegroundRole(QPalette::PlaceholderText);
    limitNote_->hide();

    struct Step {
        const char* contactName;
        const char* otherName;
        const char* text;
        void (FormDetail::*slot)();
    };
    const Step steps[] = {{"lbl_first", "lbl_movefirst", "第一条", &FormDetail::moveFirst},
                          {"lbl_previous", "lbl_moveprevious", "上一条", &FormDetail::movePrevious},
                          {"lbl_next", "lbl_movenext", "下一条", &FormDetail::moveNext},
                          {"lbl_last", "lbl_MoveEnd", "最后一条", &FormDetail::moveLast}};
    auto* header = new QHBoxLayout;
    header->addWidget(title_, 1);
    header->addWidget(limitNote_);
    header->addSpacing(8);
    header->addWidget(position_);
    for (const Step& s : steps) {
        auto* b = flatButton(QLatin1String(contactNavigation ? s.contactName : s.otherName),
                             QString::fromUtf8(s.text), this);
        connect(b, &QPushButton::clicked, this, s.slot);
        header->addWidget(b);
        headerButtons_.append(b);
    }
    header->addSpacing(16);
    auto* saveButton = flatButton(QStringLiteral("lbl_save"), QStringLiteral("保存(&S)"), this);
    auto* deleteButton = flatButton(QStringLiteral("lbl_delete"), QStringLiteral("删除(&D)"), this);
    connect(saveButton, &QPushButton::clicked, this, &FormDetail::save);
    connect(deleteButton, &QPushButton::clicked, this, &FormDetail::deleteRecord);
    header->addWidget(saveButton);
    header->addWidget(deleteButton);
    headerButtons_.prepend(deleteButton);
    headerButtons_.prepend(saveButton);

    fields_ = new QWidget;
    fields_->setObjectName(QStringLiteral("fra_fields"));
    auto* scroll = new QScrollArea;
    scroll->setObjectName(QStringLiteral("scr_fields"));
    scroll->setWidgetResizable(true);
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setWidget(fields_);
    related_ = new QWidget;
    related_->setObjectName(QStringLiteral("fra_related"));
    related_->setFocusPolicy(Qt::StrongFocus);
    related_->setAccessibleName(QStringLiteral("相关信息"));
    auto* relatedLayout = new QVBoxLayout(related_);
    relatedLayout->setContentsMargins(0, 0, 0, 0);
    splitter_ = new QSplitter(Qt::Vertical, this);
    splitter_->setObjectName(QStringLiteral("spl_detail"));
    splitter_->addWidget(scroll);
    splitter_->addWidget(related_);
    splitter_->setStretchFactor(0, 3);
    splitter_->setStretchFactor(1, 2);
    splitter_->setChildrenCollapsible(false);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(12, 8, 12, 8);
    layout->addLayout(header);
    layout->addWidget(splitter_, 1);
}

lists::ListRows* FormDetail::rows() const {
    return rows_ ? rows_() : nullptr;
}

qint16 FormDetail::listPage() const {
    return kind_.page;
}

QString FormDetail::objectCode() const {
    return kind_.prefix;
}

void FormDetail::info(const QString& text) {
    dialogs_->info(messageTitle(), text);
}

void FormDetail::fill(const PageRequest& request) {
    int id = request.recordId;
    if (id == 0) id = int(recordOfCondition(request.condition));
    showRecord(id);
    // Once the page is in view, so that the area can take the focus.
    if (request.pageNo == 1) QTimer::singleShot(0, this, &FormDetail::showRelated);
}

void FormDetail::reload() {
    showRecord(recordId_);
}

void FormDetail::refresh() {
    if (modified_) return;
    QString error;
    if (recordId_ != 0 && shown_.check(&error) && shown_.found() == lists::ShownRow::Since::Deleted)
        return showRecord(0);
    reload();
}

qint16 FormDetail::recordCode() const {
    const RecordKindInfo* k = kindByListNumber(kind_.number);
    return k ? k->code : 0;
}

void FormDetail::showRelated() {
    const int total = splitter_->height();
    splitter_->setSizes({total / 2, total - total / 2});
    related_->setFocus();
}

void FormDetail::showRecord(int id) {
    limitNote_->hide();
    loading_ = true;
    QString error;
    const bool ok = showFields(id, &error);
    loading_ = false;
    recordId_ = ok ? id : 0;
    QString unread;
    if (ok) shown_.remember(recordCode(), recordId_, &unread);
    if (!ok) {
        info(QStringLiteral("记录没有读出，原因可能是") + error);
        showFields(0, &error);
    }
    setModified(false);
    updateHeader();
    emit recordShown(recordId_);
}

void FormDetail::setModified(bool value) {
    modified_ = value;
    setUnsaved(kind_.module, value);
}

void FormDetail::updateHeader() {
    const QString name = recordName();
    title_->setText(name.isEmpty() ? moduleCaption_ : moduleCaption_ + QStringLiteral("：") + name);
    position_->setText(positionText());
}

QString FormDetail::positionText() const {
    lists::ListRows* r = rows();
    int position = 1, count = 1;
    if (r && recordId_ == 0) {
        position = count = r->count() + 1;
    } else if (r && r->currentKey() == recordId_) {
        position = r->current() + 1;
        count = r->count();
    }
    return QStringLiteral("No. %1/%2").arg(position).arg(count);
}

void FormDetail::rebuildLayout() {
    // Refilled lists are no edit of the record.
    const bool was = loading_;
    loading_ = true;
    applyCaptions();
    for (const Option& o : std::as_const(options_))
        if (o.combo) FillOptionCombo(o.combo, objectCode(), o.option);
    if (lstTag_) {
        const QString tags = tagText();
        FillOptionList(lstTag_, objectCode(), QStringLiteral("tag"));
        showTags(tags);
    }
    loading_ = was;
    updateHeader();
}

void FormDetail::applyCaptions() {
    FSettings fields;
    fields.GetMySetting(kind_.fieldType);
    for (const Caption& c : std::as_const(captions_)) {
        if (!c.label) continue;
        QString caption = fields.FindCaption(QLatin1String(c.column)).trimmed();
        if (caption.isEmpty() || caption == QStringLiteral("无")) caption = c.fallback;
        c.label->setText(caption + QStringLiteral("："));
        // A screen reader finds a buddy's caption only among its siblings; a
        // field that shares its row with buttons is named directly.
        if (QWidget* field = c.label->buddy();
            field && field->parentWidget() != c.label->parentWidget())
            field->setAccessibleName(caption);
    }
    AppSettings modules;
    if (modules.GetToolbarName(0)) {
        const int at = modules.FindIndex(moduleKey(kind_.prefix));
        if (at > 0 && !modules.Item(at).ObjDesc().trimmed().isEmpty())
            moduleCaption_ = modules.Item(at).ObjDesc().trimmed();
    }
}

QWidget* FormDetail::field(const char* name) const {
    return fields_->findChild<QWidget*>(QLatin1String(name));
}

QPlainTextEdit* FormDetail::arrangeColumns(std::initializer_list<QWidget*> left,
                                           std::initializer_list<QWidget*> right) {
    auto* memo = make<QPlainTextEdit>("rtxt_memo");
    new DetailColumns(this, fields_, splitter_, QList<QWidget*>(left), QList<QWidget*>(right),
                      memoSection(fields_, memo));
    return memo;
}

QListWidget* FormDetail::matchList(const char* name, const QString& accessibleName) {
    auto* list = make<QListWidget>(name);
    list->setAccessibleName(accessibleName);
    list->setMaximumHeight(110);
    return list;
}

NameSearch* FormDetail::searchNames(QLineEdit* box, QListWidget* matches,
                                    std::function<QString(const QString&)> statement,
                                    bool withAccount, bool showChosen) {
    auto* search = new NameSearch(box, matches, std::move(statement),
                                  withAccount ? QStringLiteral("  @  ") : QString(), this);
    connect(search, &NameSearch::failed, this,
            [this](const QString& e) { info(QStringLiteral("没有能查找，原因可能是") + e); });
    if (showChosen)
        connect(search, &NameSearch::chosen, this, [this](int id) {
            if (mayLeave()) showRecord(id);
        });
    return search;
}

QCheckBox* FormDetail::addPrivateBox(QFormLayout* form) {
    auto* box = make<QCheckBox>("chk_private");
    box->setText(QStringLiteral("私人(&P)"));
    form->addRow(QString(), box);
    return box;
}

QWidget* FormDetail::finishBasicSection(QFormLayout* form, const char* tagColumn,
                                        QCheckBox** privateBox) {
    auto* tags = tagEditor();
    addRow(form, field("txt_tag"), tagColumn, QStringLiteral("标签"), tags);
    *privateBox = addPrivateBox(form);
    return sectionBox(fields_, "fra_basic", QStringLiteral("基本信息"), form);
}

void FormDetail::addWebRow(QFormLayout* form, const char* name, const char* button,
                           const QString& buttonName, const char* column, const QString& caption) {
    auto* web = make<QLineEdit>(name);
    auto* visit = iconButton(button, QStringLiteral("访问"), buttonName);
    connect(visit, &QPushButton::clicked, this, [this, web] { openWebPage(web->text()); });
    addRow(form, web, column, caption, lineOf(fields_, {web, visit}));
}

void FormDetail::addMapRow(QFormLayout* form, const char* name, const char* button,
                           const QString& buttonName, const char* column, const QString& caption) {
    auto* address = make<QLineEdit>(name);
    auto* map = iconButton(button, QStringLiteral("地图"), buttonName);
    connect(map, &QPushButton::clicked, this,
            [this, address] { webSearch("se_map", address->text()); });
    addRow(form, address, column, caption, lineOf(fields_, {address, map}));
}

QLabel* FormDetail::captionFor(QWidget* field, const char* column, const QString& fallback) {
    auto* label = new QLabel(fallback + QStringLiteral("："), fields_);
    label->setBuddy(field);
    captions_.append({label, column, fallback});
    return label;
}

void FormDetail::addRow(QFormLayout* form, QWidget* field, const char* column,
                        const QString& fallback, QWidget* shown) {
    form->addRow(captionFor(field, column, fallback), shown ? shown : field);
}

QPushButton* FormDetail::iconButton(const char* objectName, const QString& symbol,
                                    const QString& name) {
    auto* b = flatButton(QLatin1String(objectName), symbol, fields_);
    tabChain_.append(b);
    b->setAccessibleName(name);
    b->setToolTip(name);
    b->setMaximumWidth(b->fontMetrics().horizontalAdvance(symbol) + 16);
    return b;
}

QWidget* FormDetail::optionCombo(QComboBox* combo, const char* button, const QString& option,
                                 const QString& fieldWord) {
    combo->setEditable(true);
    combo->setInsertPolicy(QComboBox::NoInsert);
    FillOptionCombo(combo, objectCode(), option);
    options_.append({combo, option});
    auto* edit = iconButton(button, QStringLiteral("…"), QStringLiteral("编辑") + fieldWord);
    connect(edit, &QPushButton::clicked, this, [this, combo, option, fieldWord] {
        runOptionEditor(this, QStringLiteral("combobox"), combo, objectCode(), option, kind_.noun,
                        fieldWord);
        FillOptionCombo(combo, objectCode(), option);
    });
    auto* row = new QWidget(fields_);
    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(combo, 1);
    layout->addWidget(edit);
    return row;
}

void FormDetail::addOptionRows(QFormLayout* form, std::initializer_list<OptionField> fields) {
    for (const OptionField& f : fields) {
        auto* combo = make<QComboBox>(f.name);
        const QString caption = QString::fromUtf8(f.caption);
        addRow(form, combo, f.column, caption,
               optionCombo(combo, f.button, QLatin1String(f.option), caption));
    }
}

QWidget* FormDetail::tagEditor() {
    txtTag_ = make<QLineEdit>("txt_tag");
    auto* edit = iconButton("Img_tag", QStringLiteral("…"), QStringLiteral("编辑标签"));
    lstTag_ = make<QListWidget>("Lst_tag");
    lstTag_->setAccessibleName(QStringLiteral("标签列表"));
    lstTag_->setMaximumHeight(90);
    lstTag_->setFlow(QListView::LeftToRight);
    lstTag_->setWrapping(true);
    FillOptionList(lstTag_, objectCode(), QStringLiteral("tag"));
    connect(edit, &QPushButton::clicked, this, [this] {
        const QString tags = tagText();
        runOptionEditor(this, QStringLiteral("listbox"), lstTag_, objectCode(),
                        QStringLiteral("tag"), kind_.noun, QStringLiteral("标签"));
        FillOptionList(lstTag_, objectCode(), QStringLiteral("tag"));
        loading_ = true;
        showTags(tags);
        loading_ = false;
    });
    // Ticking a tag writes the ticked ones into the text, in the list's order.
    connect(lstTag_, &QListWidget::itemChanged, this, [this] {
        if (loading_) return;
        QStringList ticked;
        for (int i = 0; i < lstTag_->count(); ++i)
            if (lstTag_->item(i)->checkState() == Qt::Checked) ticked << lstTag_->item(i)->text();
        txtTag_->setText(ticked.join(QLatin1Char(',')));
    });
    auto* box = new QWidget(fields_);
    auto* layout = new QVBoxLayout(box);
    layout->setContentsMargins(0, 0, 0, 0);
    auto* top = new QHBoxLayout;
    top->addWidget(txtTag_, 1);
    top->addWidget(edit);
    layout->addLayout(top);
    layout->addWidget(lstTag_);
    return box;
}

void FormDetail::showTags(const QString& tags) {
    if (!txtTag_) return;
    txtTag_->setText(tags);
    const QStringList parts = tags.split(QLatin1Char(','), Qt::SkipEmptyParts);
    for (int i = 0; i < lstTag_->count(); ++i) {
        QListWidgetItem* item = lstTag_->item(i);
        item->setFlags(item->flags() | Qt::ItemIsUserCheckable);
        item->setCheckState(parts.contains(item->text().trimmed()) ? Qt::Checked : Qt::Unchecked);
    }
}

QString FormDetail::tagText() const {
    if (!txtTag_) return QString();
    return columnlimit::cut(txtTag_->text(),
                            columnlimit::width(objectCode() + QStringLiteral("_tag")));
}

void FormDetail::finishFields() {
    if (txtTag_)
        limitField(txtTag_, columnlimit::width(objectCode() + QStringLiteral("_tag")), limitNote_);
    QWidget* previous = nullptr;
    QList<QWidget*> chain;
    for (const QPointer<QWidget>& w : std::as_const(tabChain_))
        if (w && w->focusPolicy() != Qt::NoFocus) chain.append(w);
    for (QWidget* w : chain + headerButtons_) {
        if (previous) setTabOrder(previous, w);
        previous = w;
    }
    const auto edited = [this] {
        if (!loading_) setModified(true);
    };
    for (auto* e : fields_->findChildren<QLineEdit*>())
        if (!e->isReadOnly() && !qobject_cast<QComboBox*>(e->parentWidget()))
            connect(e, &QLineEdit::textChanged, this, edited);
    for (auto* c : fields_->findChildren<QComboBox*>())
        connect(c, &QComboBox::currentTextChanged, this, edited);
    for (auto* m : fields_->findChildren<QPlainTextEdit*>())
        connect(m, &QPlainTextEdit::textChanged, this, edited);
    for (auto* c : fields_->findChildren<QCheckBox*>())
        connect(c, &QCheckBox::toggled, this, edited);
    for (auto* d : fields_->findChildren<QDateEdit*>())
        connect(d, &QDateEdit::dateChanged, this, edited);
    rebuildLayout();
}

void FormDetail::openUrl(const QString& text) {
    if (!opener_->open(QUrl(text)))
        info(QStringLiteral("没有能打开“") + text + QStringLiteral("”，请检查地址或系统设置。"));
}

void FormDetail::openWebPage(const QString& address) {
    const QString a = address.trimmed();
    if (a.isEmpty()) return info(QStringLiteral("请先填写网址。"));
    openUrl(a.contains(QStringLiteral("://")) ? a : QStringLiteral("http://") + a);
}

void FormDetail::webSearch(const char* key, const QString& text) {
    if (text.trimmed().isEmpty()) return info(QStringLiteral("请先填写要搜索的内容。"));
    SoftwareSetting setting;
    QString endpoint;
    if (setting.GetValue(QStringLiteral("website"), QLatin1String(key)))
        endpoint = setting.Set_Value().trimmed();
    if (endpoint.isEmpty()) endpoint = defaultSearch(key);
    openUrl(endpoint + QString::fromLatin1(QUrl::toPercentEncoding(text.trimmed())));
}

bool FormDetail::checkAmount(QLineEdit* box, const QString& caption) {
    if (Currency::parse(box->text())) return true;
    info(caption + QStringLiteral("必须是数字，请检查。"));
    box->setFocus();
    box->selectAll();
    return false;
}

QString FormDetail::recordName() const {
    return nameBox_ ? nameBox_->text() : QString();
}

bool FormDetail::requireName() {
    if (!recordName().trimmed().isEmpty()) return true;
    info(QStringLiteral("请填写") + nameWord_ + QStringLiteral("。"));
    nameBox_->setFocus();
    return false;
}

bool FormDetail::mayLeave() {
    return !modified_ || dialogs_->ask(messageTitle(), unsavedQuestion());
}

bool FormDetail::save() {
    int id = recordId_;
    QString error;
    while (!saveFields(&id, &error)) {
        if (shown_.found() == lists::ShownRow::Since::Unchanged) {
            if (!error.isEmpty()) info(kind_.noun + QStringLiteral("没有保存。\n") + error);
            return false;
        }
        const SaveAnswer answer = askBeforeOverwrite(*dialogs_, shown_, kind_.noun);
        if (answer == SaveAnswer::Stop) return false;
        if (answer == SaveAnswer::SaveAsNew) id = recordId_ = 0;
    }
    if (lists::ListRows* r = rows()) r->reread(id);
    if (recordId_ == 0 && historyUpdate_) historyUpdate_(recordCondition(kind_.fieldType, id), id);
    showRecord(id);
    return true;
}

void FormDetail::deleteRecord() {
    if (!dialogs_->ask(messageTitle(), QStringLiteral("您确定要删除这个记录吗？"))) return;
    if (recordId_ == 0) return showRecord(0);
    lists::ListRows* r = rows();
    QString error;
    bool ok = false;
    if (r) {
        ok = r->remove(recordId_);
        error = r->ErrMsg();
    } else {
        lists::ListStore store(kind_);
        ok = store.deleteRecords({recordId_});
        error = store.ErrMsg();
    }
    if (!ok) return info(QStringLiteral("记录没有删除，原因可能是") + error);
    showRecord(r ? int(r->currentKey()) : 0);
}

void FormDetail::step(bool (lists::ListRows::*move)()) {
    lists::ListRows* r = rows();
    if (!r || r->count() == 0 || !mayLeave()) return;
    (r->*move)();
    showRecord(int(r->currentKey()));
}

void FormDetail::moveFirst() {
    step(&lists::ListRows::moveFirst);
}

void FormDetail::movePrevious() {
    step(&lists::ListRows::movePrevious);
}

void FormDetail::moveNext() {
    step(&lists::ListRows::moveNext);
}

void FormDetail::moveLast() {
    step(&lists::ListRows::moveLast);
}

}  // namespace tarvel
