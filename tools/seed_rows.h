#pragma once
// Rows of the customisation tables that ship inside a new data file:
// list columns (`fields`), toolbar and related-panel layout (`interface`),
// option lists (`options`), settings (`setting`) and the older per-kind
// option tables. The data-file builder inserts them in vector order.
#include <QString>
#include <QStringList>
#include <vector>

namespace tarvel::seed {

// table `fields`
struct FieldRow { int type; QString name; QString description; int index; int visible; int width; };
// table `interface`
struct InterfaceRow { int appType; int objectType; QString name; QString description; int visible; int index; int editType; };
// table `options` (opt_id is auto-numbered; rows inserted in vector order)
struct OptionRow { QString object; QString name; QString description; int count; };
// table `setting`
struct SettingRow { QString type; QString key; QString name; QString value; QString description; QString visible; };
// the older per-kind option tables
struct LegacyOptionTable { QString table; QString descriptionColumn; QString countColumn; QStringList entries; };

const std::vector<FieldRow>& fieldRows();
const std::vector<InterfaceRow>& interfaceRows();
const std::vector<OptionRow>& optionRows();
const std::vector<SettingRow>& settingRows();
const std::vector<LegacyOptionTable>& legacyOptionTables();

} // namespace tarvel::seed
