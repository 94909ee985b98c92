#include "views/exchange/formdataio.h"

#include <QDir>
#include <QFileInfo>
#include <QGridLayout>
#include <QGroupBox>
#include <QScrollArea>
#include <QVBoxLayout>

#include "custom/softwaresetting.h"
#include "exchange/autobackup.h"
#include "exchange/backup.h"
#include "exchange/csvimport.h"
#include "exchange/filetools.h"
#include "exchange/importsession.h"
#include "exchange/reportexport.h"
#include "exchange/reportimport.h"
#include "exchange/tableexport.h"
#include "exchange/tables.h"
#include "exchange/vcard.h"
#include "store/clock.h"
#include "views/common/buttons.h"
#include "views/common/progressrun.h"
#include "views/exchange/autobackuplist.h"
#include "views/exchange/recyclebindialog.h"
#include "views/exchange/reportexportflow.h"

namespace tarvel {

namespace {

const QString kTableOutFilter = QStringLiteral("Excel文件 (*.xlsx)|*.xlsx|csv文件 (*.csv)|*.csv");
const QString kTableInFilter =
    QStringLiteral("Excel或csv文件 (*.xlsx *.csv *.txt)|*.xlsx;*.csv;*.txt");
const QString kVCardFilter = QStringLiteral("vCard名片(*.vcf)|*.vcf");

QGroupBox* section(const QString& title, QVBoxLayout* page) {
    auto* box = new QGroupBox(title);
    page->addWidget(box);
    return box;
}

// A section's one row: the combo behind its label, then the buttons, then air.
void addExchangeRow(QGridLayout* grid, const QString& caption, QComboBox* combo,
                    std::initializer_list<QPushButton*> buttons) {
    auto* label = new QLabel(caption);
    label->setBuddy(combo);
    grid->addWidget(label, 0, 0);
    grid->addWidget(combo, 0, 1);
    int column = 2;
    for (QPushButton* b : buttons) grid->addWidget(b, 0, column++);
    grid->setColumnStretch(column, 1);
}

}  // namespace

FormDataIO::FormDataIO(QWidget* parent) : PageWidget(parent) {
    setObjectName(QStringLiteral("form_dataio"));
    dialogs_ = std::make_shared<MessageBoxDialogs>(this);
    files_ = std::make_shared<QtFileDialogs>(this, QtFileDialogs::Overwrite::CallerAsks);
    prompts_ = std::make_shared<DialogDataIoPrompts>(this);
    auto* outer = new QVBoxLayout(this);
    auto* title = new QLabel(QStringLiteral("数据交换"));
    title->setObjectName(QStringLiteral("lbl_title"));
    setHeadingFont(title, 1.4);
    outer->addWidget(title);
    // The sections are taller than a small window: they scroll under the
    // title rather than being cut off at the bottom.
    auto* content = new QWidget;
    content->setObjectName(QStringLiteral("fra_sections"));
    auto* page = new QVBoxLayout(content);
    page->setContentsMargins(0, 0, 0, 0);
    auto* scroll = new QScrollArea;
    scroll->setObjectName(QStringLiteral("scr_sections"));
    scroll->setWidgetResizable(true);
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setWidget(content);
    outer->addWidget(scroll, 1);

    auto* backup = new QGridLayout(section(QStringLiteral("备份与恢复"), page));
    backup->addWidget(
        button("Cmd_Backup", QStringLiteral("备份数据..."), &FormDataIO::Cmd_Backup_Click), 0, 0);
    backup->addWidget(
        button("Cmd_Restore", QStringLiteral("恢复数据..."), &FormDataIO::Cmd_Restore_Click), 0, 1);
    lblBackupDate_ = new QLabel;
    lblBackupDate_->setObjectName(QStringLiteral("lbl_backupdate"));
    backup->addWidget(lblBackupDate_, 0, 2);
    backup->setColumnStretch(3, 1);
    autoBackups_ = new AutoBackupList;
    page->addWidget(autoBackups_);
    connect(autoBackups_, &AutoBackupList::restoreRequested, this, &FormDataIO::restoreAutoBackup);

    auto* report = new QGridLayout(
        section(QStringLiteral("Tarvel报表（发给同事或上级，对方导入后合并）"), page));
    cboReportKind_ = kindCombo("cbo_report_kind", {3, 2, 1, 4});
    addExchangeRow(report, QStringLiteral("导出选定的(&R)"), cboReportKind_,
                   {button("cmd_export_report", QStringLiteral("导出到Tarvel报表..."),
                           &FormDataIO::cmd_export_report_Click),
                    button("cmd_import_report", QStringLiteral("导入Tarvel报表..."),
                           &FormDataIO::cmd_import_report_Click)});

    auto* csv = new QGridLayout(section(QStringLiteral("Excel/CSV表格"), page));
    cboCsvKind_ = kindCombo("cbo_csv_kind", {3, 2, 1, 4, 5});
    cmdImportCsv_ = button("cmd_import_csv", QStringLiteral("从Excel/CSV文件导入..."),
                           &FormDataIO::cmd_import_csv_Click);
    addExchangeRow(csv, QStringLiteral("记录类别(&K)"), cboCsvKind_,
                   {button("cmd_export_csv", QStringLiteral("导出选定记录到Excel/CSV..."),
                           &FormDataIO::cmd_export_csv_Click),
                    cmdImportCsv_});
    // Only contacts and accounts come in from spreadsheets.
    connect(cboCsvKind_, &QComboBox::currentIndexChanged, this, [this] {
        cmdImportCsv_->setEnabled(cboCsvKind_->currentData().toInt() == 2 ||
                                  cboCsvKind_->currentData().toInt() == 3);
    });

    auto* vcard = new QGridLayout(section(QStringLiteral("vCard名片（手机、邮件程序）"), page));
    cboVCardVersion_ = new QComboBox;
    cboVCardVersion_->setObjectName(QStringLiteral("cbo_vcard_version"));
    cboVCardVersion_->addItem(QStringLiteral("vCard 4.0"), int(exchange::VCardVersion::Four));
    cboVCardVersion_->addItem(QStringLiteral("vCard 3.0（旧手机）"),
                              int(exchange::VCardVersion::Three));
    addExchangeRow(vcard, QStringLiteral("导出格式(&V)"), cboVCardVersion_,
                   {button("cmd_export_vcard", QStringLiteral("导出选定联系人到vCard..."),
                           &FormDataIO::cmd_export_vcard_Click),
                    button("cmd_import_vcard", QStringLiteral("从vCard文件导入联系人..."),
                           &FormDataIO::cmd_import_vcard_Click)});

    auto* undo = new QGridLayout(section(QStringLiteral("导入的记录"), page));
    cmdUndoImport_ = button("cmd_undo_import", QStringLiteral("撤销上次导入..."),
                            &FormDataIO::cmd_undo_import_Click);
    undo->addWidget(cmdUndoImport_, 0, 0);
    lblLastImport_ = new QLabel;
    lblLastImport_->setObjectName(QStringLiteral("lbl_lastimport"));
    lblLastImport_->setWordWrap(true);
    undo->addWidget(lblLastImport_, 0, 1);
    undo->setColumnStretch(1, 1);

    auto* bin = new QGridLayout(section(QStringLiteral("删除的记录"), page));
    bin->addWidget(
        button("cmd_recycle_bin", QStringLiteral("回收站"), &FormDataIO::cmd_recycle_bin_Click), 0,
        0);
    bin->setColumnStretch(1, 1);
    binOpener_ = [this](std::shared_ptr<Messages> dialogs) {
        RecycleBinDialog dialog(std::move(dialogs), this);
        dialog.exec();
        return dialog.restoredAny();
    };
    page->addStretch(1);

    setTabOrder(findChild<QWidget*>(QStringLiteral("Cmd_Backup")),
                findChild<QWidget*>(QStringLiteral("Cmd_Restore")));
    setTabOrder(findChild<QWidget*>(QStringLiteral("Cmd_Restore")), cboReportKind_);
}

QPushButton* FormDataIO::button(const char* name, const QString& text, void (FormDataIO::*slot)()) {
    QPushButton* b = namedButton(nullptr, QLatin1String(name), text);
    connect(b, &QPushButton::clicked, this, slot);
    return b;
}

QComboBox* FormDataIO::kindCombo(const char* name, const QList<int>& codes) {
    auto* combo = new QComboBox;
    combo->setObjectName(QLatin1String(name));
    for (int code : codes) combo->addItem(exchange::recordKind(code)->captionText(), code);
    return combo;
}

void FormDataIO::fill(const PageRequest&) {
    refresh();
}

void FormDataIO::refresh() {
    SoftwareSetting setting;
    setting.GetValue(QStringLiteral("software"), QStringLiteral("backupdate"));
    const QString date = setting.Set_Value().trimmed();
    lblBackupDate_->setText(date.isEmpty() ? QStringLiteral("还没有备份过")
                                           : QStringLiteral("最近备份日期：") + date);
    const QString last = exchange::lastImportDescription();
    lblLastImport_->setText(last.isEmpty() ? QStringLiteral("没有可以撤销的导入")
                                           : QStringLiteral("上次导入：") + last);
    cmdUndoImport_->setEnabled(!last.isEmpty());
    autoBackups_->refresh();
}

bool FormDataIO::report(const exchange::Outcome& outcome, const QString& success) {
    if (outcome.ok) {
        if (!success.isEmpty()) dialogs_->info(messageTitle(), success);
    } else if (!outcome.cancelled) {
        dialogs_->info(messageTitle(), outcome.ErrMsg);
    }
    return outcome.ok;
}

QString FormDataIO::openName(const QString& caption, const QString& filter) {
    return files_->getOpenFileName(caption, exchange::dataFolder(), filter).trimmed();
}

QString FormDataIO::saveName(const QString& caption, const QString& proposed,
                             const QString& filter) {
    const QString chosen = files_->getSaveFileName(caption, proposed, filter).trimmed();
    // The file dialog leaves the overwrite question to the program's own words.
    if (!chosen.isEmpty() && QFileInfo::exists(chosen) &&
        !dialogs_->ask(messageTitle(), exchange::overwriteQuestion(chosen)))
        return {};
    return chosen;
}

void FormDataIO::Cmd_Backup_Click() {
    const auto names = exchange::BackupNames::at(exchange::dataFolder(), Clock::now());
    const QString chosen =
        saveName(QStringLiteral("备份数据"), names.offered, exchange::backupFilter());
    if (chosen.isEmpty()) return;
    ProgressRun progress(this, QStringLiteral("正在备份数据……"));
    if (report(exchange::backupTo(chosen, progress.callback()), QStringLiteral("备份成功!")))
        refresh();
}

void FormDataIO::Cmd_Restore_Click() {
    const QString chosen = openName(QStringLiteral("恢复数据"), exchange::backupFilter());
    if (chosen.isEmpty()) return;
    restoreFile(chosen);
}

void FormDataIO::restoreAutoBackup(const QString& path) {
    const QString when = exchange::autoBackupMoment(QFileInfo(path).fileName())
                             .toString(QStringLiteral("yyyy-MM-dd HH:mm"));
    if (!dialogs_->ask(
            messageTitle(),
            QStringLiteral("用 %1 的自动备份替换当前数据吗？当前数据会先另存一份。").arg(when)))
        return;
    restoreFile(path);
}

void FormDataIO::restoreFile(const QString& chosen) {
    exchange::Outcome out;
    {
        ProgressRun progress(this, QStringLiteral("正在恢复数据……"));
        out = exchange::restoreFrom(chosen, progress.callback());
    }
    // The screens read again whether or not the file was replaced.
    emit dataReplaced();
    refresh();
    report(out, QStringLiteral("恢复成功! 恢复之前的文件已经备份到") + out.path);
}

void FormDataIO::cmd_export_report_Click() {
    ExportReport(cboReportKind_->currentData().toInt(), this, *dialogs_, *files_, pageSwitch_);
}

void FormDataIO::cmd_import_report_Click() {
    const QString chosen = openName(QStringLiteral("导入Tarvel报表"), exchange::mergeFilter());
    if (chosen.isEmpty()) return;
    exchange::ImportSummary summary;
    exchange::ImportTally tally;
    ProgressRun progress(this, QStringLiteral("正在导入Tarvel报表……"));
    const exchange::Outcome out =
        exchange::importReport(chosen, &summary, progress.callback(), &tally);
    if (report(out, QStringLiteral("导入Tarvel报表完成：%1。新增的记录：%2")
                        .arg(tally.summary(), exchange::describe(summary))))
        emit dataReplaced();
}

void FormDataIO::cmd_export_csv_Click() {
    const exchange::RecordKind* kind = exchange::recordKind(cboCsvKind_->currentData().toInt());
    const QString proposed = QDir(exchange::dataFolder())
                                 .filePath(QStringLiteral("output-") + QLatin1String(kind->table) +
                                           QStringLiteral(".xlsx"));
    const QString chosen =
        saveName(QStringLiteral("请选择要生成的文件名"), proposed, kTableOutFilter);
    if (chosen.isEmpty()) return;
    ProgressRun progress(this, QStringLiteral("正在导出……"));
    report(exchange::exportTicked(QLatin1String(kind->table), chosen, progress.callback()),
           QStringLiteral("已导出到 ") + chosen);
}

void FormDataIO::cmd_import_csv_Click() {
    const exchange::RecordKind* kind = exchange::recordKind(cboCsvKind_->currentData().toInt());
    const QString chosen =
        openName(QStringLiteral("从Excel/CSV文件导入") + kind->captionText(), kTableInFilter);
    if (chosen.isEmpty()) return;
    exchange::CsvImportPlan plan;
    QString error;
    if (!exchange::planCsvImport(chosen, QLatin1String(kind->table), &plan, &error)) {
        dialogs_->info(messageTitle(), error);
        return;
    }
    if (!plan.encodingProblem.isEmpty() &&
        !dialogs_->ask(messageTitle(), plan.encodingProblem + QStringLiteral("\n仍然导入吗？")))
        return;
    if (!prompts_->confirmCsvImport(&plan)) return;
    if (!exchange::rememberTargets(plan, &error)) dialogs_->info(messageTitle(), error);
    // Cells that cannot be read: the user decides whether the rest comes in.
    if (!plan.problems.isEmpty() &&
        !dialogs_->ask(messageTitle(),
                       QStringLiteral("文件中有%1处无法导入：\n%2\n\n导入其余的内容吗？")
                           .arg(plan.problems.size())
                           .arg(plan.problems.mid(0, 20).join(QLatin1Char('\n')))))
        return;
    exchange::CsvImportResult result;
    ProgressRun progress(this, QStringLiteral("正在导入……"));
    const exchange::Outcome out = exchange::importCsv(plan, true, &result, progress.callback());
    if (report(out, QStringLiteral("导入%1完成：").arg(kind->captionText()) + result.summary()))
        emit dataReplaced();
}

void FormDataIO::cmd_export_vcard_Click() {
    const QString proposed = QDir(exchange::dataFolder()).filePath(QStringLiteral("contacts.vcf"));
    const QString chosen =
        saveName(QStringLiteral("导出选定联系人到vCard"), proposed, kVCardFilter);
    if (chosen.isEmpty()) return;
    int written = 0;
    ProgressRun progress(this, QStringLiteral("正在导出……"));
    const auto version = exchange::VCardVersion(cboVCardVersion_->currentData().toInt());
    const exchange::Outcome out =
        exchange::exportVCards(chosen, version, &written, progress.callback());
    report(out, QStringLiteral("已导出 %1 个联系人到 %2").arg(written).arg(chosen));
}

void FormDataIO::cmd_import_vcard_Click() {
    const QString chosen = openName(QStringLiteral("从vCard文件导入联系人"), kVCardFilter);
    if (chosen.isEmpty()) return;
    exchange::VCardImport done;
    ProgressRun progress(this, QStringLiteral("正在导入……"));
    const exchange::Outcome out = exchange::importVCards(chosen, &done, progress.callback());
    if (report(out, done.summary())) emit dataReplaced();
    refresh();
}

void FormDataIO::cmd_undo_import_Click() {
    const QString last = exchange::lastImportDescription();
    if (last.isEmpty()) {
        dialogs_->info(messageTitle(), QStringLiteral("没有可以撤销的导入"));
        return;
    }
    if (!dialogs_->ask(messageTitle(),
                       QStringLiteral("确定要撤销上次导入吗？\n%1\n导入的新记录将被删除，"
                                      "填入的内容将被清空；导入后修改过的记录保留不动。")
                           .arg(last)))
        return;
    exchange::UndoImportResult result;
    const exchange::Outcome out = exchange::undoLastImport(&result);
    if (report(out, result.summary())) emit dataReplaced();
    refresh();
}

void FormDataIO::cmd_recycle_bin_Click() {
    if (binOpener_ && binOpener_(dialogs_)) emit dataReplaced();
}

}  // namespace tarvel
