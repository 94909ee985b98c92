#pragma once

#include <QComboBox>
#include <QListWidget>
#include <QString>

namespace tarvel {

// Fill a control from an option list (see custom/optionlists.h), keeping the
// text it showed. A list that cannot be read leaves the control as it was.
void FillOptionCombo(QComboBox* combo, const QString& object, const QString& name);
void FillOptionList(QListWidget* list, const QString& object, const QString& name);

}  // namespace tarvel
