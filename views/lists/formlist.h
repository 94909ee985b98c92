#pragma once

#include <QHash>
#include <QPointer>
#include <functional>
#include <memory>

#include "browse/listkind.h"
#include "browse/listrows.h"
#include "browse/liststore.h"
#include "exchange/tableexport.h"
#include "store/datacontrol.h"
#include "views/common/dialogs.h"
#include "views/common/filedialogs.h"
#include "views/common/page.h"
#include "views/lists/addresslabels.h"

class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QTableView;
class QTimer;
class QHBoxLayout;
class QVBoxLayout;

namespace tarvel {
class FileDialogs;
class RecordsetModel;
}  // namespace tarvel

namespace tarvel::lists {

class CategoryPanel;
class TickModel;

// The list screen of one record kind (form_con_all, form_acc_all,
// form_opp_all, form_doc_all and the task list): top bar with search and
// "增加", the navigation panel with counts, the grid of the records that meet
// the condition with their ticks, and the bulk operations on the ticked ones.
class FormList : public PageWidget {
    Q_OBJECT
public:
    explicit FormList(const ListKind& kind, QWidget* parent = nullptr);
    ~FormList() override;

    void setDialogs(std::shared_ptr<Messages> dialogs) { dialogs_ = std::move(dialogs); }
    void setPageSwitch(PageSwitch pageSwitch) { pageSwitch_ = std::move(pageSwitch); }
    void setFileDialogs(std::shared_ptr<FileDialogs> dialogs) { files_ = std::move(dialogs); }
    // Writes a changed condition into the current history entry.
    void setHistoryUpdate(std::function<void(const QString&)> update) {
        historyUpdate_ = std::move(update);
    }
    // The report-file export of the ticked records of a record kind (relation
    // numbering); it tells the user how it ended.
    void setReportExport(std::function<bool(qint16 recordKind)> exporter) {
        reportExport_ = std::move(exporter);
    }
    // Shows the address labels of the ticked contacts; a print preview
    // dialog unless set (tests look at the labels instead).
    void setLabelPreview(std::function<void(const QList<AddressLabel>&)> preview) {
        labelPreview_ = std::move(preview);
    }

    void fill(const PageRequest& request) override;
    void refresh() override;
    void rebuildLayout() override;

    const ListKind& kind() const { return kind_; }
    QString condition() const { return rows_.condition(); }
    DataControl& Adodc1() { return rows_.dataControl(); }
    TickModel* gridModel() const { return ticks_; }
    CategoryPanel* panel() const { return panel_; }

    // The bulk operation of a `cbo_operation` entry, by its caption.
    void runOperation(const QString& caption);
    // The search box's condition at once, without waiting for the pause.
    void searchNow();

    // The rows shown and the current one, which the detail page of this kind
    // follows and moves (-1 and 0 when there is none).
    ListRows& rows() { return rows_; }
    int rowCount() const { return rows_.count(); }
    int currentRow() const { return rows_.current(); }
    qint64 currentId() const { return rows_.currentKey(); }
    void setCurrentRow(int row) { rows_.setCurrent(row); }
    // What lbl_xxxrelated does with the current record (its related panel);
    // unset, it opens the record like lbl_xxxdetail.
    void setRelatedOpener(std::function<void(int id)> opener) {
        relatedOpener_ = std::move(opener);
    }

protected:
    void changeEvent(QEvent* event) override;

private:
    void buildTopBar(QHBoxLayout* bar);
    void buildFooter(QVBoxLayout* layout);
    // Shows the rows of `condition` in the grid; the condition stays as it was
    // when the query fails. A search is answered from every record's rows.
    bool showCondition(const QString& condition);
    // The condition in words, the count, and no "select all" tick.
    void showConditionText();
    // The grid's current row follows the rows' current one and back.
    void followCurrent();
    // A new condition chosen on this screen: shown and written into the history.
    void changeCondition(const QString& condition);
    void applyColumns();
    void recount();
    bool keepUnsavedEdits();
    void sortBy(int column);
    // The sort kept from an earlier click on a header, if its column is still listed.
    QString keptOrder() const;
    void saveWidths();
    void tickAll(int mode);
    void openRecord(int row);
    void info(const QString& text);
    QString fieldAt(int column) const;

    bool requireTicks();
    void deleteTicked();
    void exportCsv(bool withSums);
    void exportHtml();
    void showRelated();
    void printLabels();
    void exportReport();
    // 查找重复 of the contacts and accounts lists; the list is read again after a merge.
    void findDuplicates();
    // Asks for the file name (the offered one ends in `suffix`), then reads the
    // ticked rows; null when the user cancelled or the rows could not be read.
    RecordsetPtr tickedForExport(const QString& suffix, const QString& filter, QString* path);
    // A cancellable progress dialog, held in `dialog`, for exports of many
    // records; null (no progress shown) for few.

    const ListKind& kind_;
    ListStore store_;
    ListRows rows_;
    TickModel* ticks_;
    CategoryPanel* panel_;
    QTableView* grid_;
    QLineEdit* search_;
    QLabel* caption_;
    QLabel* words_;
    QLabel* count_;
    QCheckBox* selectAll_;
    QComboBox* operations_;
    QTimer* searchTimer_;
    QTimer* widthTimer_;
    QHash<QString, int> pendingWidths_;
    bool applyingColumns_ = false;
    std::shared_ptr<Messages> dialogs_;
    std::shared_ptr<FileDialogs> files_;
    PageSwitch pageSwitch_;
    std::function<void(const QString&)> historyUpdate_;
    std::function<bool(qint16)> reportExport_;
    std::function<void(const QList<AddressLabel>&)> labelPreview_;
    std::function<void(int)> relatedOpener_;
};

// The caption of the bulk-operation drop-down, shown again after each operation.
inline QString operationCaption() {
    return QStringLiteral("更多功能(对选择的记录)");
}
// The refusal of a bulk operation without ticked records.
inline QString noTicksMessage() {
    return QStringLiteral("您没有选择相应的记录,请在列表最左边一栏内选择");
}

}  // namespace tarvel::lists
