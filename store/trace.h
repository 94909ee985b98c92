#pragma once

#include <QStringList>

namespace tarvel::trace {

// Statement texts exactly as callers issued them, before translation, kept
// while tracing is on so tests can assert the texts that are part of a contract.
void setEnabled(bool enabled);
bool isEnabled();
void record(const QString& statement);
QStringList statements();
void clear();

}  // namespace tarvel::trace
