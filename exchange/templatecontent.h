#pragma once

#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>

namespace tarvel::exchange {

class AttachedFile;

// The key of one option list in TemplateContent::options: "con/region".
inline QString optionListKey(const QString& object, const QString& name) {
    return object + QLatin1Char('/') + name;
}

// The customisation a template carries, read from the live file or from an
// attached template, so that the two can be compared for the user.
struct TemplateContent {
    struct Entry {     // a row of `interface` (app_type 0) or of `fields`
        int type = 0;  // object_type, or fie_type
        QString name, caption;
        bool visible = false;
    };
    QList<Entry> layout;                  // in object_type, object_index order
    QList<Entry> fields;                  // in fie_type, fie_index order
    QHash<QString, QStringList> options;  // optionListKey -> texts in stored order

    // `schemaName`: "main" for the live file, else the attached file's schema.
    bool read(const AttachedFile& file, const QString& schemaName, QString* error);
};

// The changes from `now` to `loaded` in lines for the user: renamed captions,
// the toolbar, each kind's related panels and list columns, and each option
// list whose entries differ. Empty when nothing differs.
QStringList describeChanges(const TemplateContent& now, const TemplateContent& loaded);

// Whether `path` is a template: it opens with the password, holds every table
// of a template and no record table.
bool checkTemplateFile(const QString& path, QString* error);

}  // namespace tarvel::exchange
