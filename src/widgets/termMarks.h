#pragma once

#include <QStringList>

class QPlainTextEdit;
class QTextEdit;

/// Marks every place of the terms in the text that is shown, bold and in a blue that can be read on its ground, selects
/// the first one of the first term and scrolls it into view. The marks go with the text, and with the next ones.
void markTerms(QPlainTextEdit& edit, const QStringList& terms);
void markTerms(QTextEdit& edit, const QStringList& terms);
