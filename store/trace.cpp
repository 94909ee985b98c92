#include "store/trace.h"

namespace tarvel::trace {

namespace {
struct State {
    bool enabled = false;
    QStringList statements;
};
State& state() {
    static State s;
    return s;
}
}  // namespace

void setEnabled(bool enabled) {
    state().enabled = enabled;
}
bool isEnabled() {
    return state().enabled;
}
void record(const QString& statement) {
    if (state().enabled) state().statements << statement;
}
QStringList statements() {
    return state().statements;
}
void clear() {
    state().statements.clear();
}

}  // namespace tarvel::trace
