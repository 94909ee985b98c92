#include "views/details/formaccdetail.h"

#include <QCheckBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "browse/listkind.h"
#include "records/account.h"
#include "records/recordsearch.h"
#include "views/common/namesearch.h"
#include "views/details/detaillayout.h"
#include "views/details/storerecord.h"

namespace tarvel {

FormAccDetail::FormAccDetail(QWidget* parent)
    : FormDetail(lists::listno::Accounts, "form_acc_detail", false, parent) {
    auto* basic = basicGroup();
    auto* contact = addressGroup();
    auto* memo = arrangeColumns({basic}, {contact});
    fields_ = {{txtSubject_, "AccName"},
               {field("cbo_type"), "AccType"},
               {field("cbo_industry"), "Industry"},
               {field("cbo_importance"), "Important"},
               {field("cbo_relation"), "Relation"},
               {field("cbo_region"), "Province"},
               {field("txt_tel"), "Telephone"},
               {field("txt_fax"), "Fax"},
               {field("txt_address"), "Address"},
               {field("txt_zip"), "Postcode"},
               {field("txt_web"), "Website"},
               {memo, "Description"}};
    search_ = searchNames(txtSubject_, lstAccounts_, recordsearch::accountsByName, false, true);
    limitTextFields<Account>(fields_, limitNote());
    finishFields();
}

QWidget* FormAccDetail::basicGroup() {
    auto* form = new QFormLayout;
    txtSubject_ = make<QLineEdit>("txt_subject");
    setNameBox(txtSubject_, QStringLiteral("单位名称"));
    auto* search = iconButton("Img_Search_Account", QStringLiteral("搜"),
                              QStringLiteral("在网上搜索这个单位"));
    connect(search, &QPushButton::clicked, this, [this] { webSearch("se", txtSubject_->text()); });
    lstAccounts_ = matchList("lst_accounts", QStringLiteral("找到的单位"));
    addRow(form, txtSubject_, "acc_name", QStringLiteral("单位名称"),
           stackOf(fieldsArea(), rowOf({txtSubject_, search}), lstAccounts_));
    addOptionRows(form,
                  {{"cbo_type", "img_type", "type", "acc_type", "类型"},
                   {"cbo_industry", "img_industry", "industry", "acc_industry", "行业"},
                   {"cbo_importance", "img_importance", "importance", "acc_important", "重要性"},
                   {"cbo_relation", "img_relation", "relationship", "acc_relation", "关系"},
                   {"cbo_region", "Img_region", "region", "acc_province", "地区"}});
    return finishBasicSection(form, "acc_tag", &chkPrivate_);
}

QWidget* FormAccDetail::addressGroup() {
    auto* form = new QFormLayout;
    addRow(form, make<QLineEdit>("txt_tel"), "acc_telephone", QStringLiteral("电话"));
    addRow(form, make<QLineEdit>("txt_fax"), "acc_fax", QStringLiteral("传真"));
    addMapRow(form, "txt_address", "Img_Search_Address", QStringLiteral("在地图上查找地址"),
              "acc_address", QStringLiteral("地址"));
    addRow(form, make<QLineEdit>("txt_zip"), "acc_postcode", QStringLiteral("邮编"));
    addWebRow(form, "txt_web", "Img_web_vist", QStringLiteral("打开网址"), "acc_website",
              QStringLiteral("网址"));
    return sectionBox(fieldsArea(), "fra_contact", QStringLiteral("联系方式"), form);
}

bool FormAccDetail::showFields(int id, QString* error) {
    search_->clear();
    Account account;
    if (!readRecord(account, id, error)) return false;
    showTextFields(account, fields_);
    showTags(account.Tag());
    chkPrivate_->setChecked(account.iPrivate() != 0);
    return true;
}

bool FormAccDetail::saveFields(int* id, QString* error) {
    if (!requireName()) return false;
    return storeRecord<Account>(id, error, shownRow(), [&](Account& account) {
        readTextFields(account, fields_);
        account.setTag(tagText());
        account.setiPrivate(chkPrivate_->isChecked() ? -1 : 0);
        stampDates(account, *id == 0);
    });
}

}  // namespace tarvel
