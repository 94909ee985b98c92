#include "views/details/formdocdetail.h"

#include <QComboBox>
#include <QDir>
#include <QEvent>
#include <QFileInfo>
#include <QFormLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "browse/listkind.h"
#include "records/document.h"
#include "views/common/filedialogs.h"
#include "views/details/detaillayout.h"
#include "views/details/storerecord.h"

namespace tarvel {

FormDocDetail::FormDocDetail(QWidget* parent)
    : FormDetail(lists::listno::Documents, "form_doc_detail", false, parent),
      files_(std::make_shared<QtFileDialogs>(this)) {
    auto* form = new QFormLayout;
    txtName_ = make<QLineEdit>("txt_name");
    setNameBox(txtName_, QStringLiteral("文档名称"));
    addRow(form, txtName_, "doc_name", QStringLiteral("名称"));
    txtPath_ = make<QLineEdit>("txt_path");
    auto* choose = iconButton("cmd_browse", QStringLiteral("选择…"), QStringLiteral("选择文件"));
    auto* open = iconButton("img_open", QStringLiteral("打开"), QStringLiteral("打开这个文件"));
    connect(choose, &QPushButton::clicked, this, &FormDocDetail::browse);
    connect(open, &QPushButton::clicked, this, &FormDocDetail::openFile);
    addRow(form, txtPath_, "doc_path", QStringLiteral("文件位置"),
           lineOf(fieldsArea(), {txtPath_, choose, open}));
    for (QLineEdit* e : {txtName_, txtPath_}) {
        e->setToolTip(QStringLiteral("双击打开文件"));
        e->installEventFilter(this);
    }
    addOptionRows(form, {{"cbo_tag", "Img_tag", "tag", "doc_tag", "标签"}});
    lblCreated_ = make<QLabel>("lbl_createdate");
    lblCreated_->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    addRow(form, lblCreated_, "doc_create_date", QStringLiteral("创建日期"));
    auto* memo = make<QPlainTextEdit>("rtxt_memo");
    auto* layout = new QVBoxLayout(fieldsArea());
    layout->addWidget(sectionBox(fieldsArea(), "fra_basic", QStringLiteral("基本信息"), form));
    layout->addWidget(memoSection(fieldsArea(), memo), 1);

    fields_ = {{txtName_, "DocName"},
               {txtPath_, "DocPath"},
               {fieldsArea()->findChild<QWidget*>(QStringLiteral("cbo_tag")), "DocTag"},
               {memo, "DocDescription"}};
    limitTextFields<document>(fields_, limitNote());
    finishFields();
}

bool FormDocDetail::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::MouseButtonDblClick &&
        (watched == txtName_ || watched == txtPath_)) {
        openFile();
        return true;
    }
    return FormDetail::eventFilter(watched, event);
}

void FormDocDetail::openFile() {
    const QString path = QDir::toNativeSeparators(txtPath_->text().trimmed());
    if (path.isEmpty()) return info(QStringLiteral("请先填写文件位置。"));
    if (!QFileInfo::exists(path))
        return info(QStringLiteral("文件“") + path +
                    QStringLiteral("”不存在，可能已被移动或删除。"));
    openUrl(QUrl::fromLocalFile(path).toString());
}

void FormDocDetail::browse() {
    const QString path = files_->getOpenFileName(QStringLiteral("选择文件"), txtPath_->text(),
                                                 QStringLiteral("所有文件 (*)"));
    if (path.isEmpty()) return;
    txtPath_->setText(QDir::toNativeSeparators(path));
    if (txtName_->text().trimmed().isEmpty()) txtName_->setText(QFileInfo(path).fileName());
}

bool FormDocDetail::showFields(int id, QString* error) {
    document doc;
    if (!readRecord(doc, id, error)) return false;
    showTextFields(doc, fields_);
    lblCreated_->setText(id == 0 ? QStringLiteral("（保存时记下）")
                         : doc.CreatDate().isValid()
                             ? doc.CreatDate().date().toString(QStringLiteral("yyyy-MM-dd"))
                             : QStringLiteral("无"));
    return true;
}

bool FormDocDetail::saveFields(int* id, QString* error) {
    if (!requireName()) return false;
    return storeRecord<document>(id, error, shownRow(), [&](document& doc) {
        readTextFields(doc, fields_);
        if (*id == 0) doc.setCreatDate(recordvalue::today());
        doc.setDocRecentEditDate(recordvalue::now());
    });
}

}  // namespace tarvel
