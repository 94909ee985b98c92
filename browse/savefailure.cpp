#include "browse/savefailure.h"

#include <QDir>

#include "store/connectionstring.h"

namespace tarvel {

QString saveFailedText(const QString& what) {
    const QString path = parseConnectionString(globalConnectionString()).dataSource;
    return QStringLiteral(
               "%1没有保存成功，数据文件不能写入：\n%2\n\n"
               "请检查该文件或它所在的文件夹是否只读、磁盘是否已满，然后再试一次。")
        .arg(what, QDir::toNativeSeparators(path));
}

}  // namespace tarvel
