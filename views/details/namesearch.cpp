#include "views/details/namesearch.h"

#include <QLineEdit>
#include <QListWidget>
#include <QTimer>

#include "records/recordsearch.h"

namespace tarvel {

namespace {
// Enough to choose from; a longer list is narrowed by typing on.
constexpr int kShownRecords = 50;
}  // namespace

NameSearch::NameSearch(QLineEdit* box, QListWidget* list, Statement statement, bool withAccount,
                       QObject* parent)
    : QObject(parent),
      box_(box),
      list_(list),
      statement_(std::move(statement)),
      withAccount_(withAccount),
      pause_(new QTimer(this)) {
    pause_->setSingleShot(true);
    pause_->setInterval(250);
    list_->hide();
    // Only the user's typing searches; a record being shown does not.
    connect(box_, &QLineEdit::textEdited, pause_, qOverload<>(&QTimer::start));
    connect(pause_, &QTimer::timeout, this, &NameSearch::searchNow);
    // A click or Enter chooses; the list is emptied after the signal that
    // carries its item has returned.
    const auto choose = [this](QListWidgetItem* item) {
        if (list_->isHidden()) return;
        list_->hide();
        QMetaObject::invokeMethod(this, &NameSearch::clear, Qt::QueuedConnection);
        emit chosen(item->data(Qt::UserRole).toInt());
    };
    connect(list_, &QListWidget::itemClicked, this, choose);
    connect(list_, &QListWidget::itemActivated, this, choose);
}

void NameSearch::clear() {
    pause_->stop();
    list_->clear();
    list_->hide();
}

void NameSearch::searchNow() {
    pause_->stop();
    list_->clear();
    const QString text = box_->text().trimmed();
    if (text.isEmpty()) return list_->hide();
    RecordSearch search;
    if (!search.run(statement_(text), kShownRecords)) {
        list_->hide();
        emit failed(search.ErrMsg());
        return;
    }
    for (const FoundRecord& r : search.found()) {
        auto* item = new QListWidgetItem(
            withAccount_ ? r.name + QStringLiteral("  @  ") + r.account : r.name, list_);
        item->setData(Qt::UserRole, r.id);
    }
    if (search.more()) {
        auto* more = new QListWidgetItem(QStringLiteral("……（请输入更多文字以缩小范围）"), list_);
        more->setFlags(Qt::NoItemFlags);
    }
    list_->setVisible(list_->count() > 0);
}

}  // namespace tarvel
