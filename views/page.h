#pragma once

#include <QDate>
#include <QString>
#include <QWidget>

namespace tarvel {

// What a page is asked to show.
struct PageRequest {
    qint16 page = 0;
    QString condition;
    qint32 recordId = 0;
    QDate date;
    qint16 pageNo = -1;
};

// A module screen inside the main window.
class PageWidget : public QWidget {
    Q_OBJECT
public:
    using QWidget::QWidget;
    // Shows the condition, record, date and page number of a request.
    virtual void fill(const PageRequest& request) = 0;
    // The day changed, or the page should re-read what it shows.
    virtual void refresh() {}
    // The stored layout changed (captions, panels, list columns): rebuild
    // whatever was built from it.
    virtual void rebuildLayout() {}
};

}  // namespace tarvel
