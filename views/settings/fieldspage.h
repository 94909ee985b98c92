#pragma once

#include <QRadioButton>
#include <QTreeWidget>

#include "views/settings/settingspage.h"

namespace tarvel {

// The columns of one kind of list (Option1 picks the kind): ticked ones show,
// in order, under the caption typed in txt_edit.
class FieldsPage : public SettingsPage {
    Q_OBJECT
public:
    explicit FieldsPage(QWidget* parent = nullptr);
    void load() override;
    bool save() override;
    void saved() override;
    QString title(const ModuleCaptions&) const override { return QStringLiteral("列表字段"); }
    void showCaptions(const ModuleCaptions& captions) override;

    // The record kind of `fields` shown.
    int fieldKind() const { return fieldKind_; }
    // Option1's index to the record kind of `fields`: 0 accounts (2),
    // 1 opportunities (1), 2 contacts (3), 3 tasks (4), 4 documents (5).
    static int fieldKindForOption(int index);

public slots:
    void option1Click(int index);
    void cmdFieldUpClick();
    void cmdFieldDownClick();

private:
    void move(int step);
    void updateFieldButtons();

    int fieldKind_ = 2;
    QList<QRadioButton*> option1_;
    QTreeWidget* lvField_;
    QPushButton* cmdFieldUp_;
    QPushButton* cmdFieldDown_;
    QLineEdit* txtEdit_;
};

}  // namespace tarvel
