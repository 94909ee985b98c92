#include "views/common/namesearch.h"

#include <QLineEdit>
#include <QListWidget>
#include <QTimer>

#include "records/recordsearch.h"

namespace tarvel {

namespace {
// Enough to choose from; a longer list is narrowed by typing on.
constexpr int kShownRecords = 50;
}  // namespace

NameSearch::NameSearch(QLineEdit* box, QListWidget* list, Statement statement, QString separator,
                       QObject* parent)
    : QObject(parent),
      box_(box),
      list_(list),
      statement_(std::move(statement)),
      separator_(std::move(separator)),
      pause_(new QTimer(this)) {
    pause_->setSingleShot(true);
    pause_->setInterval(250);
    setOffered(false);
    // Only the user's typing searches; a record being shown does not.
    connect(box_, &QLineEdit::textEdited, pause_, qOverload<>(&QTimer::start));
    connect(pause_, &QTimer::timeout, this, &NameSearch::searchNow);
    // A click or Enter chooses; the list is emptied after the signal that
    // carries its item has returned.
    const auto choose = [this](QListWidgetItem* item) {
        if (list_->isHidden()) return;
        setOffered(false);
        QMetaObject::invokeMethod(this, &NameSearch::clear, Qt::QueuedConnection);
        emit chosen(item->data(Qt::UserRole).toInt());
    };
    connect(list_, &QListWidget::itemClicked, this, choose);
    connect(list_, &QListWidget::itemActivated, this, choose);
}

void NameSearch::setListLabel(QWidget* label) {
    label_ = label;
    setOffered(!list_->isHidden());
}

void NameSearch::setOffered(bool offered) {
    list_->setVisible(offered);
    if (label_) label_->setVisible(offered);
}

void NameSearch::clear() {
    pause_->stop();
    list_->clear();
    setOffered(false);
}

void NameSearch::searchNow() {
    pause_->stop();
    list_->clear();
    const QString text = box_->text().trimmed();
    if (text.isEmpty()) return setOffered(false);
    RecordSearch search;
    if (!search.run(statement_(text), kShownRecords)) {
        setOffered(false);
        emit failed(search.ErrMsg());
        return;
    }
    for (const FoundRecord& r : search.found()) {
        auto* item = new QListWidgetItem(
            r.account.isEmpty() || separator_.isEmpty() ? r.name : r.name + separator_ + r.account,
            list_);
        item->setData(Qt::UserRole, r.id);
    }
    if (search.more()) {
        auto* more = new QListWidgetItem(QStringLiteral("……（请输入更多文字以缩小范围）"), list_);
        more->setFlags(Qt::NoItemFlags);
    }
    setOffered(list_->count() > 0);
}

}  // namespace tarvel
