#include "views/details/detailcolumns.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QSplitter>
#include <QVBoxLayout>
#include <QWidget>
#include <algorithm>

namespace tarvel {

namespace {
// From this width of the page on, the memo gets a column of its own.
constexpr int kWideFrom = 1200;
// The least height the related area keeps when the fields take theirs.
constexpr int kRelatedLeast = 150;

void empty(QBoxLayout* column) {
    while (QLayoutItem* item = column->takeAt(0))
        if (!item->widget()) delete item;  // a stretch; widgets are placed again
}
}  // namespace

DetailColumns::DetailColumns(QWidget* page, QWidget* fields, QSplitter* splitter,
                             QList<QWidget*> left, QList<QWidget*> right, QWidget* memo)
    : QObject(page),
      fields_(fields),
      splitter_(splitter),
      left_(std::move(left)),
      right_(std::move(right)),
      memo_(memo),
      row_(new QHBoxLayout(fields)) {
    for (int i = 0; i < 3; ++i) {
        columns_ << new QVBoxLayout;
        row_->addLayout(columns_.last());
    }
    arrange(false);
    page->installEventFilter(this);
    connect(splitter_, &QSplitter::splitterMoved, this, [this] { userMoved_ = true; });
}

bool DetailColumns::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Resize || event->type() == QEvent::Show) {
        arrange(static_cast<QWidget*>(watched)->width() >= kWideFrom);
        shareHeight();
    }
    return QObject::eventFilter(watched, event);
}

void DetailColumns::arrange(bool wide) {
    if (wide_ == int(wide)) return;
    wide_ = int(wide);
    for (QBoxLayout* c : columns_) empty(c);
    const QList<QWidget*> later = wide ? left_.mid(1) : QList<QWidget*>();
    for (QWidget* w : wide ? left_.mid(0, 1) : left_) columns_[0]->addWidget(w);
    columns_[0]->addStretch(1);
    for (QWidget* w : right_) columns_[1]->addWidget(w);
    QBoxLayout* memoColumn = wide ? columns_[2] : columns_[1];
    for (QWidget* w : later) memoColumn->addWidget(w);
    memoColumn->addWidget(memo_, 1);
    for (int i = 0; i < 3; ++i) row_->setStretch(i, i < 2 || wide ? 1 : 0);
    row_->invalidate();
}

void DetailColumns::shareHeight() {
    if (userMoved_ || splitter_->count() != 2) return;
    const int total = splitter_->height();
    const int wanted = fields_->sizeHint().height() + 2;
    const int fields = std::max(std::min(wanted, total - kRelatedLeast), total / 2);
    splitter_->setSizes({fields, total - fields});
}

}  // namespace tarvel
