#pragma once

#include "views/details/formdetail.h"
#include "views/details/recordfields.h"

class QDateEdit;

namespace tarvel {

class NameSearch;

// form_opp_detail: every field of an opportunity (a sales deal); the amounts
// are checked before anything is stored.
class FormOppDetail : public FormDetail {
    Q_OBJECT
public:
    explicit FormOppDetail(QWidget* parent = nullptr);

protected:
    bool showFields(int id, QString* error) override;
    bool saveFields(int* id, QString* error) override;

private:
    QWidget* basicGroup();
    QWidget* saleGroup();

    std::vector<TextField> fields_;
    QLineEdit* txtOpportunity_;
    QListWidget* lstOpportunities_;
    QDateEdit* dtDieDate_;
    QLineEdit* txtESale_;
    QLineEdit* txtSale_;
    QComboBox* cboProbability_;
    QCheckBox* chkPrivate_;
    NameSearch* search_;
};

}  // namespace tarvel
