#include "views/options/optionwidgets.h"

#include "custom/optionlists.h"

namespace tarvel {

void FillOptionCombo(QComboBox* combo, const QString& object, const QString& name) {
    if (!combo) return;
    const QString kept = combo->currentText();
    const std::optional<QStringList> items = optionComboItems(object, name);
    if (!items) return;
    combo->clear();
    combo->addItems(*items);
    // An editable combo shows any text; a fixed one only an entry of its list.
    if (combo->isEditable())
        combo->setEditText(kept);
    else
        combo->setCurrentIndex(combo->findText(kept));
}

void FillOptionList(QListWidget* list, const QString& object, const QString& name) {
    if (!list) return;
    const QListWidgetItem* current = list->currentItem();
    const QString kept = current ? current->text() : QString();
    const std::optional<QStringList> items = optionListItems(object, name);
    if (!items) return;
    list->clear();
    list->addItems(*items);
    // A list box's text is its current entry: the first with the kept text.
    const QList<QListWidgetItem*> found = list->findItems(kept, Qt::MatchExactly);
    if (!kept.isEmpty() && !found.isEmpty()) list->setCurrentItem(found.first());
}

}  // namespace tarvel
