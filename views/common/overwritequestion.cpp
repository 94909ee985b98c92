#include "views/common/overwritequestion.h"

namespace tarvel {

SaveAnswer askBeforeOverwrite(Messages& dialogs, lists::ShownRow& shown, const QString& noun) {
    const lists::ShownRow::Since found = shown.found();
    shown.clearFound();
    switch (found) {
        case lists::ShownRow::Since::Unchanged:
            return SaveAnswer::Save;
        case lists::ShownRow::Since::Changed:
            if (!dialogs.ask(messageTitle(), lists::ShownRow::changedQuestion()))
                return SaveAnswer::Stop;
            shown.rememberAgain();
            return SaveAnswer::Save;
        case lists::ShownRow::Since::Deleted:
            if (!dialogs.ask(messageTitle(), lists::ShownRow::deletedQuestion(noun)))
                return SaveAnswer::Stop;
            shown.forget();
            return SaveAnswer::SaveAsNew;
    }
    return SaveAnswer::Stop;
}

}  // namespace tarvel
