#include "views/settings/relatedpage.h"

#include <QGroupBox>
#include <QHBoxLayout>

#include "custom/appsettings.h"
#include "records/kinds.h"

namespace tarvel {

using namespace settingsui;

QStringList RelatedPage::owners() {
    return {QStringLiteral("acc"), QStringLiteral("opp"), QStringLiteral("con"),
            QStringLiteral("sch"), QStringLiteral("doc")};
}

QStringList RelatedPage::panels(const QString& owner) {
    QStringList names;
    for (const RecordKindInfo& k : recordKinds())
        if (owner == QLatin1String(k.word))
            for (qint16 other : k.layoutPanels())
                names << owner + QLatin1Char('_') + QLatin1String(kindByCode(other)->word);
    return names;
}

RelatedPage::RelatedPage(const QString& owner, QWidget* parent)
    : SettingsPage(parent), owner_(owner) {
    setObjectName(QStringLiteral("tab_") + owner + QStringLiteral("_related"));
    visible_ = new QCheckBox(QStringLiteral("在详细信息页中显示相关信息"), this);
    visible_->setObjectName(QStringLiteral("chk_") + owner + QStringLiteral("_related_v"));
    editable_ = new QCheckBox(QStringLiteral("允许在相关信息中增加和取消关联"), this);
    editable_->setObjectName(QStringLiteral("chk_") + owner + QStringLiteral("_related_e"));

    auto* box = new QGroupBox(QStringLiteral("相关信息的标题"), this);
    QFormLayout* form = formRows();
    box->setLayout(form);
    for (int i = 0; i < panels(owner).size(); ++i) {
        // A control array: the four boxes share the name, told apart by index.
        QLineEdit* edit =
            lineEdit(box, QStringLiteral("txt_") + owner + QStringLiteral("_related"));
        edit->setProperty("Index", i);
        auto* label = new QLabel(box);
        label->setBuddy(edit);
        form->addRow(label, edit);
        texts_ << edit;
        labels_ << label;
    }
    QVBoxLayout* layout = pageLayout(this, QString());
    layout->addWidget(visible_);
    layout->addWidget(editable_);
    auto* boxRow = new QHBoxLayout;
    boxRow->addWidget(box);
    boxRow->addStretch(1);
    layout->addLayout(boxRow);
    layout->addStretch(1);
}

QString RelatedPage::title(const ModuleCaptions& captions) const {
    return captions.caption(ModuleCaptions::moduleOf(owner_)) + QStringLiteral("的相关信息");
}

void RelatedPage::showCaptions(const ModuleCaptions& captions) {
    const QStringList names = panels(owner_);
    for (int p = 0; p < names.size(); ++p)
        labels_[p]->setText(captions.caption(ModuleCaptions::moduleOf(names[p].mid(4))) +
                            QStringLiteral("："));
}

void RelatedPage::load() {
    AppSettings stored;
    stored.GetObjs(0, 2);
    const QStringList names = panels(owner_);
    // The check boxes show the first panel's flags; saving gives all four the same.
    bool flagsShown = false;
    for (int i = 0; i < names.size(); ++i) {
        const int at = stored.FindIndex(names[i]);
        texts_[i]->setText(at ? stored.Item(at).ObjDesc() : QString());
        if (!at || flagsShown) continue;
        visible_->setChecked(stored.Item(at).ObjVisible() != 0);
        editable_->setChecked(stored.Item(at).ObjEditType() != 0);
        flagsShown = true;
    }
}

bool RelatedPage::save() {
    bool ok = true;
    const QStringList names = panels(owner_);
    for (int i = 0; i < names.size(); ++i) {
        AppSetting e;
        e.setObjName(names[i]);
        e.setObjDesc(texts_[i]->text().trimmed());
        e.setObjVisible(visible_->isChecked() ? -1 : 0);
        e.setObjEditType(editable_->isChecked() ? -1 : 0);
        ok = e.SaveRelationInfo() && ok;
    }
    return ok;
}

}  // namespace tarvel
