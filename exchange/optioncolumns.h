#pragma once

#include <QString>
#include <vector>

namespace tarvel::exchange {

// Which record column takes its values from which option list.
struct OptionColumn {
    QString object;   // opt_object: "con", "acc", "opp", "sch", "doc"
    QString name;     // opt_name: "tag", "region", ...
    QString table;    // the record table
    QString column;   // the column that stores the chosen text
    bool several;     // tags ticked in a list box: several texts joined by ','
    QString caption;  // the list's name for the user
};
const std::vector<OptionColumn>& optionColumns();

// The caption of the record kind an option list or a panel entry belongs to
// ("con" -> "联系人"); the prefix itself when it names none.
QString kindCaptionOfPrefix(const QString& prefix);

}  // namespace tarvel::exchange
