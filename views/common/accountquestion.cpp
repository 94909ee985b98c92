#include "views/common/accountquestion.h"

namespace tarvel {

AccountRename askAccountRename(Dialogs& dialogs) {
    switch (dialogs.askYesNoCancel(questionTitle(),
                                   QStringLiteral("您已经更改了客户单位名称，您要更改此客户信息？"
                                                  "还是要新建一个客户？\n"
                                                  "  点击[是]，只修改客户信息\n"
                                                  "  点击[否]，新建一个客户"))) {
        case Messages::Answer::Yes:
            return AccountRename::Rename;
        case Messages::Answer::No:
            return AccountRename::NewAccount;
        default:
            return AccountRename::Cancel;
    }
}

}  // namespace tarvel
