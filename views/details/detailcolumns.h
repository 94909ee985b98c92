#pragma once

#include <QList>
#include <QObject>

class QBoxLayout;
class QSplitter;
class QWidget;

namespace tarvel {

// The sections of a detail page side by side: two columns, the memo below
// the right one; on a wide page three, the memo with the left column's later
// sections in a column of its own, so a laptop screen shows every field.
// The fields area above the related area gets the height its fields need
// (the related area keeps a useful least) until the user moves the divider.
class DetailColumns : public QObject {
public:
    DetailColumns(QWidget* page, QWidget* fields, QSplitter* splitter, QList<QWidget*> left,
                  QList<QWidget*> right, QWidget* memo);
    bool isWide() const { return wide_ == 1; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void arrange(bool wide);
    void shareHeight();

    QWidget* fields_;
    QSplitter* splitter_;
    QList<QWidget*> left_, right_;
    QWidget* memo_;
    QList<QBoxLayout*> columns_;
    QBoxLayout* row_;
    int wide_ = -1;
    bool userMoved_ = false;
};

}  // namespace tarvel
