#pragma once

#include <QComboBox>
#include <QLabel>
#include <QPushButton>
#include <functional>
#include <memory>

#include "exchange/progress.h"
#include "views/common/dialogs.h"
#include "views/common/filedialogs.h"
#include "views/common/page.h"
#include "views/exchange/dataioprompts.h"

namespace tarvel {

class AutoBackupList;

// The data exchange page form_dataio (page 42): backup and restore of the data
// file, report files out and in, CSV and vCard.
class FormDataIO : public PageWidget {
    Q_OBJECT
public:
    explicit FormDataIO(QWidget* parent = nullptr);

    void setDialogs(std::shared_ptr<Messages> dialogs) { dialogs_ = std::move(dialogs); }
    // The file dialogs leave the overwrite question to the page.
    void setFileDialogs(std::shared_ptr<FileDialogs> files) { files_ = std::move(files); }
    void setPrompts(std::shared_ptr<DataIoPrompts> prompts) { prompts_ = std::move(prompts); }
    void setPageSwitch(PageSwitch pageSwitch) { pageSwitch_ = std::move(pageSwitch); }
    // Shows the recycle bin; true when records were put back. Tests replace the
    // modal dialog.
    using RecycleBinOpener = std::function<bool(std::shared_ptr<Messages>)>;
    void setRecycleBinOpener(RecycleBinOpener opener) { binOpener_ = std::move(opener); }

    void fill(const PageRequest& request) override;
    void refresh() override;

public slots:
    void Cmd_Backup_Click();
    void Cmd_Restore_Click();
    void cmd_export_report_Click();
    void cmd_import_report_Click();
    void cmd_export_csv_Click();
    void cmd_import_csv_Click();
    void cmd_export_vcard_Click();
    void cmd_import_vcard_Click();
    void cmd_undo_import_Click();
    void cmd_recycle_bin_Click();
    // 恢复 of an automatic backup: the same checks and safety copy as by hand.
    void restoreAutoBackup(const QString& path);

signals:
    // Records were restored or added: screens read their data again.
    void dataReplaced();

private:
    QPushButton* button(const char* name, const QString& text, void (FormDataIO::*slot)());
    QComboBox* kindCombo(const char* name, const QList<int>& codes);
    // The outcome as a message; false when it failed (or was cancelled).
    bool report(const exchange::Outcome& outcome, const QString& success);
    QString openName(const QString& caption, const QString& filter);
    QString saveName(const QString& caption, const QString& proposed, const QString& filter);
    void restoreFile(const QString& chosen);

    std::shared_ptr<Messages> dialogs_;
    std::shared_ptr<FileDialogs> files_;
    std::shared_ptr<DataIoPrompts> prompts_;
    PageSwitch pageSwitch_;
    RecycleBinOpener binOpener_;
    QLabel* lblBackupDate_;
    QLabel* lblLastImport_;
    QPushButton* cmdUndoImport_;
    QComboBox* cboReportKind_;
    QComboBox* cboCsvKind_;
    QComboBox* cboVCardVersion_;
    QPushButton* cmdImportCsv_ = nullptr;
    AutoBackupList* autoBackups_;
};

}  // namespace tarvel
