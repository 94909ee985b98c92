#pragma once
// Pictures of the screens over generated records, for a person to look at.
#include <QDir>
#include <QString>

class QWidget;

namespace tarvel::shots {

// The folder the pictures go to; remembers whether every one was saved.
class Album {
public:
    explicit Album(const QDir& folder) : folder_(folder) {}
    // Shows the window, lets it lay itself out, saves it as NAME.png.
    void save(QWidget& window, const QString& name);
    bool allSaved() const { return allSaved_; }

private:
    QDir folder_;
    bool allSaved_ = true;
};

// Each fills the data file it is given (a fresh one) and saves its pictures.
void shootLists(Album& album);
void shootDetails(Album& album);
void shootRelated(Album& album);
void shootMain(Album& album);

}  // namespace tarvel::shots
