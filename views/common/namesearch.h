#pragma once

#include <QObject>
#include <functional>

class QLineEdit;
class QListWidget;
class QTimer;

namespace tarvel {

// The search behind a name box of a detail page or a related panel: after a
// short pause in the typing the records whose name holds the text are listed
// below the box (a contact as its name, `separator` and its account, where it
// has one); choosing one reports its key. The list, and its label when set,
// show only while there is something to offer.
class NameSearch : public QObject {
    Q_OBJECT
public:
    using Statement = std::function<QString(const QString& text)>;
    NameSearch(QLineEdit* box, QListWidget* list, Statement statement, QString separator,
               QObject* parent);
    void setListLabel(QWidget* label);

    // Runs the search for the box's text at once.
    void searchNow();
    void clear();

signals:
    void chosen(int id);
    // The search could not be read; the text says why.
    void failed(const QString& error);

private:
    void setOffered(bool offered);

    QLineEdit* box_;
    QListWidget* list_;
    Statement statement_;
    QWidget* label_ = nullptr;
    QString separator_;
    QTimer* pause_;
};

}  // namespace tarvel
