#include "views/settings/formappsetting.h"

#include <QHBoxLayout>
#include <QVBoxLayout>

#include "browse/savefailure.h"
#include "store/transaction.h"
#include "views/common/buttons.h"
#include "views/settings/captionspage.h"
#include "views/settings/fieldspage.h"
#include "views/settings/personalpage.h"
#include "views/settings/relatedpage.h"
#include "views/settings/safekeepingpage.h"
#include "views/settings/templateflow.h"
#include "views/settings/toolbarpage.h"

namespace tarvel {

FormAppSetting::FormAppSetting(QWidget* parent)
    : PageWidget(parent),
      dialogs_(std::make_shared<MessageBoxDialogs>(this)),
      files_(std::make_shared<QtFileDialogs>(this)) {
    setObjectName(QStringLiteral("form_app_setting"));
    setWindowTitle(QStringLiteral("设置"));

    tabs_ = new QTabWidget(this);
    tabs_->setObjectName(QStringLiteral("SSTab1"));
    // All tabs show on a wide window; a narrow one scrolls them rather than
    // growing wider than the screen.
    tabs_->setUsesScrollButtons(true);
    tabs_->setElideMode(Qt::ElideNone);
    auto* captions = new CaptionsPage;
    auto* toolbar = new ToolbarPage;
    // New module names show in the toolbar list at once.
    connect(captions, &CaptionsPage::captionsSaved, toolbar, &ToolbarPage::renameItems);
    QList<SettingsPage*> pages = {captions, toolbar};
    for (const QString& owner : RelatedPage::owners()) pages << new RelatedPage(owner);
    pages << new FieldsPage << new PersonalPage << new SafekeepingPage;
    for (SettingsPage* page : pages) tabs_->addTab(page, QString());

    QPushButton* save = namedButton(this, "cmd_save", QStringLiteral("保存(&S)"));
    save->setMinimumWidth(96);
    connect(save, &QPushButton::clicked, this, &FormAppSetting::cmdSaveClick);
    QPushButton* saveTemplate =
        namedButton(this, "cmd_save_template", QStringLiteral("保存为模板…"));
    connect(saveTemplate, &QPushButton::clicked, this, &FormAppSetting::cmdSaveTemplateClick);
    QPushButton* loadTemplate = namedButton(this, "cmd_load_template", QStringLiteral("载入模板…"));
    connect(loadTemplate, &QPushButton::clicked, this, &FormAppSetting::cmdLoadTemplateClick);
    auto* bottom = new QHBoxLayout;
    bottom->addWidget(saveTemplate);
    bottom->addWidget(loadTemplate);
    bottom->addSpacing(12);
    bottom->addWidget(settingsui::hint(QStringLiteral("保存只写入当前显示的这一页。"), this), 1);
    bottom->addWidget(save);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(12, 12, 12, 12);
    layout->setSpacing(10);
    layout->addWidget(tabs_, 1);
    layout->addLayout(bottom);

    load();
}

SettingsPage* FormAppSetting::page(int tab) const {
    return qobject_cast<SettingsPage*>(tabs_->widget(tab));
}

void FormAppSetting::setLayoutHost(LayoutHost host) {
    host_ = std::move(host);
    qobject_cast<ToolbarPage*>(tabs_->widget(ToolbarTab))->setPreview(host_.previewToolbar);
}

void FormAppSetting::load() {
    rebuildLayout();
    for (int i = 0; i < tabs_->count(); ++i) page(i)->load();
}

void FormAppSetting::fill(const PageRequest&) {
    load();
}

void FormAppSetting::rebuildLayout() {
    const ModuleCaptions captions = ModuleCaptions::load();
    for (int i = 0; i < tabs_->count(); ++i) {
        page(i)->showCaptions(captions);
        tabs_->setTabText(i, page(i)->title(captions));
    }
}

void FormAppSetting::cmdSaveClick() {
    SettingsPage* shown = page(tabs_->currentIndex());
    if (!shown->ready(*dialogs_)) return;
    // A page is saved whole or not at all; what was typed stays for another try.
    Transaction transaction;
    if (!(transaction.isActive() && shown->save() && transaction.commit())) {
        transaction.rollback();
        dialogs_->info(messageTitle(), saveFailedText(QStringLiteral("设置")));
        return;
    }
    shown->saved();
    if (!shown->changesScreens()) return;
    if (!dialogs_->ask(QStringLiteral("Tarvel 提示"), QStringLiteral(" 现在执行界面修改的结果吗?"),
                       Messages::Icon::Question, Messages::Buttons::OkCancel))
        return;
    if (host_.rebuildScreens)
        host_.rebuildScreens();
    else
        rebuildLayout();
}

void FormAppSetting::cmdSaveTemplateClick() {
    saveTemplateFlow(*dialogs_, *files_);
}

void FormAppSetting::cmdLoadTemplateClick() {
    if (!loadTemplateFlow(*dialogs_, *files_)) return;
    load();
    if (host_.rebuildScreens)
        host_.rebuildScreens();
    else
        rebuildLayout();
}

}  // namespace tarvel
