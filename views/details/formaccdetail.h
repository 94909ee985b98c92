#pragma once

#include "views/details/formdetail.h"
#include "views/details/recordfields.h"

namespace tarvel {

class NameSearch;

// form_acc_detail: every field of an account (an organisation).
class FormAccDetail : public FormDetail {
    Q_OBJECT
public:
    explicit FormAccDetail(QWidget* parent = nullptr);

protected:
    bool showFields(int id, QString* error) override;
    bool saveFields(int* id, QString* error) override;

private:
    QWidget* basicGroup();
    QWidget* addressGroup();

    std::vector<TextField> fields_;
    QLineEdit* txtSubject_;
    QListWidget* lstAccounts_;
    QCheckBox* chkPrivate_;
    NameSearch* search_;
};

}  // namespace tarvel
