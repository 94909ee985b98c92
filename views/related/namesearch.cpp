#include "views/related/namesearch.h"

#include "records/recordsearch.h"

namespace tarvel {

NameSearch::NameSearch(QLineEdit* box, QListWidget* list, QWidget* listLabel,
                       std::function<QString(const QString&)> statement, QObject* parent)
    : QObject(parent), list_(list), label_(listLabel), statement_(std::move(statement)) {
    // Only the user's typing searches: text the program writes does not.
    connect(box, &QLineEdit::textEdited, this, &NameSearch::search);
    // A click may also activate: the first of the two chooses.
    auto choose = [this](QListWidgetItem* item) {
        if (!offered_) return;
        setOffered(false);
        emit chosen(item->data(Qt::UserRole).toInt());
    };
    connect(list, &QListWidget::itemActivated, this, choose);
    connect(list, &QListWidget::itemClicked, this, choose);
    setOffered(false);
}

void NameSearch::search(const QString& text) {
    list_->clear();
    RecordSearch finder;
    // Typing goes on while the file cannot be read: no matches then.
    if (!text.trimmed().isEmpty() && finder.run(statement_(text), 50))
        for (const FoundRecord& r : finder.found()) {
            auto* item = new QListWidgetItem(
                r.account.isEmpty() ? r.name : r.name + QStringLiteral(" - ") + r.account, list_);
            item->setData(Qt::UserRole, r.id);
        }
    setOffered(list_->count() > 0);
}

void NameSearch::setOffered(bool offered) {
    offered_ = offered;
    list_->setVisible(offered);
    if (label_) label_->setVisible(offered);
}

}  // namespace tarvel
