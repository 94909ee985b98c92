#pragma once

#include <QStringList>
#include <initializer_list>

class QDate;
class QDateEdit;
class QGroupBox;
class QHBoxLayout;
class QLayout;
class QPlainTextEdit;
class QWidget;

namespace tarvel {

// Building blocks of the detail pages' field areas.

// Widgets side by side; buttons keep their size, the rest share the width.
QHBoxLayout* rowOf(std::initializer_list<QWidget*> widgets);
QWidget* lineOf(QWidget* parent, std::initializer_list<QWidget*> widgets);
// A box above another: a name box and the list of its matches.
QWidget* stackOf(QWidget* parent, QLayout* top, QWidget* below);
// A titled section ("基本信息") holding `layout`.
QGroupBox* sectionBox(QWidget* parent, const char* name, const QString& title, QLayout* layout);
// The memo box rtxt_memo in its section "简介".
QGroupBox* memoSection(QWidget* parent, QPlainTextEdit* memo);
// The earliest day a date picker offers: it stands for "no date" (the
// stored 1900-1-1 of an unknown birthday) and reads "无".
QDate noDate();
// A calendar date picker in yyyy-MM-dd that can say "no date".
void setUpDatePicker(QDateEdit* picker);
// The error texts that say something, one a line; a general text when none does.
QString errorText(const QStringList& errors);

}  // namespace tarvel
