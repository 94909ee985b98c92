#include "views/details/formoppdetail.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDateEdit>
#include <QFormLayout>
#include <QGroupBox>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "browse/listkind.h"
#include "records/opportunity.h"
#include "records/recordsearch.h"
#include "store/jetdate.h"
#include "views/common/namesearch.h"
#include "views/details/detaillayout.h"
#include "views/details/storerecord.h"
#include "views/options/optionwidgets.h"

namespace tarvel {

FormOppDetail::FormOppDetail(QWidget* parent)
    : FormDetail(lists::listno::Opportunities, "form_opp_detail", false, parent) {
    auto* basic = basicGroup();
    auto* sale = saleGroup();
    auto* memo = arrangeColumns({basic}, {sale});
    fields_ = {{txtOpportunity_, "Subject"},
               {field("cbo_type"), "OppType"},
               {field("cbo_stage"), "Phase"},
               {field("cbo_importance"), "Important"},
               {field("cbo_industry"), "Industry"},
               {field("cbo_region"), "Province"},
               {memo, "Description"}};
    search_ = searchNames(txtOpportunity_, lstOpportunities_, recordsearch::opportunitiesBySubject,
                          false, true);
    limitTextFields<Opportunity>(fields_, limitNote());
    finishFields();
}

QWidget* FormOppDetail::basicGroup() {
    auto* form = new QFormLayout;
    txtOpportunity_ = make<QLineEdit>("txt_opportunity");
    setNameBox(txtOpportunity_, QStringLiteral("项目名称"));
    lstOpportunities_ = matchList("lst_opportunities", QStringLiteral("找到的项目机会"));
    auto* stack = new QVBoxLayout;
    stack->setContentsMargins(0, 0, 0, 0);
    stack->addWidget(txtOpportunity_);
    addRow(form, txtOpportunity_, "opp_subject", QStringLiteral("项目名称"),
           stackOf(fieldsArea(), stack, lstOpportunities_));
    addOptionRows(form,
                  {{"cbo_type", "img_type", "type", "opp_type", "类型"},
                   {"cbo_stage", "img_stage", "phase", "opp_phase", "阶段"},
                   {"cbo_importance", "img_importance", "importance", "opp_important", "重要性"},
                   {"cbo_industry", "img_industry", "industry", "opp_industry", "行业"},
                   {"cbo_region", "Img_region", "region", "opp_province", "地区"}});
    return finishBasicSection(form, "opp_tag", &chkPrivate_);
}

QWidget* FormOppDetail::saleGroup() {
    auto* form = new QFormLayout;
    dtDieDate_ = make<QDateEdit>("DT_diedate");
    // A deal may have no closing date yet.
    setUpDatePicker(dtDieDate_);
    addRow(form, dtDieDate_, "opp_die_date", QStringLiteral("预计成交日期"));
    txtESale_ = make<QLineEdit>("txt_esale");
    txtSale_ = make<QLineEdit>("txt_sale");
    for (QLineEdit* amount : {txtESale_, txtSale_}) amount->setAlignment(Qt::AlignRight);
    addRow(form, txtESale_, "opp_estimate_sale", QStringLiteral("预计金额"));
    addRow(form, txtSale_, "opp_sale", QStringLiteral("成交金额"));
    cboProbability_ = make<QComboBox>("cbo_probability");
    cboProbability_->setEditable(true);
    cboProbability_->setInsertPolicy(QComboBox::NoInsert);
    addRow(form, cboProbability_, "opp_succeed_probability", QStringLiteral("成功概率"));
    return sectionBox(fieldsArea(), "fra_sale", QStringLiteral("金额与进度"), form);
}

bool FormOppDetail::showFields(int id, QString* error) {
    search_->clear();
    FillOptionCombo(cboProbability_, objectCode(), QStringLiteral("Probability"));
    Opportunity opportunity;
    if (!readRecord(opportunity, id, error)) return false;
    showTextFields(opportunity, fields_);
    showTags(opportunity.Tag());
    const QDate die = opportunity.DieDate().date();
    dtDieDate_->setDate(die.isValid() ? die : id == 0 ? recordvalue::today().date() : noDate());
    txtESale_->setText(opportunity.ESale().toString());
    txtSale_->setText(opportunity.Sale().toString());
    cboProbability_->setCurrentText(QString::number(opportunity.Probability()) + QLatin1Char('%'));
    chkPrivate_->setChecked(opportunity.iPrivate() != 0);
    return true;
}

bool FormOppDetail::saveFields(int* id, QString* error) {
    if (!requireName()) return false;
    if (!checkAmount(txtESale_, QStringLiteral("预计金额")) ||
        !checkAmount(txtSale_, QStringLiteral("成交金额")))
        return false;
    const auto probability = Opportunity::parseProbability(cboProbability_->currentText());
    if (!probability) {
        info(Opportunity::probabilityRule());
        cboProbability_->setFocus();
        return false;
    }
    return storeRecord<Opportunity>(id, error, shownRow(), [&](Opportunity& opportunity) {
        readTextFields(opportunity, fields_);
        opportunity.setTag(tagText());
        opportunity.setDieDate(dtDieDate_->date() == noDate() ? QDateTime()
                                                              : jetdate::naive(dtDieDate_->date()));
        opportunity.setESale(*Currency::parse(txtESale_->text()));
        opportunity.setSale(*Currency::parse(txtSale_->text()));
        opportunity.setProbability(*probability);
        opportunity.setiPrivate(chkPrivate_->isChecked() ? -1 : 0);
        stampDates(opportunity, *id == 0);
    });
}

}  // namespace tarvel
