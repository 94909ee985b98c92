#pragma once

#include <QObject>
#include <functional>

class QLineEdit;
class QListWidget;
class QTimer;

namespace tarvel {

// The search behind a detail page's name box: after a short pause in the
// typing the records whose name holds the text are listed below the box
// (a contact as name "  @  " account); choosing one reports its key.
class NameSearch : public QObject {
    Q_OBJECT
public:
    using Statement = std::function<QString(const QString& text)>;
    NameSearch(QLineEdit* box, QListWidget* list, Statement statement, bool withAccount,
               QObject* parent);

    // Runs the search for the box's text at once.
    void searchNow();
    void clear();

signals:
    void chosen(int id);
    // The search could not be read; the text says why.
    void failed(const QString& error);

private:
    QLineEdit* box_;
    QListWidget* list_;
    Statement statement_;
    bool withAccount_;
    QTimer* pause_;
};

}  // namespace tarvel
