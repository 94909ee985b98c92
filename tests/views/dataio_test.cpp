// The data exchange page: backup and restore through the page's seams, the
// report export as the lists run it, and the CSV import's confirmation.
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QSignalSpy>
#include <QTreeWidget>
#include <QtTest>

#include "custom/userprofile.h"
#include "exchange/autobackup.h"
#include "exchange/backup.h"
#include "exchange/importsession.h"
#include "store/clock.h"
#include "tests/views/screenfixture.h"
#include "views/exchange/csvpreview.h"
#include "views/exchange/formdataio.h"
#include "views/exchange/reportexportflow.h"

using namespace tarvel;
using namespace tarvel::testsupport;

namespace {

// File names and the CSV confirmation from a script; records what was asked.
class ScriptedPrompts : public DataIoPrompts, public FileDialogs {
public:
    QString getOpenFileName(const QString& caption, const QString& dir,
                            const QString& filter) override {
        asked << QStringLiteral("open|%1|%2|%3").arg(caption, dir, filter);
        return names.isEmpty() ? QString() : names.takeFirst();
    }
    QString getSaveFileName(const QString& caption, const QString& proposed,
                            const QString& filter) override {
        asked << QStringLiteral("save|%1|%2|%3").arg(caption, proposed, filter);
        return names.isEmpty() ? QString() : names.takeFirst();
    }
    bool confirmCsvImport(exchange::CsvImportPlan* plan) override {
        confirmed << plan->targets;
        if (!retargeted.isEmpty()) exchange::retarget(plan, retargeted);
        return confirmAnswer;
    }
    QStringList names, asked;
    QList<QStringList> confirmed;
    QStringList retargeted;  // the user's choice of fields, when set
    bool confirmAnswer = true;
};

// A file named `name` in `folder` holding `bytes`; its path.
QString inFolderOf(const QString& folder, const QString& name, const QByteArray& bytes) {
    const QString path = QDir(folder).filePath(name);
    QFile f(path);
    if (f.open(QIODevice::WriteOnly)) f.write(bytes);
    return path;
}

int contacts() {
    return firstValue("SELECT COUNT(*) FROM contacts").toInt();
}

}  // namespace

class DataIoTest : public tarvel::testsupport::ScreenFixture {
    Q_OBJECT
private slots:
    void init() {
        begin(at(2024, 5, 20, 10, 3));
        prompts_ = std::make_shared<ScriptedPrompts>();
        opened_.clear();
        page_ = std::make_unique<FormDataIO>();
        page_->setDialogs(dialogs_);
        page_->setPrompts(prompts_);
        page_->setFileDialogs(prompts_);
        page_->setPageSwitch(recordOpened());
        page_->fill(PageRequest{});
        page_->show();
        run("INSERT INTO contacts (con_lastname, con_check) VALUES ('张三', true)");
        replaced_ = std::make_unique<QSignalSpy>(page_.get(), &FormDataIO::dataReplaced);
    }
    void cleanup() {
        replaced_.reset();
        page_.reset();
        end();
    }

    void everyControlIsNamedAndReachable() {
        for (const char* name :
             {"Cmd_Backup", "Cmd_Restore", "cmd_export_report", "cmd_import_report",
              "cmd_export_csv", "cmd_import_csv", "cmd_export_vcard", "cmd_import_vcard"})
            QVERIFY2(child<QPushButton>(*page_, name)->isEnabled(), name);
        for (QLabel* label : page_->findChildren<QLabel*>())
            if (label->text().contains('&')) QVERIFY(label->buddy());
        // Spreadsheets bring contacts and accounts only.
        child<QComboBox>(*page_, "cbo_csv_kind")->setCurrentIndex(3);
        QVERIFY(!child<QPushButton>(*page_, "cmd_import_csv")->isEnabled());
        child<QComboBox>(*page_, "cbo_csv_kind")->setCurrentIndex(1);
        QVERIFY(child<QPushButton>(*page_, "cmd_import_csv")->isEnabled());
    }

    void backupOffersItsNameAndRecordsTheDate() {
        click(*page_, "Cmd_Backup");  // cancelled: nothing happens
        QCOMPARE(
            prompts_->asked.value(0),
            QString("save|备份数据|%1/Tarvel数据备份文件2024-5-20.tbk|Tarvel备份文件(*.tbk)|*.tbk")
                .arg(file_->folder()));
        QVERIFY(dialogs_->shown.isEmpty());
        const QString target = QDir(file_->folder()).filePath("b.tbk");
        pick(target, "Cmd_Backup");
        QCOMPARE(dialogs_->lastText(), QString("备份成功!"));
        QVERIFY(QFile::exists(target));
        QCOMPARE(child<QLabel>(*page_, "lbl_backupdate")->text(),
                 QString("最近备份日期：2024-5-20"));
        const qint64 size = QFileInfo(target).size();
        pick(target, "Cmd_Backup");  // asked before it is overwritten: No
        QCOMPARE(dialogs_->lastText(), target + "已经存在,是否覆盖该文件?");
        QCOMPARE(QFileInfo(target).size(), size);

        run("INSERT INTO contacts (con_lastname) VALUES ('李四')");
        pick(target, "Cmd_Restore");
        QCOMPARE(dialogs_->lastText(),
                 QString("恢复成功! 恢复之前的文件已经备份到%1/tmpbackup2024-5-20-10-3.tbk")
                     .arg(file_->folder()));
        QCOMPARE(replaced_->count(), 1);
        QCOMPARE(contacts(), 1);

        pick(QDir(file_->folder()).filePath("tmpbackup2024-5-20-10-3.tbk.missing"), "Cmd_Restore");
        QVERIFY(dialogs_->lastText().startsWith("不能恢复该文件"));
        QCOMPARE(contacts(), 1);
    }

    void automaticBackupsAreListedAndRestoredAfterAsking() {
        const exchange::AutoBackupPlace place = exchange::autoBackupPlace(file_->path());
        auto backupAt = [&](const QDateTime& moment) {
            const exchange::AutoBackupResult r =
                exchange::runAutoBackup({file_->path(), place, moment, {}});
            QVERIFY2(r.ok, qPrintable(r.message));
        };
        const int first = contacts() + 1;
        run("INSERT INTO contacts (con_lastname) VALUES ('张三')");
        backupAt(at(2024, 5, 19, 17, 45));
        run("INSERT INTO contacts (con_lastname) VALUES ('李四')");
        backupAt(at(2024, 5, 20, 9, 5));
        run("INSERT INTO contacts (con_lastname) VALUES ('王五')");
        page_->refresh();
        auto* grid = child<QTreeWidget>(*page_, "lv_auto_backups");
        QCOMPARE(child<QLabel>(*page_, "lbl_auto_backups")->buddy(), grid);
        QCOMPARE(grid->topLevelItemCount(), 2);
        QCOMPARE(grid->topLevelItem(0)->text(0), QString("2024-05-20 09:05"));
        QCOMPARE(grid->topLevelItem(1)->text(0), QString("2024-05-19 17:45"));
        QVERIFY2(grid->topLevelItem(0)->text(2).contains(QString("联系人 %1").arg(first + 1)),
                 qPrintable(grid->topLevelItem(0)->text(2)));
        QVERIFY(!grid->topLevelItem(0)->text(1).isEmpty());

        grid->setCurrentItem(grid->topLevelItem(1));
        click(*page_, "cmd_restore_auto");  // asked first: No
        says("2024-05-19 17:45");
        QCOMPARE(contacts(), first + 2);
        dialogs_->answers << true;
        click(*page_, "cmd_restore_auto");
        QVERIFY(dialogs_->lastText().startsWith("恢复成功! "));
        QCOMPARE(replaced_->count(), 1);
        QCOMPARE(contacts(), first);
        // The list is read again after the restore and still holds both.
        QCOMPARE(child<QTreeWidget>(*page_, "lv_auto_backups")->topLevelItemCount(), 2);
    }

    void reportExportAsTheListsRunIt() {
        QVERIFY(!exportReportFromList(3, page_.get(), *dialogs_, *prompts_, {}));
        QCOMPARE(dialogs_->shown.size(), 2);
        QVERIFY(dialogs_->shown[0].text.contains("电子邮件"));
        QCOMPARE(dialogs_->shown[1].text, QString("导出Tarvel报表没有完成!"));
        QVERIFY(prompts_->asked.isEmpty());

        QVERIFY((UserProfile{"王经理", "甲公司", "经理", "w@example.cn"}).save());
        const QString target = inFolderOf(file_->folder(), "r.tvr3", "old");
        dialogs_->shown.clear();
        prompts_->names << target;
        dialogs_->answers << false;  // keep the existing file
        QVERIFY(!exportReportFromList(3, page_.get(), *dialogs_, *prompts_, recordOpened()));
        QCOMPARE(prompts_->asked.last(),
                 QString("save|导出到Tarvel报表|%1/王经理2024-5-20 - "
                         "日志报告文件.tvr3|Tarvel3.0报告文件(*.tvr3)|*.tvr3")
                     .arg(file_->folder()));
        QCOMPARE(dialogs_->shown[0].text, target + "已经存在,是否覆盖该文件?");
        QCOMPARE(QFileInfo(target).size(), 3);
        QVERIFY(opened_.isEmpty());

        dialogs_->shown.clear();
        prompts_->names << target;
        dialogs_->answers << true << false;  // overwrite; no e-mail now
        QVERIFY(exportReportFromList(3, page_.get(), *dialogs_, *prompts_, recordOpened()));
        QCOMPARE(dialogs_->lastText(), QString("导出Tarvel报表完成,现在要发送邮件吗?"));
        QCOMPARE(opened_, QList<qint16>{page::DataExchange});
        QVERIFY(QFileInfo(target).size() > 3);
    }

    void reportImportTakesDataFilesAndBackups() {
        // A backup of this very file: everything in it is here already.
        const QString backup = QDir(file_->folder()).filePath("早先.tbk");
        QVERIFY(exchange::backupTo(backup).ok);
        pick(backup, "cmd_import_report");
        const QString asked = prompts_->asked.value(0);
        for (const char* type : {"*.tvr3", "*.tvg", "*.tbk"})
            QVERIFY2(asked.section('|', 3, 3).contains(type), qPrintable(asked));
        says("新增 0，更新 0，跳过 1");
        QCOMPARE(contacts(), 1);
    }

    void csvImportAsksFirst() {
        const QString path =
            inFolderOf(file_->folder(), "in.csv", "姓名,手机,客户/单位名称\n王五,139,乙公司\n");
        prompts_->confirmAnswer = false;
        pick(path, "cmd_import_csv");
        QCOMPARE(prompts_->confirmed.value(0),
                 QStringList({"con_lastname", "con_mobile", "acc_name"}));
        QCOMPARE(contacts(), 1);
        QVERIFY(dialogs_->shown.isEmpty());

        // The user leaves the mobile out; the next file with these captions
        // is offered the same choice.
        prompts_->confirmAnswer = true;
        prompts_->retargeted = {"con_lastname", "", "acc_name"};
        pick(path, "cmd_import_csv");
        says("新增 1");
        QCOMPARE(contacts(), 2);
        QCOMPARE(firstValue("SELECT COUNT(*) FROM contacts WHERE con_mobile='139'").toInt(), 0);
        QCOMPARE(replaced_->count(), 1);
        prompts_->confirmAnswer = false;
        pick(path, "cmd_import_csv");
        QCOMPARE(prompts_->confirmed.value(2), QStringList({"con_lastname", "", "acc_name"}));
    }

    void previewOffersAChoicePerColumn() {
        const QString path =
            inFolderOf(file_->folder(), "sheet.csv", "姓名,手机,不认识\n王五,139,x\n");
        exchange::CsvImportPlan plan;
        QString error;
        QVERIFY(exchange::planCsvImport(path, "contacts", &plan, &error));
        CsvPreview preview(&plan);
        QCOMPARE(preview.choices().size(), 3);
        for (int c = 0; c < 3; ++c) {
            auto* combo =
                child<QComboBox>(preview, qPrintable(QString("cbo_csv_column_%1").arg(c)));
            QCOMPARE(
                child<QLabel>(preview, qPrintable(QString("lbl_csv_column_%1").arg(c)))->buddy(),
                combo);
            QVERIFY(combo->focusPolicy() & Qt::TabFocus);
        }
        QCOMPARE(preview.choices()[1]->currentData().toString(), QString("con_mobile"));
        QCOMPARE(preview.choices()[2]->currentText(), QString("不导入"));
        preview.choices()[1]->setCurrentIndex(0);
        preview.choices()[2]->setCurrentIndex(preview.choices()[2]->findData("con_nickname"));
        QVERIFY(preview.table()->horizontalHeaderItem(2)->text().contains("昵称"));
        preview.accept();
        QCOMPARE(plan.targets, QStringList({"con_lastname", "", "con_nickname"}));
    }

    void csvImportWithBadCellsAsksBeforeTheRest() {
        const QString path =
            inFolderOf(file_->folder(), "bad.csv", "姓名,生日\n赵一,1990-1-1\n钱二,明年\n");
        pick(path, "cmd_import_csv");  // the question is answered No
        says("第3行“生日”");
        QCOMPARE(contacts(), 1);
        dialogs_->answers << true;
        pick(path, "cmd_import_csv");
        QCOMPARE(contacts(), 3);
        says("新增 2");
    }

    void vcardExportsTheChosenVersionAndImportSaysWhatItDid() {
        const QString path = QDir(file_->folder()).filePath("out.vcf");
        child<QComboBox>(*page_, "cbo_vcard_version")->setCurrentIndex(1);  // 3.0, older phones
        pick(path, "cmd_export_vcard");
        QCOMPARE(dialogs_->lastText(), QString("已导出 1 个联系人到 %1").arg(path));
        QFile out(path);
        QVERIFY(out.open(QIODevice::ReadOnly));
        QVERIFY(out.readAll().contains("\r\nVERSION:3.0\r\nFN:张三\r\n"));

        const QString in = inFolderOf(file_->folder(), "in.vcf",
                                      "BEGIN:VCARD\r\nVERSION:3.0\r\nFN:王五\r\nEND:VCARD\r\n"
                                      "BEGIN:VCARD\r\nVERSION:3.0\r\nFN:半张\r\n");
        pick(in, "cmd_import_vcard");
        QVERIFY2(dialogs_->lastText().startsWith("新增 1，更新 0，跳过 0"),
                 qPrintable(dialogs_->lastText()));
        says("第2张名片");
        QCOMPARE(contacts(), 2);
        QCOMPARE(replaced_->count(), 1);
        // The import can be taken back now.
        QVERIFY(child<QPushButton>(*page_, "cmd_undo_import")->isEnabled());
        QVERIFY(child<QLabel>(*page_, "lbl_lastimport")->text().contains("in.vcf"));
    }

    void lastImportIsTakenBackAfterAsking() {
        auto* undo = child<QPushButton>(*page_, "cmd_undo_import");
        QVERIFY(!undo->isEnabled());
        {
            exchange::ImportSession session("contacts", "vcard", "phone.vcf");
            QString error;
            exchange::IncomingRecord r;
            r.columns.insert("con_lastname", "欧阳娜娜");
            QVERIFY(session.put(r, &error));
            QVERIFY(session.commit(&error));
        }
        page_->refresh();
        QVERIFY(undo->isEnabled());
        QVERIFY(child<QLabel>(*page_, "lbl_lastimport")->text().contains("phone.vcf"));
        QCOMPARE(contacts(), 2);
        click(*page_, "cmd_undo_import");  // answered No
        QCOMPARE(contacts(), 2);
        dialogs_->answers << true;
        click(*page_, "cmd_undo_import");
        QCOMPARE(contacts(), 1);
        QCOMPARE(replaced_->count(), 1);
        QVERIFY(dialogs_->lastText().startsWith("已撤销上次导入：删除 1 条记录"));
        QVERIFY(!undo->isEnabled());
    }

private:
    // The file dialog hands out `file`, then `button` is clicked.
    void pick(const QString& file, const char* button) {
        prompts_->names << file;
        click(*page_, button);
    }
    void says(const QString& part) {
        QVERIFY2(dialogs_->lastText().contains(part), qPrintable(dialogs_->lastText()));
    }
    PageSwitch recordOpened() {
        return [this](qint16 code, const QString&, qint32) { opened_ << code; };
    }

    std::shared_ptr<ScriptedPrompts> prompts_;
    std::unique_ptr<QSignalSpy> replaced_;
    std::unique_ptr<FormDataIO> page_;
    QList<qint16> opened_;
};

QTEST_MAIN(DataIoTest)
#include "dataio_test.moc"
