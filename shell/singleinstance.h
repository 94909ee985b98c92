#pragma once

#include <QObject>
#include <QString>
#include <functional>

class QLocalServer;

namespace tarvel {

// One window per data file: two windows on the same file would each save
// over what the other saved. The first start listens on a local socket named
// after the file; a later start on the same file asks that window to come to
// the front and ends instead of opening a second one.
class SingleInstance : public QObject {
    Q_OBJECT
public:
    explicit SingleInstance(const QString& dataFile, QObject* parent = nullptr);
    ~SingleInstance() override;

    // True when a window already runs on the file; it has been asked to show itself.
    bool askRunningWindow();
    // Becomes the window of the file: `raise` runs whenever a later start asks.
    // False when the socket cannot be opened (the program then runs unguarded).
    bool listen(std::function<void()> raise);

    // The socket name of a data file: the same for every spelling of its path.
    static QString socketName(const QString& dataFile);

private:
    QString name_;
    QLocalServer* server_ = nullptr;
};

}  // namespace tarvel
