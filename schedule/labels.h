#pragma once

#include <QString>
#include <QStringList>

namespace tarvel {

// The caption a toolbar entry has when the stored layout gives none: the
// module captions of the kind table for the five record kinds ("contact" ->
// 联系人), the program's own for the other pages; empty for other keys.
QString defaultToolbarCaption(const QString& key);

// The display labels of the record kinds: the captions of their modules in
// the stored interface layout, which the user may rename, or the built-in
// captions where the layout has none. Indexed by relation kind code (1
// opportunity .. 5 document); index 0 is empty.
QStringList recordKindLabels();
// One of them; empty for an unknown kind.
QString recordKindLabel(qint16 recordKind);

}  // namespace tarvel
