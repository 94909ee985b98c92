#include "views/details/formcondetail.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDateEdit>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "browse/accountedit.h"
#include "browse/listkind.h"
#include "records/contact.h"
#include "records/recordsearch.h"
#include "store/jetdate.h"
#include "views/common/accountquestion.h"
#include "views/common/namesearch.h"
#include "views/details/detaillayout.h"
#include "views/details/storerecord.h"

namespace tarvel {

FormConDetail::FormConDetail(QWidget* parent)
    : FormDetail(lists::listno::Contacts, "form_con_detail", true, parent) {
    auto* basic = basicGroup();
    auto* account = accountGroup();
    auto* contact = contactGroup();
    auto* memo = arrangeColumns({basic, account}, {contact});
    contactFields_ = {{txtName_, "LastName"},
                      {field("txt_nickname"), "NickName"},
                      {field("cbo_title"), "Title"},
                      {field("txt_jobtitle"), "DepartmentTitle"},
                      {field("txt_email1"), "EMail"},
                      {field("txt_email2"), "EMail2"},
                      {field("txt_email3"), "EMail3"},
                      {field("txt_address2"), "FamilyAddress"},
                      {field("txt_zip2"), "FamilyPostcode"},
                      {field("txt_tel1"), "Telephone"},
                      {field("txt_tel2"), "Telephone2"},
                      {field("txt_tel3"), "Telephone3"},
                      {field("txt_mobile1"), "Mobile"},
                      {field("txt_mobile2"), "Mobile2"},
                      {field("txt_mobile3"), "Mobile3"},
                      {field("txt_fax1"), "Fax"},
                      {field("txt_fax2"), "Fax2"},
                      {field("txt_fax3"), "Fax3"},
                      {field("txt_im1"), "IM"},
                      {field("txt_im2"), "IM2"},
                      {field("txt_im3"), "IM3"},
                      {field("txt_personal_web"), "Website"},
                      {field("cbo_region"), "Province"},
                      {field("cbo_importance"), "Important"},
                      {field("cbo_relation"), "Relation"},
                      {memo, "Description"}};
    accountFields_ = {{txtAccount_, "AccName"},
                      {field("txt_zip1"), "Postcode"},
                      {field("txt_address1"), "Address"},
                      {field("txt_account_web"), "Website"}};

    nameSearch_ = searchNames(txtName_, lstContacts_, recordsearch::contactsByName, true, true);
    // A click on a found account takes it; the arrow takes the one picked by keyboard.
    accountSearch_ =
        searchNames(txtAccount_, lstAccount_, recordsearch::accountsByName, false, false);
    connect(accountSearch_, &NameSearch::chosen, this, &FormConDetail::takeAccount);
    limitTextFields<Contact>(contactFields_, limitNote());
    limitTextFields<Account>(accountFields_, limitNote());
    finishFields();
}

QWidget* FormConDetail::basicGroup() {
    auto* form = new QFormLayout;
    txtName_ = make<QLineEdit>("txt_name");
    setNameBox(txtName_, QStringLiteral("姓名"));
    auto* search = iconButton("Img_Search_Contact", QStringLiteral("搜"),
                              QStringLiteral("在网上搜索这个姓名"));
    connect(search, &QPushButton::clicked, this, [this] { webSearch("se", txtName_->text()); });
    lstContacts_ = matchList("lst_contacts", QStringLiteral("找到的联系人"));
    addRow(form, txtName_, "con_lastname", QStringLiteral("姓名"),
           stackOf(fieldsArea(), rowOf({txtName_, search}), lstContacts_));
    addRow(form, make<QLineEdit>("txt_nickname"), "con_nickname", QStringLiteral("昵称"));
    addOptionRows(form, {{"cbo_title", "img_title", "title", "con_title", "称呼"}});
    addRow(form, make<QLineEdit>("txt_jobtitle"), "con_department_title",
           QStringLiteral("部门职务"));
    addOptionRows(form,
                  {{"cbo_importance", "img_importance", "importance", "con_important", "重要性"},
                   {"cbo_relation", "img_relation", "relationship", "con_relation", "关系"},
                   {"cbo_region", "Img_region", "region", "con_province", "地区"}});
    dtBirthday_ = make<QDateEdit>("DT_Birthday");
    setUpDatePicker(dtBirthday_);
    auto* noBirthday = make<QPushButton>("cmd_no_birthday");
    noBirthday->setText(QStringLiteral("不填生日"));
    noBirthday->setFlat(true);
    connect(noBirthday, &QPushButton::clicked, this, [this] { dtBirthday_->setDate(noDate()); });
    addRow(form, dtBirthday_, "con_birthday", QStringLiteral("生日"),
           lineOf(fieldsArea(), {dtBirthday_, noBirthday}));
    return finishBasicSection(form, "con_tag", &chkPrivate_);
}

QWidget* FormConDetail::contactGroup() {
    auto* form = new QFormLayout;
    struct Triple {
        const char* names[3];
        const char* column;
        const char* caption;
    };
    const Triple triples[] = {{{"txt_tel1", "txt_tel2", "txt_tel3"}, "con_telephone", "电话"},
                              {{"txt_mobile1", "txt_mobile2", "txt_mobile3"}, "con_mobile", "手机"},
                              {{"txt_fax1", "txt_fax2", "txt_fax3"}, "con_fax", "传真"},
                              {{"txt_im1", "txt_im2", "txt_im3"}, "con_im", "即时通讯"}};
    for (const Triple& t : triples) {
        auto* row = new QWidget(fieldsArea());
        auto* layout = new QHBoxLayout(row);
        layout->setContentsMargins(0, 0, 0, 0);
        QLineEdit* first = nullptr;
        for (int i = 0; i < 3; ++i) {
            auto* e = make<QLineEdit>(t.names[i]);
            e->setAccessibleName(QString::fromUtf8(t.caption) + QString::number(i + 1));
            layout->addWidget(e);
            if (!first) first = e;
        }
        addRow(form, first, t.column, QString::fromUtf8(t.caption), row);
    }
    const char* mails[] = {"txt_email1", "txt_email2", "txt_email3"};
    const char* sends[] = {"Img_email1_send", "Img_email2_send", "img_email3_send"};
    for (int i = 0; i < 3; ++i) {
        auto* mail = make<QLineEdit>(mails[i]);
        auto* send = iconButton(sends[i], QStringLiteral("✉"),
                                QStringLiteral("给电子邮件%1写信").arg(i + 1));
        connect(send, &QPushButton::clicked, this, [this, mail] {
            if (mail->text().trimmed().isEmpty())
                return info(QStringLiteral("请先填写电子邮件地址。"));
            openUrl(QStringLiteral("mailto:") + mail->text().trimmed() +
                    QStringLiteral(" ?subject= &body="));
        });
        addRow(form, mail,
               i == 0   ? "con_email"
               : i == 1 ? "con_email2"
                        : "con_email3",
               QStringLiteral("电子邮件%1").arg(i + 1), lineOf(fieldsArea(), {mail, send}));
    }
    addWebRow(form, "txt_personal_web", "Img_personal_web_vist", QStringLiteral("打开个人网址"),
              "con_website", QStringLiteral("个人网址"));
    addMapRow(form, "txt_address2", "Img_Search_FAddress", QStringLiteral("在地图上查找家庭地址"),
              "con_address_family", QStringLiteral("家庭地址"));
    addRow(form, make<QLineEdit>("txt_zip2"), "con_postcode_family", QStringLiteral("家庭邮编"));
    return sectionBox(fieldsArea(), "fra_contact", QStringLiteral("联系方式"), form);
}

QWidget* FormConDetail::accountGroup() {
    auto* form = new QFormLayout;
    txtAccount_ = make<QLineEdit>("txt_account");
    auto* down =
        iconButton("Img_account_down", QStringLiteral("▼"), QStringLiteral("取用选中单位的信息"));
    connect(down, &QPushButton::clicked, this, [this] {
        QListWidgetItem* item = lstAccount_->currentItem();
        if (!item) return info(QStringLiteral("请先在单位名称下的列表中选择一个单位。"));
        takeAccount(item->data(Qt::UserRole).toInt());
    });
    lstAccount_ = matchList("lst_account", QStringLiteral("找到的单位"));
    addRow(form, txtAccount_, "acc_name", QStringLiteral("单位名称"),
           stackOf(fieldsArea(), rowOf({txtAccount_, down}), lstAccount_));
    addMapRow(form, "txt_address1", "Img_Search_Baddress", QStringLiteral("在地图上查找单位地址"),
              "acc_address", QStringLiteral("单位地址"));
    addRow(form, make<QLineEdit>("txt_zip1"), "acc_postcode", QStringLiteral("单位邮编"));
    addWebRow(form, "txt_account_web", "img_account_web_visit", QStringLiteral("打开单位网址"),
              "acc_website", QStringLiteral("单位网址"));
    return sectionBox(fieldsArea(), "fra_account", QStringLiteral("单位信息"), form);
}

bool FormConDetail::showFields(int id, QString* error) {
    nameSearch_->clear();
    accountSearch_->clear();
    Contact contact;
    if (!readRecord(contact, id, error)) return false;
    showTextFields(contact, contactFields_);
    showTextFields(contact.Account(), accountFields_);
    showTags(contact.Tag());
    const QDate birthday = contact.Birthday().date();
    dtBirthday_->setDate(birthday.isValid() ? birthday : noDate());
    chkPrivate_->setChecked(contact.iPrivate() != 0);
    accountId_ = contact.Account().ID();
    accountName_ = contact.Account().AccName();
    return true;
}

void FormConDetail::takeAccount(int accountId) {
    Account account;
    account.setID(accountId);
    if (!account.GetById())
        return info(QStringLiteral("单位没有读出，原因可能是") + account.ErrMsg());
    lstAccount_->clear();
    lstAccount_->hide();
    accountId_ = account.ID();
    accountName_ = account.AccName();
    showTextFields(account, accountFields_);
}

bool FormConDetail::askAboutAccount(bool* store, bool* newAccount) {
    AccountEdit edit{txtAccount_->text(), false, accountId_, accountName_};
    for (const TextField& f : accountFields_)
        if (f.control != txtAccount_)
            edit.otherFilled = edit.otherFilled || !controlText(f.control).trimmed().isEmpty();
    const AccountAnswer answer =
        askAccountQuestions(*dialogs_, edit,
                            QStringLiteral("您没有填写单位名称，是否要放弃填写单位名称信息？\n"
                                           "提示：点击[是]，软件只保存除单位信息之外的其它信息！"));
    if (!answer.proceed && accountQuestion(edit) == AccountQuestion::DropAccountData)
        txtAccount_->setFocus();
    *store = answer.store;
    *newAccount = accountId_ == 0 || answer.newAccount;
    return answer.proceed;
}

bool FormConDetail::saveFields(int* id, QString* error) {
    if (!requireName()) return false;
    bool store = false, newAccount = false;
    if (!askAboutAccount(&store, &newAccount)) return false;
    const auto read = [&](Contact& contact) {
        readTextFields(contact, contactFields_);
        contact.setTag(tagText());
        contact.setBirthday(jetdate::naive(dtBirthday_->date()));
        contact.setiPrivate(chkPrivate_->isChecked() ? -1 : 0);
        stampDates(contact, *id == 0);
    };
    const auto account = [&](Contact& contact, QString* accountError) {
        const auto fill = [this](Account& account) { readTextFields(account, accountFields_); };
        if (!store || storeContactAccount(contact, accountId_, newAccount, fill)) return true;
        *accountError = contact.Account().ErrMsg();
        return false;
    };
    return storeRecord<Contact>(id, error, shownRow(), read, account);
}

}  // namespace tarvel
