#pragma once

#include <QCheckBox>

#include "views/settings/settingspage.h"

namespace tarvel {

// The related panels below one kind of record page: shown or not, links
// editable or not, and each panel's caption (the four txt_<owner>_related).
class RelatedPage : public SettingsPage {
    Q_OBJECT
public:
    // `owner`: "acc", "opp", "con", "sch" or "doc".
    explicit RelatedPage(const QString& owner, QWidget* parent = nullptr);
    void load() override;
    bool save() override;
    QString title(const ModuleCaptions& captions) const override;
    void showCaptions(const ModuleCaptions& captions) override;

    // The owners in tab order, and each owner's four panels in text-box order.
    static QStringList owners();
    static QStringList panels(const QString& owner);

private:
    QString owner_;
    QCheckBox* visible_;
    QCheckBox* editable_;
    QList<QLineEdit*> texts_;
    QList<QLabel*> labels_;
};

}  // namespace tarvel
