#pragma once

#include <QDateEdit>
#include <QLabel>
#include <QLineEdit>
#include <QList>
#include <QPushButton>
#include <memory>

#include "schedule/statistics.h"
#include "views/common/page.h"
#include "views/common/windowmessages.h"

namespace tarvel {

// The schedule statistics page form_sch_stat: thirteen ready-made selections
// (lbl_Selection(0..12)) over the records not contacted for txt_overdays days
// or added, contacted, born or ending between DT_day1 and DT_day2. A click
// hands the chosen record kind's list page its filter; the page itself shows
// no results.
class FormSchStat : public PageWidget {
    Q_OBJECT
public:
    explicit FormSchStat(QWidget* parent = nullptr);

    void setDialogs(std::shared_ptr<Messages> dialogs) { dialogs_ = std::move(dialogs); }
    // Where a selection sends its list page and filter.
    void setPageSwitch(PageSwitch pageSwitch) { pageSwitch_ = std::move(pageSwitch); }

    // The values the user set stay when the page is shown again.
    void fill(const PageRequest& request) override;
    // The captions name the record kinds by their module captions.
    void rebuildLayout() override;

    QPushButton* lblSelection(int index) const { return selections_.value(index); }

public slots:
    void lblSelectionClick(int index);

private:
    std::shared_ptr<Messages> dialogs_;
    WindowMessages messages_{dialogs_};
    ScheduleStatistics statistics_{messages_};
    PageSwitch pageSwitch_;
    QLineEdit* txtOverdays_;
    QDateEdit* dtDay1_;
    QDateEdit* dtDay2_;
    QList<QPushButton*> selections_;
};

}  // namespace tarvel
