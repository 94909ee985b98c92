#include "views/settings/captionspage.h"

#include "custom/appsettings.h"
#include "schedule/labels.h"

namespace tarvel {

using namespace settingsui;

CaptionsPage::CaptionsPage(QWidget* parent) : SettingsPage(parent) {
    setObjectName(QStringLiteral("tab_captions"));
    QFormLayout* form = formRows();
    for (const QString& key : ModuleCaptions::recordModules()) {
        QLineEdit* edit = lineEdit(this, QStringLiteral("txt_") + key);
        edit->setMaxLength(20);
        edits_.insert(key, edit);
        form->addRow(defaultToolbarCaption(key) + QStringLiteral("模块的名称："), edit);
    }
    formPage(this, QStringLiteral("模块的名称显示在工具栏按钮、模块页面的标题和相关信息中。"),
             form);
}

void CaptionsPage::load() {
    AppSettings names;
    names.GetToolbarName(0);
    QHash<QString, QString> stored;
    for (const AppSetting& e : names) stored.insert(e.ObjName(), e.ObjDesc());
    for (auto it = edits_.cbegin(); it != edits_.cend(); ++it)
        it.value()->setText(stored.value(it.key()));
}

bool CaptionsPage::ready(Messages& dialogs) {
    for (const QString& key : ModuleCaptions::recordModules()) {
        QLineEdit* edit = edits_[key];
        if (!edit->text().trimmed().isEmpty()) continue;
        dialogs.info(messageTitle(), QStringLiteral("模块的名称不能为空，请输入%1模块的名称！")
                                         .arg(defaultToolbarCaption(key)));
        edit->setFocus();
        return false;
    }
    return true;
}

bool CaptionsPage::save() {
    bool ok = true;
    for (const QString& key : ModuleCaptions::recordModules()) {
        AppSetting e;
        e.setObjName(key);
        e.setObjDesc(edits_[key]->text().trimmed());
        ok = e.SaveToolbarName() && ok;
    }
    return ok;
}

void CaptionsPage::saved() {
    QHash<QString, QString> captions;
    for (auto it = edits_.cbegin(); it != edits_.cend(); ++it)
        captions.insert(it.key(), it.value()->text().trimmed());
    emit captionsSaved(captions);
}

}  // namespace tarvel
