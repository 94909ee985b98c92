#pragma once

#include <QLineEdit>
#include <QListWidget>
#include <QObject>
#include <functional>

namespace tarvel {

// A name box that offers matching records while the user types: each edit
// runs the statement built from the typed text (a recordsearch statement)
// and lists the matches, "name - account" where there is an account, in a
// list shown only while it has something to offer. Choosing one emits its key.
class NameSearch : public QObject {
    Q_OBJECT
public:
    NameSearch(QLineEdit* box, QListWidget* list, QWidget* listLabel,
               std::function<QString(const QString& text)> statement, QObject* parent);

signals:
    void chosen(int id);

private:
    void search(const QString& text);
    void setOffered(bool offered);

    QListWidget* list_;
    QWidget* label_;
    std::function<QString(const QString&)> statement_;
    bool offered_ = false;
};

}  // namespace tarvel
