#pragma once

#include <QPointer>
#include <QString>
#include <QValidator>

class QLabel;
class QLineEdit;
class QWidget;

namespace tarvel {

// Keeps what the user types or pastes into a text box (a line edit or an
// editable combo) within the characters its column holds. QLineEdit's own
// maximum counts UTF-16 units and would split an emoji, so the box gets this
// validator instead: what goes past the limit is not taken, whole characters
// only, and the note "姓名：最多50个字" appears in `note` (a label, so a screen
// reader reads it) while the box is full. The box's tool tip and accessible
// description always say how much it holds. A text the program sets (a stored
// record) is shown as it is.
class FieldLimit : public QValidator {
    Q_OBJECT
public:
    // Null when `control` is no text box or `limit` is 0. `note` may be
    // shared by several boxes of one page.
    static FieldLimit* attach(QWidget* control, int limit, QLabel* note);
    // The limit a box was given, 0 when none.
    static int limitOf(const QWidget* control);

    State validate(QString& input, int& pos) const override;

private:
    FieldLimit(QLineEdit* box, QWidget* control, int limit, QLabel* note);
    // The user's edit of `before` into `after`, with the inserted part cut to fit.
    QString fitted(const QString& before, const QString& after, int* cursor) const;
    void showNote(bool full) const;

    QLineEdit* box_;
    QWidget* control_;
    int limit_;
    QPointer<QLabel> note_;
    mutable QString last_;  // the text as last accepted
};

// The characters the control named `name` keeps, as the record descriptions
// know their controls (txt_con_name, cbo_sch_tag, ...): its column's width,
// else the description's cut; 0 for a control of no text column.
int widthOfControl(const char* name);

// Gives each text box among `controls` the limit of its name.
void limitNamedFields(const QList<QWidget*>& controls, QLabel* note);

// The caption a text box is known by: its accessible name, else its buddy
// label's text without the colon.
QString fieldCaption(const QWidget* control);

}  // namespace tarvel
