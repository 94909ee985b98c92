#pragma once

#include <QChar>
#include <QLineEdit>

namespace tarvel {

// Lets a text box take only the characters `accepts` allows. Every other
// typed character is dropped, backspace included; keys that type nothing
// (arrows, Delete, Tab) and shortcuts keep working. Pasted, dropped or
// composed text is held to the same characters.
void acceptOnlyCharacters(QLineEdit* edit, bool (*accepts)(QChar));

}  // namespace tarvel
