#include "views/settings/safekeepingpage.h"

#include <QDir>
#include <QFileInfo>
#include <QSpinBox>

#include "browse/savefailure.h"
#include "custom/safekeeping.h"
#include "exchange/filetools.h"
#include "views/common/dialogs.h"

namespace tarvel {

using namespace settingsui;

namespace {
QSpinBox* spinBox(QWidget* parent, const char* name, int least, int most, const QString& suffix) {
    auto* box = new QSpinBox(parent);
    box->setObjectName(QLatin1String(name));
    box->setRange(least, most);
    box->setSuffix(suffix);
    box->setMinimumWidth(160);
    return box;
}
}  // namespace

SafekeepingPage::SafekeepingPage(QWidget* parent) : SettingsPage(parent) {
    setObjectName(QStringLiteral("tab_safekeeping"));
    folder_ = lineEdit(this, QStringLiteral("txt_backup_folder"));
    folder_->setPlaceholderText(QStringLiteral("backups（数据文件旁边）"));
    limitMb_ = spinBox(this, "spn_backup_limit", 100, 1024 * 1024, QStringLiteral(" MB"));
    limitMb_->setSingleStep(100);
    binDays_ = spinBox(this, "spn_bin_days", 0, 3650, QStringLiteral(" 天"));
    binDays_->setSpecialValueText(QStringLiteral("一直保留，直到清空回收站"));

    QFormLayout* form = formRows();
    form->addRow(QStringLiteral("自动备份文件夹(&F)："), folder_);
    form->addRow(QStringLiteral("自动备份最多占用(&M)："), limitMb_);
    form->addRow(QStringLiteral("回收站保留删除的记录(&D)："), binDays_);
    formPage(
        this,
        QStringLiteral("每天第一次启动和关闭Tarvel时自动备份数据，保留最近7天、4周和12个月的备份；"
                       "超过空间上限时先删除最旧的备份。相对的文件夹从数据文件所在的文件夹算起。"),
        form);
}

void SafekeepingPage::load() {
    const Safekeeping k = Safekeeping::load();
    folder_->setText(k.backupFolder);
    limitMb_->setValue(k.backupLimitMb);
    binDays_->setValue(k.binDays);
}

bool SafekeepingPage::ready(Messages& dialogs) {
    const QString typed = folder_->text().trimmed();
    if (typed.isEmpty()) return true;
    const QDir beside = QFileInfo(exchange::liveDataFile()).absoluteDir();
    const QFileInfo folder(beside.absoluteFilePath(typed));
    if (!folder.exists() || folder.isDir()) return true;
    dialogs.info(messageTitle(),
                 QStringLiteral("「%1」是一个文件，不是文件夹。请换一个自动备份文件夹。")
                     .arg(QDir::toNativeSeparators(folder.absoluteFilePath())));
    folder_->setFocus();
    return false;
}

bool SafekeepingPage::save() {
    Safekeeping k;
    k.backupFolder = folder_->text().trimmed();
    k.backupLimitMb = limitMb_->value();
    k.binDays = binDays_->value();
    QString ignored;  // the window tells the user that the page was not saved
    return k.save(&ignored);
}

}  // namespace tarvel
