#include "views/common/accountquestion.h"

namespace tarvel {

AccountAnswer askAccountQuestions(Messages& dialogs, const AccountEdit& edit,
                                  const QString& dropQuestion) {
    AccountAnswer answer;
    answer.store = storesAccount(edit);
    switch (accountQuestion(edit)) {
        case AccountQuestion::None:
            break;
        case AccountQuestion::DropAccountData:
            answer.proceed = dialogs.ask(questionTitle(), dropQuestion);
            break;
        case AccountQuestion::RenameOrNew:
            switch (dialogs.askYesNoCancel(
                questionTitle(), QStringLiteral("您已经更改了客户单位名称，您要更改此客户信息？"
                                                "还是要新建一个客户？\n"
                                                "  点击[是]，只修改客户信息\n"
                                                "  点击[否]，新建一个客户"))) {
                case Messages::Answer::Yes:
                    answer.rename = true;
                    break;
                case Messages::Answer::No:
                    answer.newAccount = true;
                    break;
                default:
                    answer.proceed = false;
            }
    }
    return answer;
}

}  // namespace tarvel
